#include "desktop/ModUniTxt.h"

#include "app/LocaleChoice.h"

#include <QFile>
#include <QSaveFile>
#include <QStringDecoder>
#include <QStringEncoder>
#include <optional>

namespace quillora
{

namespace
{

constexpr auto kWhole = QStringConverter::Flag::Stateless | QStringConverter::Flag::ConvertInitialBom;

QByteArray markBytes(int encoding)
{
    switch (encoding) {
    case EncUtf8:
        return QByteArrayLiteral("\xEF\xBB\xBF");
    case EncUtf16LE:
        return QByteArrayLiteral("\xFF\xFE");
    case EncUtf16BE:
        return QByteArrayLiteral("\xFE\xFF");
    case EncUtf32LE:
        return QByteArrayLiteral("\xFF\xFE\x00\x00");
    case EncUtf32BE:
        return QByteArrayLiteral("\x00\x00\xFE\xFF");
    default:
        return QByteArray();
    }
}

std::optional<QStringConverter::Encoding> unicodeForm(int encoding)
{
    switch (encoding) {
    case EncUtf8:
        return QStringConverter::Utf8;
    case EncUtf16LE:
        return QStringConverter::Utf16LE;
    case EncUtf16BE:
        return QStringConverter::Utf16BE;
    case EncUtf32LE:
        return QStringConverter::Utf32LE;
    case EncUtf32BE:
        return QStringConverter::Utf32BE;
    default:
        return std::nullopt;
    }
}

// Qt's UTF-16 and UTF-32 decoders let unpaired surrogates through, and turn UTF-32 units beyond U+10FFFF
// into surrogate garbage; both become U+FFFD here like every other invalid sequence.
QByteArray withValidUtf32Units(QByteArrayView bytes, bool bigEndian)
{
    QByteArray units = bytes.toByteArray();
    for (qsizetype i = 0; i + 4 <= units.size(); i += 4) {
        quint32 v = 0;
        for (int b = 0; b < 4; ++b)
            v |= quint32(quint8(units.at(i + b))) << (8 * (bigEndian ? 3 - b : b));
        if (v <= 0x10FFFFu && (v < 0xD800u || v > 0xDFFFu))
            continue;
        for (int b = 0; b < 4; ++b)
            units[i + b] = char((0xFFFDu >> (8 * (bigEndian ? 3 - b : b))) & 0xFFu);
    }
    return units;
}

QString withPairedSurrogates(QString text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        else if (c.isSurrogate())
            text[i] = QChar::ReplacementCharacter;
    }
    return text;
}

QString decodeUnicode(QByteArrayView body, int encoding)
{
    QStringDecoder decoder(*unicodeForm(encoding), kWhole);
    if (encoding == EncUtf32LE || encoding == EncUtf32BE)
        return decoder.decode(withValidUtf32Units(body, encoding == EncUtf32BE));
    return withPairedSurrogates(decoder.decode(body));
}

bool isValidUtf8(QByteArrayView bytes)
{
    QStringDecoder decoder(QStringConverter::Utf8, kWhole);
    const QString ignored = decoder.decode(bytes);
    return !decoder.hasError();
}

QString decodeLegacy(QByteArrayView bytes, const QByteArray& codec)
{
    QStringDecoder decoder(codec.constData(), kWhole);
    if (!decoder.isValid())
        decoder = QStringDecoder(QStringConverter::Latin1, kWhole);
    return decoder.decode(bytes);
}

QByteArray encodeLegacy(const QString& text, const QByteArray& codec)
{
    QStringEncoder encoder(codec.constData(), QStringConverter::Flag::Stateless);
    if (!encoder.isValid())
        encoder = QStringEncoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    return encoder.encode(text);
}

// The body bytes of `text`. An unmarked file is written as UTF-8 unless `legacyCodec` is given (appending
// to a file that is in the system's legacy code page). Encodings 4 and 5 have no writer.
std::optional<QByteArray> encodeBody(const QString& text, int encoding, const QByteArray& legacyCodec = {})
{
    if (encoding == EncAnsi && !legacyCodec.isEmpty())
        return encodeLegacy(text, legacyCodec);
    if (encoding == EncAnsi || encoding == EncUtf8)
        return QStringEncoder(QStringConverter::Utf8, QStringConverter::Flag::Stateless).encode(text);
    if (encoding == EncUtf16LE || encoding == EncUtf16BE)
        return QStringEncoder(*unicodeForm(encoding), QStringConverter::Flag::Stateless).encode(text);
    return std::nullopt;
}

bool writeAll(QIODevice& device, const QByteArray& bytes)
{
    return device.write(bytes) == bytes.size();
}

bool appendTextFile(const QString& fileName, const QString& text, int& encoding, int defaultEncoding)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadWrite))
        return false;
    QByteArray legacyCodec;
    if (file.size() > 0) {
        const QByteArray existing = file.readAll();
        encoding = detectEncoding(existing.left(4)).encoding;
        // Keep an unmarked file in the code page it already uses.
        if (encoding == EncAnsi && !isValidUtf8(existing))
            legacyCodec = systemLegacyCodec();
    } else {
        if (encoding == -1)
            encoding = defaultEncoding;
        if (encoding < EncAnsi || encoding > EncUtf32BE || !writeAll(file, markBytes(encoding)))
            return false;
    }
    const std::optional<QByteArray> body = encodeBody(text, encoding, legacyCodec);
    return body && file.seek(file.size()) && writeAll(file, *body);
}

} // namespace

