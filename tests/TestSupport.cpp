#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSignalSpy>
#include <sys/resource.h>

namespace quillora::test
{

CommandResult runCommand(const QString& program, const QStringList& arguments, const QByteArray& input,
                         int timeoutMs)
{
    CommandResult result;
    QProcess process;
    process.start(program, arguments);
    result.started = process.waitForStarted(timeoutMs);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(timeoutMs)) {
        process.kill();
        process.waitForFinished();
        return result;
    }
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    return result;
}

CommandResult runCli(const QStringList& arguments, const QString& serviceUrl, const QByteArray& input)
{
    QProcess process;
    process.setEnvironment(QProcess::systemEnvironment()
                           << QStringLiteral("QUILLORA_SERVICE_URL=") + serviceUrl
                           << QStringLiteral("QUILLORA_API_URL=") + serviceUrl);
    process.start(qEnvironmentVariable("QUILLORA_BUILD_DIR") + QStringLiteral("/src/quillora-cli"),
                  arguments);
    process.write(input);
    process.closeWriteChannel();
    QSignalSpy finished(&process, &QProcess::finished);
    const bool ended = finished.wait(30000) && process.exitStatus() == QProcess::NormalExit;
    return {ended, ended ? process.exitCode() : -1, process.readAllStandardOutput(),
            process.readAllStandardError()};
}

QByteArray iconvEncode(const QString& text, const QString& codec)
{
    const CommandResult r = runCommand(
        QStringLiteral("iconv"), {QStringLiteral("-f"), QStringLiteral("UTF-8"), QStringLiteral("-t"), codec},
        text.toUtf8());
    return r.ok() ? r.out : QByteArray();
}

QString iconvDecode(const QByteArray& bytes, const QString& codec)
{
    const CommandResult r =
        runCommand(QStringLiteral("iconv"),
                   {QStringLiteral("-f"), codec, QStringLiteral("-t"), QStringLiteral("UTF-8")}, bytes);
    return r.ok() ? QString::fromUtf8(r.out) : QString();
}

bool writeFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(bytes) == bytes.size();
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void raiseOwnPriority()
{
    const QStringList threads =
        QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& thread : threads)
        ::setpriority(PRIO_PROCESS, id_t(thread.toUInt()), -10);
}

} // namespace quillora::test
