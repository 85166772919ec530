#include "desktop/FileReplace.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillora
{

namespace
{

WriteOutcome failure(int error)
{
    return {false, qt_error_string(error)};
}

// Opens a new file of a random name in `folder`; -1 with errno set when that cannot be done.
int openTemporary(const QString& folder, const QString& name, QByteArray* path)
{
    for (int attempt = 0; attempt < 16; ++attempt) {
        const QString candidate = folder + QStringLiteral("/.") + name + QStringLiteral(".") +
                                  QString::number(QRandomGenerator::global()->generate(), 36);
        *path = QFile::encodeName(candidate);
        const int fd = ::open(path->constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd >= 0 || errno != EEXIST)
            return fd;
    }
    return -1;
}

bool writeAll(int fd, const QByteArray& bytes)
{
    const char* data = bytes.constData();
    qsizetype left = bytes.size();
    while (left > 0) {
        const ssize_t n = ::write(fd, data, size_t(left));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0) {
            if (n == 0)
                errno = EIO;
            return false;
        }
        data += n;
        left -= n;
    }
    return true;
}

// The written file is trusted only once it is on the disk and holds exactly the bytes meant.
bool writeAndSync(int fd, const QByteArray& bytes, const struct stat* old)
{
    if (old && ::fchmod(fd, old->st_mode & 07777) != 0)
        return false;
    if (!writeAll(fd, bytes) || ::fsync(fd) != 0)
        return false;
    struct stat written {
    };
    if (::fstat(fd, &written) != 0)
        return false;
    if (written.st_size != bytes.size()) {
        errno = EIO;
        return false;
    }
    return true;
}

} // namespace

WriteOutcome replaceFileContents(const QString& fileName, const QByteArray& bytes)
{
    const QFileInfo info(fileName);
    const QString target =
        info.isSymLink() && info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
    const QFileInfo targetInfo(target);
    const QByteArray targetPath = QFile::encodeName(target);
    struct stat old {
    };
    const bool hadFile = ::stat(targetPath.constData(), &old) == 0;

    QByteArray temporary;
    const int fd = openTemporary(targetInfo.absolutePath(), targetInfo.fileName(), &temporary);
    if (fd < 0)
        return failure(errno);
    if (!writeAndSync(fd, bytes, hadFile ? &old : nullptr)) {
        const int error = errno;
        ::close(fd);
        ::unlink(temporary.constData());
        return failure(error);
    }
    if (::close(fd) != 0 || ::rename(temporary.constData(), targetPath.constData()) != 0) {
        const int error = errno;
        ::unlink(temporary.constData());
        return failure(error);
    }
    // The rename itself reaches the disk with the folder's entry.
    const int folder = ::open(QFile::encodeName(targetInfo.absolutePath()).constData(), O_RDONLY | O_CLOEXEC);
    if (folder >= 0) {
        ::fsync(folder);
        ::close(folder);
    }
    return {true, QString()};
}

} // namespace quillora
