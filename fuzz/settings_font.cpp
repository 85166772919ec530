// The "Font" settings string as found in a hand-edited settings file.
#include "FuzzCheck.h"
#include "app/Settings.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const quillora::ParsedFont parsed = quillora::parseFont(fuzzText(data, size));
    const quillora::FontSetting& font = parsed.font;
    fuzzCheck(parsed.fieldsRead >= 0 && parsed.fieldsRead <= 8, "at most eight fields");
    fuzzCheck(!font.face.trimmed().isEmpty(), "a face name is never blank");
    fuzzCheck(font.weight >= 0 && font.weight <= 1000, "weight in range");
    fuzzCheck(font.pointSize >= 1 && font.pointSize <= 1638, "size in range");
    fuzzCheck(font.charset >= 0 && font.charset <= 255, "charset in range");
    fuzzCheck(font.colorBgr <= 0xFFFFFFu, "colour in range");
    // A face holding the separator cannot be stored; any other setting reads back the same.
    if (font.face.contains(QLatin1Char('|')))
        return 0;
    const quillora::ParsedFont again = quillora::parseFont(quillora::formatFont(font));
    fuzzCheck(again.fieldsRead == 8 && again.font == font, "a stored font reads back the same");
    return 0;
}
