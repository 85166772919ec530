// The "Options" settings string as found in a hand-edited settings file.
#include "FuzzCheck.h"
#include "app/Settings.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const quillora::ParsedOptions parsed = quillora::parseOptions(fuzzText(data, size));
    fuzzCheck(parsed.stoppedAt() <= quillora::OptionFieldCount, "at most seven fields");
    if (!parsed.complete())
        return 0;
    quillora::OptionValues values{};
    std::copy(parsed.fields.begin(), parsed.fields.end(), values.begin());
    fuzzCheck(quillora::parseOptions(quillora::formatOptions(values)).fields == parsed.fields,
              "stored options read back the same");
    return 0;
}
