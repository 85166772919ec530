#pragma once

#include <QByteArray>
#include <QString>

namespace quillora
{

// What became of a write: on failure `reason` is the system's own text ("No space left on device").
struct WriteOutcome {
    bool ok = false;
    QString reason;
    explicit operator bool() const { return ok; }
};

// Replaces the file's contents with `bytes`. They go to a temporary file beside it that is written,
// synced and measured before it is renamed over the old one, so any failure leaves the old file
// exactly as it was. A symbolic link keeps pointing where it did; the new file keeps the old one's
// permissions.
WriteOutcome replaceFileContents(const QString& fileName, const QByteArray& bytes);

} // namespace quillora
