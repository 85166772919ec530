#pragma once

#include "translate/ApertiumCodes.h"
#include "translate/TranslationEngine.h"

#include <QObject>
#include <QPointer>
#include <functional>
#include <memory>
#include <optional>

class QProcess;
class QTimer;

namespace quillora
{

class LanguageGuesser;

// Translation without the network, by Debian's Apertium language pairs. The installed pairs (from
// `apertium -l`, asked for once) and each translation come from runs of the `apertium` program that
// report when they end, under the time limit and answer cap of a request. One run at a time.
class OfflineEngine : public QObject
{
    Q_OBJECT
public:
    using PairsDone = std::function<void(const QList<OfflinePair>&)>;
    using Done = std::function<void(const TranslationOutcome&)>;

    explicit OfflineEngine(QString program = QStringLiteral("apertium"), QObject* parent = nullptr);
    ~OfflineEngine() override;

    // The installed pairs to `done`: at once when already known, else when the listing ends. Empty
    // while a translation runs.
    void listPairs(PairsDone done);
    // The pairs once listed; nullopt before.
    const std::optional<QList<OfflinePair>>& knownPairs() const { return m_pairs; }
    // The listed pair that translates the request; with detection the source is guessed among the
    // pairs' sources. nullopt when none covers it or the pairs are not listed yet.
    std::optional<OfflinePair> pairFor(const TranslationRequest& request);
    // The outcome goes to `done`, at once for an empty text. False, with nothing called, while a run
    // is under way.
    bool translate(const OfflinePair& pair, const QString& text, Done done);
    void cancel();
    bool busy() const { return !m_process.isNull(); }

    void setTimeoutMs(int ms) { m_timeoutMs = ms; }
    void setMaxBytes(qint64 bytes) { m_maxBytes = bytes; }

private:
    using RunDone = std::function<void(TranslationFailure, const QByteArray& out)>;
    void run(const QStringList& arguments, const QByteArray& input, RunDone done);
    void ended();

    QString m_program;
    std::optional<QList<OfflinePair>> m_pairs;
    QList<PairsDone> m_waitingForPairs;
    std::unique_ptr<LanguageGuesser> m_guesser;
    QPointer<QProcess> m_process;
    QTimer* m_limit;
    RunDone m_runDone;
    QByteArray m_out;
    bool m_started = false;
    bool m_cancelled = false;
    bool m_timedOut = false;
    bool m_tooLarge = false;
    int m_timeoutMs = HttpClient::kDefaultTimeoutMs;
    qint64 m_maxBytes = HttpClient::kDefaultMaxBytes;
};

// Apertium's output (run with -u, which already drops "*word") without its other marks on words it
// could not handle ("#word", "@word"). Where the source text holds such a sign itself, every one of
// that sign is taken as text and kept.
QString withoutUnknownMarks(const QString& output, const QString& source);

} // namespace quillora
