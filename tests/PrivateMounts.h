#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

namespace quillora::test
{

// Moves this process into a mount namespace of its own, where the test may mount small file systems
// that nobody else sees. False where that is not allowed (not root, or a container that refuses).
inline bool enterPrivateMounts()
{
    return geteuid() == 0 && unshare(CLONE_NEWNS) == 0 &&
           mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

// A fresh tmpfs of `kib` KiB at `folder`, made after enterPrivateMounts().
inline bool mountSmallDisk(const QString& folder, int kib)
{
    const QByteArray options = "size=" + QByteArray::number(kib) + "k";
    return QDir().mkpath(folder) &&
           mount("tmpfs", QFile::encodeName(folder).constData(), "tmpfs", 0, options.constData()) == 0;
}

inline bool makeReadOnly(const QString& folder)
{
    return mount(nullptr, QFile::encodeName(folder).constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) ==
           0;
}

// Fills the file system of `folder` to the last byte.
inline void fillUp(const QString& folder)
{
    QFile filler(folder + QStringLiteral("/filler"));
    if (!filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        return;
    const QByteArray block(512, 'f');
    while (filler.write(block) > 0) {
    }
    while (filler.write(block.left(1)) > 0) {
    }
}

} // namespace quillora::test
