#pragma once

#include <QDir>
#include <QFile>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace quillora::test
{

// Moves this process into a mount namespace of its own, where it may mount small file systems nobody
// else sees. False where that is not allowed (not root, or a container that refuses).
inline bool enterPrivateMounts()
{
    return geteuid() == 0 && unshare(CLONE_NEWNS) == 0 &&
           mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

// A fresh 64 KiB tmpfs at `folder`, or with `flags` MS_REMOUNT | MS_RDONLY that one made read-only.
inline bool mountSmallDisk(const QString& folder, unsigned long flags = 0)
{
    return QDir().mkpath(folder) &&
           mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", flags, "size=64k") == 0;
}

// Fills the file system of `folder` to the last page.
inline void fillUp(const QString& folder)
{
    QFile filler(folder + QStringLiteral("/filler"));
    if (filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        while (filler.write(QByteArray(4096, 'f')) > 0) {
        }
}

} // namespace quillora::test
