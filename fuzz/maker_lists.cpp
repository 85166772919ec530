// The maker's update list, sites and promotion text lists and the promotion page list, as fetched.
#include "FuzzCheck.h"
#include "net/MakerLists.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString text = fuzzText(data, size);

    const quillora::UpdateList update = quillora::parseUpdateList(text);
    fuzzCheck(update.sha256.isEmpty() || update.sha256.size() == 32, "a digest is whole or absent");
    fuzzCheck(!update.version.contains(QLatin1Char('|')), "the version is one field");
    fuzzCheck(!quillora::isNewerVersion(update.version, update.version),
              "a version is not newer than itself");

    for (const quillora::SiteRecord& site : quillora::parseSitesList(text)) {
        fuzzCheck(!site.caption.isEmpty() || !site.address.isEmpty(), "no empty record");
        fuzzCheck(!site.caption.contains(QLatin1Char('<')) && !site.address.contains(QLatin1Char('<')),
                  "records end at their separator");
    }

    const QStringList pages = quillora::splitPageList(text);
    fuzzCheck(text.isEmpty() ? pages.isEmpty() : pages.size() == text.count(QStringLiteral("<|")) + 1,
              "one page per separator and one more");
    return 0;
}
