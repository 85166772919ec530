#include "net/MakerLists.h"

#include <algorithm>

namespace quillora
{

namespace
{

QByteArray digestFrom(const QString& field)
{
    const QString hex = field.trimmed();
    if (hex.size() != 64)
        return {};
    const auto isHex = [](QChar c) {
        const char16_t u = c.unicode();
        return (u >= u'0' && u <= u'9') || (u >= u'a' && u <= u'f') || (u >= u'A' && u <= u'F');
    };
    const bool allHex = std::all_of(hex.begin(), hex.end(), isHex);
    return allHex ? QByteArray::fromHex(hex.toLatin1()) : QByteArray();
}

} // namespace

UpdateList parseUpdateList(const QString& text)
{
    const QStringList fields = text.split(QLatin1Char('|'));
    UpdateList list;
    list.version = fields.value(0);
    bool ok = false;
    const qint32 number = fields.value(1).trimmed().toInt(&ok);
    list.number = ok ? number : 0;
    list.download = fields.value(2).trimmed();
    list.details = fields.value(3);
    list.sha256 = digestFrom(fields.value(4));
    return list;
}

QList<SiteRecord> parseSitesList(const QString& text)
{
    QList<SiteRecord> records;
    for (const QString& record : text.split(QLatin1Char('<'))) {
        const QStringList fields = record.split(QLatin1Char('|'));
        SiteRecord site{fields.value(0).trimmed(), fields.value(1).trimmed()};
        if (!site.caption.isEmpty() || !site.address.isEmpty())
            records.append(site);
    }
    return records;
}

QStringList splitPageList(const QString& text)
{
    if (text.isEmpty())
        return {};
    QStringList pages = text.split(QStringLiteral("<|"));
    for (QString& page : pages)
        page = page.trimmed();
    return pages;
}

bool isNewerVersion(const QString& local, const QString& remote)
{
    return QString::compare(local, remote, Qt::CaseSensitive) < 0;
}

SitesListNames sitesListNames(int language)
{
    const int n = std::clamp(language, 1, 6);
    return {QStringLiteral("CDlist2%1.txt").arg(n), QStringLiteral("ZTlist2%1.txt").arg(n)};
}

} // namespace quillora
