#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace quillora
{

// The maker's update list: one record of "|"-separated fields. The fifth field, when present, is
// the SHA-256 digest of the download in hex; the updater replaces the program only with it.
struct UpdateList {
    QString version;   // field 0, e.g. "2.1.92"
    qint32 number = 0; // field 1, 0 when it is not a number
    QString download;  // field 2
    QString details;   // field 3, may hold line breaks
    QByteArray sha256; // field 4 decoded: 32 bytes, or empty when missing or malformed
};

// One entry of a sites list or of the promotion text list: "caption|address" records split by "<".
struct SiteRecord {
    QString caption;
    QString address;
    bool operator==(const SiteRecord& other) const
    {
        return caption == other.caption && address == other.address;
    }
};

// The most records a sites, promotion text or promotion page list keeps; the rest is not read.
constexpr int kMaxListRecords = 100;

UpdateList parseUpdateList(const QString& text);
// Records in list order; blanks around fields are dropped and so are records left with nothing.
QList<SiteRecord> parseSitesList(const QString& text);
// The promotion page list, split on "<|" and trimmed; empty entries keep their place. "" gives none.
QStringList splitPageList(const QString& text);

// The version comparison of the update check: plain ordinal text order, so 2.1.100 is older than 2.1.91.
bool isNewerVersion(const QString& local, const QString& remote);

// Sites list file names by interface language 1-7: the list and its alternate.
struct SitesListNames {
    QString primary;   // "CDlist2N.txt"
    QString alternate; // "ZTlist2N.txt"
};
SitesListNames sitesListNames(int language);

} // namespace quillora
