#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <sys/resource.h>

namespace quillora::test
{

CommandResult runCommand(const QString& program, const QStringList& arguments, const QByteArray& input,
                         int timeoutMs, const QStringList& environment)
{
    QProcess process;
    process.setEnvironment(QProcess::systemEnvironment() + environment);
    process.start(program, arguments);
    const bool started = process.waitForStarted(timeoutMs);
    process.write(input);
    process.closeWriteChannel();
    if (!started ||
        !QTest::qWaitFor([&process] { return process.state() == QProcess::NotRunning; }, timeoutMs)) {
        process.kill();
        process.waitForFinished();
        return {started, -1, {}, {}};
    }
    return {true, process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            process.readAllStandardOutput(), process.readAllStandardError()};
}

QByteArray iconvEncode(const QString& text, const QString& codec)
{
    const CommandResult r = runCommand(
        QStringLiteral("iconv"), {QStringLiteral("-f"), QStringLiteral("UTF-8"), QStringLiteral("-t"), codec},
        text.toUtf8());
    return r.ok() ? r.out : QByteArray();
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
    for (const QString& thread :
         QDir(QStringLiteral("/proc/self/task")).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        ::setpriority(PRIO_PROCESS, id_t(thread.toUInt()), -10);
}

} // namespace quillora::test