ByteOrderMark detectEncoding(const QByteArray& head)
{
    // The first four bytes as a little-endian number; a shorter file reads as if padded with zeros.
    quint32 v = 0;
    for (int i = 0; i < 4 && i < head.size(); ++i)
        v |= quint32(quint8(head.at(i))) << (8 * i);
    if (v == 0x0000FEFFu)
        return {EncUtf32LE, 4};
    if (v == 0xFFFE0000u)
        return {EncUtf32BE, 4};
    if ((v & 0xFFFFu) == 0xFEFFu)
        return {EncUtf16LE, 2};
    if ((v & 0xFFFFu) == 0xFFFEu)
        return {EncUtf16BE, 2};
    if ((v & 0xFFFFFFu) == 0xBFBBEFu)
        return {EncUtf8, 3};
    return {EncAnsi, 0};
}

QString decodeFileBytes(const QByteArray& bytes, int* encoding, const QByteArray& legacyCodec)
{
    const ByteOrderMark mark = detectEncoding(bytes.left(4));
    if (encoding)
        *encoding = mark.encoding;
    const QByteArrayView body = QByteArrayView(bytes).sliced(qMin<qsizetype>(mark.length, bytes.size()));
    if (mark.encoding != EncAnsi)
        return decodeUnicode(body, mark.encoding);
    if (isValidUtf8(body))
        return QStringDecoder(QStringConverter::Utf8, kWhole).decode(body);
    return decodeLegacy(body, legacyCodec);
}

QByteArray systemLegacyCodec()
{
    return legacyCodecForLocale(systemLocaleSpec());
}

QString ReadTextFile(const QString& fileName, int* encoding)
{
    if (encoding)
        *encoding = EncAnsi;
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    const QByteArray bytes = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return QString();
    return decodeFileBytes(bytes, encoding, systemLegacyCodec());
}

bool WriteTextFile(const QString& fileName, const QString& text, bool append, int& encoding,
                   int defaultEncoding)
{
    const bool known = encoding >= EncAnsi && encoding <= EncUtf32BE;
    if (!known && !(encoding == -1 && append))
        return false;
    if (append)
        return appendTextFile(fileName, text, encoding, defaultEncoding);

    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || !writeAll(file, markBytes(encoding)))
        return false;
    const std::optional<QByteArray> body = encodeBody(text, encoding);
    if (body && !writeAll(file, *body))
        return false;
    return file.commit() && body.has_value();
}

} // namespace quillora
