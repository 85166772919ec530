// The updater the main program writes beside itself and starts as "Update.exe <program name>" when
// the user accepts an update. It waits for the program to end, reads the update list again and
// either puts the verified download in the program's place or, when it cannot or must not, leaves
// the program alone and opens the download page. Either way the program is started again with "UP".
#include "net/Http.h"
#include "net/MakerLists.h"
#include "net/WebLink.h"
#include "translate/ServiceAddresses.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryFile>
#include <QThread>
#include <algorithm>
#include <cstdio>
#include <unistd.h>

using namespace quillora;

namespace
{

constexpr int kWaitForExitMs = 30000;
constexpr int kPollMs = 200;
// The whole download, however slowly it comes (tests shorten it), and its size.
constexpr int kDownloadMs = 10 * 60 * 1000;
constexpr qint64 kMaxDownloadBytes = 256 * 1024 * 1024;

void say(const QString& text)
{
    std::fprintf(stderr, "Update.exe: %s\n", qUtf8Printable(text));
}

// Whether a process other than this one runs the executable at `path`.
bool isRunning(const QString& path)
{
    const QString self = QString::number(QCoreApplication::applicationPid());
    const QStringList pids = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    for (const QString& pid : pids) {
        if (pid == self || pid.front() < QLatin1Char('0') || pid.front() > QLatin1Char('9'))
            continue;
        const QString exe = QFileInfo(QStringLiteral("/proc/%1/exe").arg(pid)).symLinkTarget();
        if (exe == path)
            return true;
    }
    return false;
}

bool waitUntilEnded(const QString& path)
{
    QDeadlineTimer deadline(kWaitForExitMs);
    while (isRunning(path)) {
        if (deadline.hasExpired())
            return false;
        QThread::msleep(kPollMs);
    }
    return true;
}

// Why the program must not be replaced from this list; "" when it may.
QString refusalToReplace(const QString& program, const QUrl& listAddress, const UpdateList& list)
{
    const QString folder = QFileInfo(program).absolutePath();
    if (::access(QFile::encodeName(folder).constData(), W_OK) != 0)
        return QStringLiteral("the program's folder is not writable here");
    if (!isTrustedUpdateSource(listAddress))
        return QStringLiteral("the update list did not come over https");
    if (list.sha256.isEmpty())
        return QStringLiteral("the update list gives no digest");
    return {};
}

int downloadLimitMs()
{
    const int shortened = qEnvironmentVariableIntValue("QUILLORA_DOWNLOAD_MS");
    return shortened > 0 ? std::min(shortened, kDownloadMs) : kDownloadMs;
}

// The download in the program's place: written beside it, made executable, then renamed over it,
// so the program is either the old one or the whole new one. Checked before anything is written.
QString replaceProgram(const QString& program, const HttpReply& reply, const UpdateList& list)
{
    if (!reply.ok() || reply.status != 200)
        return QStringLiteral("the download failed: %1").arg(reply.errorText);
    if (QCryptographicHash::hash(reply.body, QCryptographicHash::Sha256) != list.sha256)
        return QStringLiteral("the download does not match its digest");

    const QString folder = QFileInfo(program).absolutePath();
    QTemporaryFile part(folder + QStringLiteral("/.") + QFileInfo(program).fileName() +
                        QStringLiteral(".XXXXXX"));
    if (!part.open() || part.write(reply.body) != reply.body.size() || !part.flush() ||
        ::fsync(part.handle()) != 0)
        return QStringLiteral("cannot write beside the program: %1").arg(part.errorString());
    const QFile::Permissions kept = QFile::permissions(program);
    part.setPermissions(kept | QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    if (::rename(QFile::encodeName(part.fileName()).constData(), QFile::encodeName(program).constData()) != 0)
        return QStringLiteral("cannot put the new program in place");
    part.setAutoRemove(false);
    return {};
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    const QStringList args = QCoreApplication::arguments().mid(1);
    if (args.isEmpty()) {
        say(QStringLiteral("usage: Update.exe <program name>"));
        return 2;
    }
    // Started by its absolute path. Qt's own answer goes empty once the updater's file is gone, which
    // happens when the program is started by hand meanwhile and removes a leftover updater.
    const QString program =
        QFileInfo(QFile::decodeName(argv[0])).absoluteDir().filePath(args.join(QLatin1Char(' ')));
    const QString running = QFileInfo(program).canonicalFilePath();
    if (!waitUntilEnded(running.isEmpty() ? program : running))
        say(QStringLiteral("%1 is still running; going on").arg(program));

    // The one place that waits: the answers come by callback.
    QEventLoop loop;
    HttpClient http;
    HttpReply reply;
    const auto fetch = [&](const QUrl& url) {
        http.get(url, [&](const HttpReply& got) {
            reply = got;
            loop.quit();
        });
        loop.exec();
        return reply;
    };
    const ServiceAddresses site = ServiceAddresses::fromEnvironment();
    const UpdateList list = parseUpdateList(urlBytesText(fetch(site.updateList()), true));
    QString failure = refusalToReplace(program, site.updateList(), list);
    if (failure.isEmpty()) {
        http.setTimeoutMs(downloadLimitMs());
        http.setMaxBytes(kMaxDownloadBytes);
        failure = replaceProgram(program, fetch(QUrl(list.download)), list);
    }
    if (failure.isEmpty()) {
        say(QStringLiteral("%1 updated to %2").arg(program, list.version));
    } else {
        say(failure);
        if (!isWebAddress(QUrl(list.download)))
            say(QStringLiteral("the download address is not a web page: %1").arg(list.download));
        else if (!QProcess::startDetached(QStringLiteral("xdg-open"), {list.download}))
            say(QStringLiteral("cannot open %1").arg(list.download));
    }
    if (!QProcess::startDetached(program, {QStringLiteral("UP")}, QFileInfo(program).absolutePath())) {
        say(QStringLiteral("cannot start %1").arg(program));
        return 1;
    }
    return 0;
}
