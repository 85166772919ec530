#include "translate/OfflineEngine.h"

#include "translate/LanguageGuesser.h"

#include <QEventLoop>
#include <QProcess>
#include <QRegularExpression>
#include <QTimer>
#include <csignal>
#include <unistd.h>

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
    : QObject(parent), m_program(std::move(program))
{
}

OfflineEngine::~OfflineEngine()
{
    cancel();
}

QList<OfflinePair> OfflineEngine::pairs()
{
    if (!m_pairs && !busy()) {
        const Run listing = run({QStringLiteral("-l")}, {});
        // One mode name per line; none when the program is missing.
        m_pairs = offlinePairsFromModes(
            QString::fromUtf8(listing.out).simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts));
    }
    return m_pairs.value_or(QList<OfflinePair>());
}

std::optional<OfflinePair> OfflineEngine::pairFor(const TranslationRequest& request)
{
    const QList<OfflinePair> installed = pairs();
    QString source = request.sourceCode;
    if (source.isEmpty()) {
        if (!m_guesser && m_pairs) {
            QStringList sources;
            for (const OfflinePair& pair : installed) {
                if (!sources.contains(pair.source))
                    sources.append(pair.source);
            }
            m_guesser = std::make_unique<LanguageGuesser>(sources);
        }
        if (m_guesser)
            source = m_guesser->guess(request.text);
    }
    for (const OfflinePair& pair : installed) {
        if (pair.source == source && pair.target == request.targetCode)
            return pair;
    }
    return std::nullopt;
}

TranslationOutcome OfflineEngine::translate(const OfflinePair& pair, const QString& text)
{
    TranslationOutcome outcome;
    if (text.trimmed().isEmpty()) {
        outcome.failure = TranslationFailure::NothingToTranslate;
        return outcome;
    }
    const Run translated = run({QStringLiteral("-u"), pair.mode}, text.toUtf8());
    outcome.failure = translated.failure;
    if (translated.failure == TranslationFailure::None) {
        outcome.response = QString::fromUtf8(translated.out);
        outcome.result.translation = withoutUnknownMarks(outcome.response, text);
        if (outcome.result.translation.trimmed().isEmpty())
            outcome.failure = TranslationFailure::Empty;
    }
    return outcome;
}

void OfflineEngine::cancel()
{
    if (m_process.isNull())
        return;
    m_cancelled = true;
    killPipeline(*m_process);
}

OfflineEngine::Run OfflineEngine::run(const QStringList& arguments, const QByteArray& input)
{
    Run result;
    if (busy()) {
        result.failure = TranslationFailure::BadAnswer;
        return result;
    }
    QProcess process;
    m_process = &process;
    m_cancelled = false;
    bool tooLarge = false;
    bool timedOut = false;
    QEventLoop loop;
    QTimer limit;
    limit.setSingleShot(true);
    connect(&limit, &QTimer::timeout, &process, [&] {
        timedOut = true;
        killPipeline(process);
    });
    connect(&process, &QProcess::readyReadStandardOutput, &process, [&] {
        result.out += process.readAllStandardOutput();
        if (!tooLarge && result.out.size() > m_maxBytes) {
            tooLarge = true;
            killPipeline(process);
        }
    });
    connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
    connect(&process, &QProcess::errorOccurred, &loop, [&](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            loop.quit();
    });

    bool started = false;
    connect(&process, &QProcess::started, &process, [&] {
        started = true;
        process.write(input);
        process.closeWriteChannel();
    });
    process.setStandardErrorFile(QProcess::nullDevice());
    process.setChildProcessModifier([] { ::setpgid(0, 0); });
    process.start(m_program, arguments);
    if (process.state() != QProcess::NotRunning) {
        limit.start(m_timeoutMs);
        loop.exec();
    }
    result.out += process.readAllStandardOutput();
    m_process.clear();

    if (m_cancelled)
        result.failure = TranslationFailure::Cancelled;
    else if (timedOut)
        result.failure = TranslationFailure::TimedOut;
    else if (tooLarge || !started || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        result.failure = TranslationFailure::BadAnswer;
    m_cancelled = false;
    return result;
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
