#include "translate/TempFolder.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <sys/stat.h>
#include <unistd.h>

namespace quillora
{

namespace
{

// A real directory (not a link to one) that belongs to this user, made private if it was not.
bool isOwnDirectory(const QString& path)
{
    const QByteArray native = QFile::encodeName(path);
    struct stat info {
    };
    if (::lstat(native.constData(), &info) != 0 || !S_ISDIR(info.st_mode) || info.st_uid != ::getuid())
        return false;
    return (info.st_mode & 0777) == 0700 || ::chmod(native.constData(), 0700) == 0;
}

// Made once when a preferred folder is refused, and removed when the process ends.
QString fallbackFolder()
{
    static QTemporaryDir dir(QDir::tempPath() + QStringLiteral("/quillora-XXXXXX"));
    return dir.path();
}

} // namespace

QString privateFolderAt(const QString& preferred)
{
    const QByteArray native = QFile::encodeName(preferred);
    struct stat info {
    };
    if (::lstat(native.constData(), &info) != 0)
        ::mkdir(native.constData(), 0700);
    if (isOwnDirectory(preferred))
        return preferred;
    return fallbackFolder();
}

QString temporaryFolder()
{
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty())
        return privateFolderAt(QDir(runtime).filePath(QStringLiteral("quillora")));
    return privateFolderAt(QDir::tempPath() + QStringLiteral("/quillora-") + QString::number(::getuid()));
}

} // namespace quillora
