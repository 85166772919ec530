#include "translate/OfflineEngine.h"

#include "translate/LanguageGuesser.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTimer>
#include <csignal>
#include <unistd.h>
#include <utility>

namespace quillora
{

namespace
{

// `apertium` is a shell pipeline: the whole of it goes, not just the shell.
void killPipeline(QProcess& process)
{
    if (process.processId() > 0)
        ::kill(-pid_t(process.processId()), SIGKILL);
    process.kill();
}

} // namespace

OfflineEngine::OfflineEngine(QString program, QObject* parent)
    : QObject(parent), m_program(std::move(program)), m_limit(new QTimer(this))
{
    m_limit->setSingleShot(true);
    connect(m_limit, &QTimer::timeout, this, [this] {
        m_timedOut = true;
        if (m_process)
            killPipeline(*m_process);
    });
}

// No callback from here: the owner may be half destroyed.
OfflineEngine::~OfflineEngine()
{
    m_runDone = nullptr;
    m_waitingForPairs.clear();
    if (m_process) {
        m_process->disconnect(this);
        killPipeline(*m_process);
        delete m_process;
    }
}

void OfflineEngine::listPairs(PairsDone done)
{
    if (m_pairs)
        return done(*m_pairs);
    const bool listing = !m_waitingForPairs.isEmpty();
    if (!listing && busy())
        return done({});
    m_waitingForPairs.append(std::move(done));
    if (listing)
        return;
    run({QStringLiteral("-l")}, {}, [this](TranslationFailure failure, const QByteArray& out) {
        // One mode name per line; none when the program is missing. A cancelled listing is asked again.
        const QList<OfflinePair> pairs = offlinePairsFromModes(
            QString::fromUtf8(out).simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts));
        if (failure != TranslationFailure::Cancelled)
            m_pairs = pairs;
        for (const PairsDone& waiting : std::exchange(m_waitingForPairs, {}))
            waiting(pairs);
    });
}

std::optional<OfflinePair> OfflineEngine::pairFor(const TranslationRequest& request)
{
    if (!m_pairs)
        return std::nullopt;
    QString source = request.sourceCode;
    if (source.isEmpty()) {
        if (!m_guesser) {
            QStringList sources;
            for (const OfflinePair& pair : *m_pairs) {
                if (!sources.contains(pair.source))
                    sources.append(pair.source);
            }
            m_guesser = std::make_unique<LanguageGuesser>(sources);
        }
        source = m_guesser->guess(request.text);
    }
    for (const OfflinePair& pair : *m_pairs) {
        if (pair.source == source && pair.target == request.targetCode)
            return pair;
    }
    return std::nullopt;
}

bool OfflineEngine::translate(const OfflinePair& pair, const QString& text, Done done)
{
    if (busy())
        return false;
    if (text.trimmed().isEmpty()) {
        TranslationOutcome outcome;
        outcome.failure = TranslationFailure::NothingToTranslate;
        done(outcome);
        return true;
    }
    run({QStringLiteral("-u"), pair.mode}, text.toUtf8(),
        [text, done = std::move(done)](TranslationFailure failure, const QByteArray& out) {
            TranslationOutcome outcome;
            outcome.failure = failure;
            if (failure == TranslationFailure::None) {
                outcome.response = QString::fromUtf8(out);
                outcome.result.translation = withoutUnknownMarks(outcome.response, text);
                if (outcome.result.translation.trimmed().isEmpty())
                    outcome.failure = TranslationFailure::Empty;
            }
            done(outcome);
        });
    return true;
}

void OfflineEngine::cancel()
{
    if (m_process.isNull())
        return;
    m_cancelled = true;
    killPipeline(*m_process);
}

void OfflineEngine::run(const QStringList& arguments, const QByteArray& input, RunDone done)
{
    auto* process = new QProcess(this);
    m_process = process;
    m_runDone = std::move(done);
    m_out.clear();
    m_started = m_cancelled = m_timedOut = m_tooLarge = false;
    connect(process, &QProcess::readyReadStandardOutput, this, [this, process] {
        m_out += process->readAllStandardOutput();
        if (!m_tooLarge && m_out.size() > m_maxBytes) {
            m_tooLarge = true;
            killPipeline(*process);
        }
    });
    connect(process, &QProcess::started, this, [this, process, input] {
        m_started = true;
        process->write(input);
        process->closeWriteChannel();
    });
    connect(process, &QProcess::finished, this, &OfflineEngine::ended);
    connect(process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            ended();
    });
    process->setStandardErrorFile(QProcess::nullDevice());
    process->setChildProcessModifier([] { ::setpgid(0, 0); });
    m_limit->start(m_timeoutMs);
    process->start(m_program, arguments);
}

void OfflineEngine::ended()
{
    QProcess* process = m_process;
    if (!process)
        return;
    m_limit->stop();
    m_out += process->readAllStandardOutput();
    TranslationFailure failure = TranslationFailure::None;
    if (m_cancelled)
        failure = TranslationFailure::Cancelled;
    else if (m_timedOut)
        failure = TranslationFailure::TimedOut;
    else if (m_tooLarge || !m_started || process->exitStatus() != QProcess::NormalExit ||
             process->exitCode() != 0)
        failure = TranslationFailure::BadAnswer;
    m_process.clear();
    process->disconnect(this);
    process->deleteLater();
    // Last: the callback may start the next run.
    if (const RunDone done = std::exchange(m_runDone, nullptr))
        done(failure, std::exchange(m_out, {}));
}

QString withoutUnknownMarks(const QString& output, const QString& source)
{
    QString text = output;
    for (const QChar mark : {QLatin1Char('#'), QLatin1Char('@')}) {
        if (source.contains(mark))
            continue;
        const QRegularExpression marked(QStringLiteral("(?<!\\w)\\%1(?=\\w)").arg(mark),
                                        QRegularExpression::UseUnicodePropertiesOption);
        text.remove(marked);
    }
    return text;
}

} // namespace quillora
