#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace quillora
{

// What the clipboard watcher and Paste take from another program's clipboard, decided from the
// types it offers alone (and, for the password managers' hint, that hint's content): text, read as
// the best text type offered, even when a picture comes with it; never files, never a secret.
namespace ClipboardOffer
{

// Largest text taken, in bytes of its encoding: the service's web form takes about 5,000
// characters, and the window shows a text of this size in tens of milliseconds, whatever the script
// (a quarter megabyte of Chinese or Thai text takes a fifth of a second).
inline constexpr qint64 kMaxBytes = 64 * 1024;
inline constexpr int kMaxKiB = int(kMaxBytes / 1024);
// Time another program has to hand over what it offers.
inline constexpr int kTimeoutMs = 3000;

// Offered by password managers (KeePassXC, KDE's clipboard) with the content "secret".
inline constexpr char kSecretHintType[] = "x-kde-passwordManagerHint";
inline constexpr qint64 kMaxHintBytes = 64;

// Every type the rule looks at; the others offered do not matter.
QList<QByteArray> typesConsidered();
// The text type to read, or empty when the offer changes nothing (no text, or files).
QByteArray textType(const QList<QByteArray>& types);
// Whether the hint must be read before the text is taken.
bool hasSecretHint(const QList<QByteArray>& types);
bool isSecret(const QByteArray& hint);
QString decode(const QByteArray& bytes, const QByteArray& type);

} // namespace ClipboardOffer

// How reading the clipboard ended.
enum class ClipboardRead {
    Text,     // text to take
    Nothing,  // no text, files, a secret, a failed or timed-out transfer
    TooLarge, // text over ClipboardOffer::kMaxBytes
};

// Why the clipboard is read; a read serves every reason given while it runs.
enum ClipboardPurpose {
    ForNotice = 1, // another program copied
    ForPaste = 2,  // the Paste button
};

} // namespace quillora
