#pragma once

#include <QByteArray>
#include <QString>

namespace quillora
{

// Text-file encodings by number.
enum TextEncoding {
    EncAnsi = 0,
    EncUtf8 = 1,
    EncUtf16LE = 2,
    EncUtf16BE = 3,
    EncUtf32LE = 4,
    EncUtf32BE = 5
};

struct ByteOrderMark {
    int encoding = EncAnsi;
    int length = 0;
};

// Detection by mark, UTF-32 LE tested before UTF-16 LE.
ByteOrderMark detectEncoding(const QByteArray& head);

// Decodes a whole file's bytes (mark included). Encoding 0 is UTF-8 when the bytes are valid UTF-8,
// otherwise `legacyCodec` (a QStringDecoder name). Invalid sequences become U+FFFD.
QString decodeFileBytes(const QByteArray& bytes, int* encoding, const QByteArray& legacyCodec);

// The legacy codec of the system locale.
QByteArray systemLegacyCodec();

// Reads a text file in any of the six encodings; an unreadable file reads as "".
QString ReadTextFile(const QString& fileName, int* encoding = nullptr);

// Writes `text`. encoding: 0-5, or -1 with append (take the file's own). A new file (append false)
// is replaced atomically. Encodings 4 and 5 are written as mark only and return false.
bool WriteTextFile(const QString& fileName, const QString& text, bool append, int& encoding,
                   int defaultEncoding = EncUtf16LE);

} // namespace quillora
