// Opening a text file: byte-order-mark detection and decoding in every encoding. The first byte picks
// the legacy code page an unmarked, non-UTF-8 file is read with; the rest is the file.
#include "FuzzCheck.h"
#include "desktop/ModUniTxt.h"

#include <QByteArray>
#include <iterator>

namespace
{

const char* const kLegacyCodecs[] = {"windows-1252", "windows-1250", "windows-874",  "GBK",
                                     "Big5",         "Shift_JIS",    "EUC-KR",       "windows-1251",
                                     "windows-1253", "windows-1254", "windows-1255", "windows-1256",
                                     "windows-1257", "windows-1258", "no-such-codec"};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray codec(kLegacyCodecs[data[0] % std::size(kLegacyCodecs)]);
    const QByteArray file(reinterpret_cast<const char*>(data + 1), qsizetype(size - 1));
    int encoding = -1;
    const QString text = quillora::decodeFileBytes(file, &encoding, codec);
    fuzzCheck(encoding == quillora::detectEncoding(file.left(4)).encoding, "the mark decides the encoding");
    if (encoding != quillora::EncAnsi) {
        fuzzCheck(!hasLoneSurrogate(text), "invalid Unicode becomes U+FFFD");
        return 0;
    }
    // Unmarked text that is valid UTF-8 is read as UTF-8, byte for byte.
    const QString asUtf8 = QString::fromUtf8(file);
    if (asUtf8.toUtf8() == file && !asUtf8.contains(QChar::ReplacementCharacter))
        fuzzCheck(text == asUtf8, "valid UTF-8 is read as UTF-8");
    return 0;
}
