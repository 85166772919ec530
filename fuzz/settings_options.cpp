// The "Options" settings string as found in a hand-edited settings file.
#include "FuzzCheck.h"
#include "app/Options.h"

namespace
{

template <typename T> bool sameWhereRead(std::optional<T> read, std::optional<T> again)
{
    return again && (!read || *read == *again);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const quillora::Options read = quillora::Options::fromText(fuzzText(data, size));
    const quillora::Options again = quillora::Options::fromText(read.toText());
    fuzzCheck(sameWhereRead(read.sourceRow, again.sourceRow) &&
                  sameWhereRead(read.targetRow, again.targetRow) &&
                  sameWhereRead(read.showPhonetic, again.showPhonetic) &&
                  sameWhereRead(read.showDictionary, again.showDictionary) &&
                  sameWhereRead(read.interfaceLanguageRow, again.interfaceLanguageRow) &&
                  sameWhereRead(read.monitorClipboard, again.monitorClipboard) &&
                  sameWhereRead(read.caching, again.caching),
              "stored options read back whole, the same where they were read");
    return 0;
}
