#pragma once

#include "translate/HistoryRing.h"
#include "translate/TranslationRouter.h"

#include <QObject>
#include <QString>
#include <optional>

namespace quillora
{

// What one finished translation gives its user to show.
struct SessionResult {
    TranslationOutcome outcome;             // failure None on success
    std::optional<OfflinePair> offlinePair; // set when the offline engine gave the outcome
    bool uncovered = false;                 // offline only, and no installed pair covers it: nothing was run
    QString source;                         // the text as it was given
    QString sourceCode;                     // the languages it was sent with ("" = detect)
    QString targetCode;
    bool SourceSpeechOk = false; // a speech page was made for the source text
    bool TranslationSpeechOk = false;
};

// One translation at a time, widget-free: the language state, the engines, the history ring with its
// caching, the speech pages, the busy state and cancelling. Nothing here waits: translate(), cancel()
// and goBack() return at once; the outcome comes by signal.
class TranslationSession : public QObject
{
    Q_OBJECT
public:
    // An empty tempFolder makes no speech pages (the command-line tool).
    TranslationSession(TranslationEngine* service, OfflineEngine* offline, QString tempFolder,
                       QObject* parent = nullptr);
    ~TranslationSession() override;

    // Language state by picker rows: source rows 0 and 1 (the separator) detect, catalogue index + 2
    // after; target and "hl" rows are catalogue indexes.
    void setSourceRow(int row);
    void setTargetRow(int row);
    void setInterfaceRow(int row);
    int sourceRow() const { return m_sourceRow; }
    int targetRow() const { return m_targetRow; }
    const QString& SourceCode() const { return m_sourceCode; }
    const QString& TargetCode() const { return m_targetCode; }
    const QString& InterfaceCode() const { return m_interfaceCode; }

    // Once on, on for the rest of the run.
    void enableCaching() { m_caching = true; }
    bool CachingEnabled() const { return m_caching; }

    // Starts translating `text` (as typed) and returns at once; finished() follows exactly once,
    // never from inside this call. False, with nothing started, while a translation runs.
    bool translate(const QString& text, EngineChoice choice);
    // The running translation ends Cancelled; nothing when idle.
    void cancel();
    bool Translating() const { return m_translating; }
    // Steps the history ring back, takes that slot's rows and emits wentBack() with it before
    // returning. Nothing while a translation runs.
    void goBack();
    const HistoryRing& ring() const { return m_ring; }
    const QString& tempFolder() const { return m_tempFolder; }

Q_SIGNALS:
    // busyChanged(false) comes just before finished(), so that a slot on either may translate again.
    void busyChanged(bool busy);
    void finished(const SessionResult& result);
    void wentBack(const HistorySlot& slot);

private:
    void setBusy(bool busy);
    void complete(const TranslationRequest& request, RoutedOutcome routed, int sourceRow, int targetRow);
    bool makeSpeechPage(const QString& text, const QString& code, int slot) const;

    TranslationEngine* m_service;
    TranslationRouter m_router;
    QString m_tempFolder;
    HistoryRing m_ring;
    int m_sourceRow = 0;
    int m_targetRow = 0;
    QString m_sourceCode;
    QString m_targetCode;
    QString m_interfaceCode = QStringLiteral("en");
    bool m_caching = false;
    bool m_translating = false;
    bool m_cancelled = false;
};

} // namespace quillora
