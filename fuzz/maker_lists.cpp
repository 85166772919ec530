// The maker's update list, sites and promotion text lists and the promotion page list, as fetched.
#include "FuzzCheck.h"
#include "net/MakerLists.h"

#include <algorithm>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QString text = fuzzText(data, size);

    const quillora::UpdateList update = quillora::parseUpdateList(text);
    fuzzCheck(update.sha256.isEmpty() || update.sha256.size() == 32, "a digest is whole or absent");
    fuzzCheck(!update.version.contains(QLatin1Char('|')), "the version is one field");
    fuzzCheck(!quillora::isNewerVersion(update.version, update.version),
              "a version is not newer than itself");

    const QList<quillora::SiteRecord> sites = quillora::parseSitesList(text);
    fuzzCheck(sites.size() <= quillora::kMaxListRecords, "a list keeps at most its limit");
    for (const quillora::SiteRecord& site : sites) {
        fuzzCheck(!site.caption.isEmpty() || !site.address.isEmpty(), "no empty record");
        fuzzCheck(!site.caption.contains(QLatin1Char('<')) && !site.address.contains(QLatin1Char('<')),
                  "records end at their separator");
    }

    const QStringList pages = quillora::splitPageList(text);
    const qsizetype expected =
        std::min<qsizetype>(text.count(QStringLiteral("<|")) + 1, quillora::kMaxListRecords);
    fuzzCheck(text.isEmpty() ? pages.isEmpty() : pages.size() == expected,
              "one page per separator and one more, up to the limit");
    return 0;
}
