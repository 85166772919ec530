#include "translate/ServiceAddresses.h"

#include "Version.h"

namespace quillora
{

namespace
{

QString fromEnv(const char* name, const QString& fallback)
{
    QString value = qEnvironmentVariable(name);
    if (value.isEmpty())
        return fallback;
    if (value.endsWith(QLatin1Char('/')))
        value.chop(1);
    return value;
}

} // namespace

ServiceAddresses ServiceAddresses::fromEnvironment()
{
    ServiceAddresses a;
    a.service = fromEnv("QUILLORA_SERVICE_URL", QStringLiteral("https://translate.google.com"));
    a.api = fromEnv("QUILLORA_API_URL", QStringLiteral("https://translate.googleapis.com"));
    a.apiClient = fromEnv("QUILLORA_API_CLIENT", QStringLiteral("gtx"));
    a.site = fromEnv("QUILLORA_SITE_URL", QString::fromLatin1(kSiteAddress));
    return a;
}

QUrl ServiceAddresses::formUrl() const
{
    return QUrl(service + QLatin1Char('/'));
}

QUrl ServiceAddresses::serviceHome(const QString& hl) const
{
    return QUrl(service + QStringLiteral("?hl=") + hl);
}

QUrl ServiceAddresses::onlineHelp() const
{
    return QUrl(site + QStringLiteral("/help.html"));
}

QUrl ServiceAddresses::productHome() const
{
    return QUrl(site + QLatin1Char('/'));
}

QUrl ServiceAddresses::sitesPage() const
{
    return QUrl(site + QStringLiteral("/sites.html"));
}

QUrl ServiceAddresses::outsideTranslator() const
{
    return QUrl(site + QStringLiteral("/web-translator.html"));
}

QUrl ServiceAddresses::updateList() const
{
    return QUrl(site + QStringLiteral("/Update.txt"));
}

QUrl ServiceAddresses::latestVersionPage() const
{
    return QUrl(site + QStringLiteral("/Lastest.html"));
}

QUrl ServiceAddresses::advertisePage() const
{
    return QUrl(site + QStringLiteral("/advertise.html"));
}

QUrl ServiceAddresses::makerList(const QString& fileName) const
{
    return QUrl(site + QStringLiteral("/list/") + fileName);
}

QString ServiceAddresses::partnerMail() const
{
    return QStringLiteral("partners@zelvan.org");
}

QString ServiceAddresses::webAddressBoxDefault() const
{
    return QStringLiteral("www.wikipedia.org");
}

QString ServiceAddresses::speechPlayerAddress() const
{
    return quillora::speechPlayerAddress(service);
}

QString speechPlayerAddress(const QString& serviceBase)
{
    return serviceBase + QStringLiteral("/translate/static/player.swf");
}

} // namespace quillora
