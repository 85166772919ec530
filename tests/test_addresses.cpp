#include "translate/ServiceAddresses.h"
#include "translate/WebPageAddress.h"

#include <QTest>

using namespace quillora;

class AddressesTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void init()
    {
        for (const char* name :
             {"QUILLORA_SERVICE_URL", "QUILLORA_API_URL", "QUILLORA_API_CLIENT", "QUILLORA_SITE_URL"})
            qunsetenv(name);
    }

    void defaults()
    {
        const ServiceAddresses a = ServiceAddresses::fromEnvironment();
        QCOMPARE(a.service, QStringLiteral("https://translate.google.com"));
        QCOMPARE(a.api, QStringLiteral("https://translate.googleapis.com"));
        QCOMPARE(a.apiClient, QStringLiteral("gtx"));
        QCOMPARE(a.formUrl(), QUrl(QStringLiteral("https://translate.google.com/")));
        QCOMPARE(a.serviceHome(QStringLiteral("zh-TW")),
                 QUrl(QStringLiteral("https://translate.google.com?hl=zh-TW")));
        QCOMPARE(a.onlineHelp(), QUrl(QStringLiteral("https://quillora.zelvan.org/help.html")));
        QCOMPARE(a.productHome(), QUrl(QStringLiteral("https://quillora.zelvan.org/")));
        QCOMPARE(a.sitesPage(), QUrl(QStringLiteral("https://quillora.zelvan.org/sites.html")));
        QCOMPARE(a.outsideTranslator(),
                 QUrl(QStringLiteral("https://quillora.zelvan.org/web-translator.html")));
        QCOMPARE(a.webAddressBoxDefault(), QStringLiteral("www.wikipedia.org"));
        QCOMPARE(a.speechPlayerAddress(),
                 QStringLiteral("https://translate.google.com/translate/static/player.swf"));
    }

    void overrides()
    {
        qputenv("QUILLORA_SERVICE_URL", "http://127.0.0.1:8080/");
        qputenv("QUILLORA_API_URL", "http://127.0.0.1:8081//");
        qputenv("QUILLORA_API_CLIENT", "t");
        qputenv("QUILLORA_SITE_URL", "http://127.0.0.1:8082/site");
        const ServiceAddresses a = ServiceAddresses::fromEnvironment();
        QCOMPARE(a.service, QStringLiteral("http://127.0.0.1:8080"));
        QCOMPARE(a.api, QStringLiteral("http://127.0.0.1:8081/"));
        QCOMPARE(a.apiClient, QStringLiteral("t"));
        QCOMPARE(a.formUrl().toEncoded(), QByteArray("http://127.0.0.1:8080/"));
        QCOMPARE(a.onlineHelp().toEncoded(), QByteArray("http://127.0.0.1:8082/site/help.html"));

        qputenv("QUILLORA_SERVICE_URL", "");
        QCOMPARE(ServiceAddresses::fromEnvironment().service, QStringLiteral("https://translate.google.com"));
    }

    void webPageAddress()
    {
        QCOMPARE(webPageTranslationAddress(QStringLiteral("https://translate.google.com"),
                                           QStringLiteral("en"), QString(), QStringLiteral("fr"),
                                           QStringLiteral("en.wikipedia.org/w/index.php?a=1&b=2 #top")),
                 QStringLiteral(
                     "https://translate.google.com/translate?js=n&prev=_t&hl=en&ie=UTF-8&layout=2&eotf=1"
                     "&sl=&tl=fr&u=en.wikipedia.org/w/index.php?a=1&b=2 #top"));
        QCOMPARE(webPageTranslationAddress(QStringLiteral("http://s"), QStringLiteral("th"),
                                           QStringLiteral("de"), QStringLiteral("zh-CN"), QString()),
                 QStringLiteral(
                     "http://s/translate?js=n&prev=_t&hl=th&ie=UTF-8&layout=2&eotf=1&sl=de&tl=zh-CN&u="));
    }
};

QTEST_APPLESS_MAIN(AddressesTest)
#include "test_addresses.moc"
