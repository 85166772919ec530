#pragma once

#include "translate/ApertiumCodes.h"
#include "translate/TranslationEngine.h"

#include <QObject>
#include <QPointer>
#include <memory>
#include <optional>

class QProcess;

namespace quillora
{

class LanguageGuesser;

// Translation without the network, by Debian's Apertium language pairs. Each translation runs the
// `apertium` program with a local event loop, like a request: the window keeps painting, and the
// time limit and answer cap of a request apply. The installed pairs are asked for once.
class OfflineEngine : public QObject
{
    Q_OBJECT
public:
    explicit OfflineEngine(QString program = QStringLiteral("apertium"), QObject* parent = nullptr);
    ~OfflineEngine() override;

    // Empty while another run of the program is under way.
    QList<OfflinePair> pairs();
    // The pair that translates the request; with detection the source is guessed among the pairs'
    // sources. nullopt when no installed pair covers it.
    std::optional<OfflinePair> pairFor(const TranslationRequest& request);
    TranslationOutcome translate(const OfflinePair& pair, const QString& text);
    void cancel();
    bool busy() const { return !m_process.isNull(); }

    void setTimeoutMs(int ms) { m_timeoutMs = ms; }
    void setMaxBytes(qint64 bytes) { m_maxBytes = bytes; }

private:
    struct Run {
        TranslationFailure failure = TranslationFailure::None;
        QByteArray out;
    };
    Run run(const QStringList& arguments, const QByteArray& input);

    QString m_program;
    std::optional<QList<OfflinePair>> m_pairs;
    std::unique_ptr<LanguageGuesser> m_guesser;
    QPointer<QProcess> m_process;
    bool m_cancelled = false;
    int m_timeoutMs = HttpClient::kDefaultTimeoutMs;
    qint64 m_maxBytes = HttpClient::kDefaultMaxBytes;
};

// Apertium's output (run with -u, which already drops "*word") without its other marks on words it
// could not handle ("#word", "@word"). Where the source text holds such a sign itself, every one of
// that sign is taken as text and kept.
QString withoutUnknownMarks(const QString& output, const QString& source);

} // namespace quillora
