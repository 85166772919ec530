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

// The piece from `from` up to the next `separator` or the end; `from` moves past the separator. Lists
// are walked this way rather than split, so a huge one costs no more than the records kept.
QStringView nextPiece(QStringView all, qsizetype& from, QStringView separator)
{
    qsizetype end = all.indexOf(separator, from);
    if (end < 0)
        end = all.size();
    const QStringView piece = all.sliced(from, end - from);
    from = end + separator.size();
    return piece;
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
    for (qsizetype from = 0; from <= text.size() && records.size() < kMaxListRecords;) {
        const QStringView record = nextPiece(text, from, u"<");
        qsizetype field = 0;
        const QStringView caption = nextPiece(record, field, u"|");
        const QStringView address = field <= record.size() ? nextPiece(record, field, u"|") : QStringView();
        SiteRecord site{caption.trimmed().toString(), address.trimmed().toString()};
        if (!site.caption.isEmpty() || !site.address.isEmpty())
            records.append(site);
    }
    return records;
}

QStringList splitPageList(const QString& text)
{
    QStringList pages;
    for (qsizetype from = 0; !text.isEmpty() && from <= text.size() && pages.size() < kMaxListRecords;)
        pages.append(nextPiece(text, from, u"<|").trimmed().toString());
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
