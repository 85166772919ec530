// The old HTML answer page: the three cuts and both entity tables.
#include "FuzzCheck.h"
#include "translate/ResponseParser.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString page = fuzzText(data, size);
    const quillora::TranslationResult result = quillora::parseFormResponse(page);
    fuzzCheck(quillora::hasFormMarkers(page) || result == quillora::TranslationResult{},
              "a page without any marker gives nothing");
    // Every entity and break is at least as long as what replaces it.
    fuzzCheck(quillora::decodeTranslationEntities(page).size() <= page.size(), "translation entities shrink");
    fuzzCheck(quillora::decodeRomanizationEntities(page).size() <= page.size(),
              "romanization entities shrink");
    fuzzCheck(!quillora::sentText(page).contains(QLatin1Char('&')), "no bare & reaches the form");
    return 0;
}
