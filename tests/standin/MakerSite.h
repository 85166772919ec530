#pragma once

#include "net/MakerLists.h"
#include "standin/StandinService.h"

#include <QCryptographicHash>
#include <QRandomGenerator>

namespace quillora::test
{

// The maker's site on a stand-in service: the update list, the sites lists, the promotion lists and
// pages, all under <service>/files/<root>, which is what QUILLORA_SITE_URL points at. Files not set
// answer 404. The root is this site's own, so that a stray request from another process that meets a
// reused port is not counted as one for it.
class MakerSite
{
public:
    explicit MakerSite(StandinService& service)
        : m_service(service), m_root(QString::number(QRandomGenerator::global()->generate64(), 36))
    {
    }

    QString url() const { return m_service.baseUrl() + QStringLiteral("/files/") + m_root; }
    QString urlOf(const QString& name) const { return url() + u'/' + name; }
    // GET requests for a file of the site so far.
    int requests(const QString& name) const
    {
        return m_service.count("GET", QStringLiteral("/files/%1/%2").arg(m_root, name));
    }

    // "version|7|download|details with the marker|sha256"; an empty digest leaves the field out.
    void setUpdate(const QString& version, const QString& download = {}, const QByteArray& digestHex = {})
    {
        QString list =
            version + QStringLiteral("|7|") + download + QStringLiteral("|Updates:\r\nfaster start");
        if (!digestHex.isEmpty())
            list += u'|' + QString::fromLatin1(digestHex);
        setFile(QStringLiteral("Update.txt"), list.toUtf8());
    }
    // Serves `bytes` as a download and returns its address.
    QString setDownload(const QString& name, const QByteArray& bytes)
    {
        setFile(name, bytes, "application/octet-stream");
        return urlOf(name);
    }
    static QByteArray sha256Hex(const QByteArray& bytes)
    {
        return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
    }

    // A list under list/: "caption|address" records joined by "<".
    void setList(const QString& fileName, const QList<SiteRecord>& records)
    {
        QStringList joined;
        for (const SiteRecord& r : records)
            joined << r.caption + u'|' + r.address;
        setFile(QStringLiteral("list/") + fileName, joined.join(u'<').toUtf8(), "text/plain; charset=UTF-8");
    }
    void setPageList(const QStringList& pages)
    {
        setFile(QStringLiteral("list/ADlist21.txt"), pages.join(QStringLiteral("<|")).toUtf8());
    }
    // A promotion page under promo/ showing `title`, a link and the banner image; returns its address.
    QString addPromotionPage(const QString& name, const QString& title)
    {
        static const QByteArray png =
            QByteArray::fromBase64("iVBORw0KGgoAAAANSUhEUgAAAAEAAAABCAYAAAAfFcSJAAAADUlEQVR42mNk+"
                                   "M9QDwADhgGAWjR9awAAAABJRU5ErkJggg==");
        setFile(QStringLiteral("promo/banner.png"), png, "image/png");
        const QString html =
            QStringLiteral("<html><body><a href=\"offer.html\"><img src=\"banner.png\"></a> %1"
                           "<script>document.title='ran'</script></body></html>")
                .arg(title);
        setFile(QStringLiteral("promo/") + name, html.toUtf8(), "text/html; charset=UTF-8");
        return urlOf(QStringLiteral("promo/") + name);
    }

private:
    void setFile(const QString& name, const QByteArray& body, const QByteArray& type = "text/plain")
    {
        m_service.setFile(m_root + u'/' + name, body, type);
    }
    StandinService& m_service;
    QString m_root;
};

} // namespace quillora::test
