#pragma once

#include <QString>
#include <QUrl>

namespace quillora
{

// Every address the program talks to or opens, in one place. Environment variables override
// the defaults for mirrors and tests: QUILLORA_SERVICE_URL, QUILLORA_API_URL,
// QUILLORA_API_CLIENT, QUILLORA_SITE_URL.
struct ServiceAddresses {
    QString service;   // https://translate.google.com (no trailing slash)
    QString api;       // https://translate.googleapis.com
    QString apiClient; // gtx
    QString site;      // the maker's own pages and lists

    static ServiceAddresses fromEnvironment();

    QUrl formUrl() const;                      // service + "/"
    QUrl serviceHome(const QString& hl) const; // service + "?hl=" + hl
    QUrl onlineHelp() const;                   // site pages
    QUrl productHome() const;
    QUrl sitesPage() const;
    QUrl outsideTranslator() const;
    // The update check, the updater and the promotions.
    QUrl updateList() const;                       // site + "/Update.txt"
    QUrl latestVersionPage() const;                // site + "/Lastest.html"
    QUrl advertisePage() const;                    // where the "Your AD here" entry leads
    QUrl makerList(const QString& fileName) const; // site + "/list/" + fileName
    QString partnerMail() const;
    QString webAddressBoxDefault() const; // initial text of the address box
    QString speechPlayerAddress() const;  // the service's speech player
};

// Where the speech page's player object fetches its plug-in.
inline const QString SpeechPluginDownload =
    QStringLiteral("http://fpdownload.macromedia.com/pub/shockwave/cabs/flash/swflash.cab#version=9,0,0,0");
// The service's speech player for a service base address.
QString speechPlayerAddress(const QString& serviceBase);

} // namespace quillora
