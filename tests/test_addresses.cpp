#include "translate/ServiceAddresses.h"
#include "translate/WebPageAddress.h"

#include <QTest>

using namespace quillora;

class AddressesTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void environmentOverridesDefaults()
    {
        qunsetenv("QUILLORA_API_CLIENT");
        // One trailing slash is dropped; an empty variable means the default.
        qputenv("QUILLORA_API_URL", "http://127.0.0.1:8081//");
        qputenv("QUILLORA_SITE_URL", "http://127.0.0.1:8082/site");
        qputenv("QUILLORA_SERVICE_URL", "");
        const ServiceAddresses a = ServiceAddresses::fromEnvironment();
        QCOMPARE(a.api + ' ' + a.apiClient + ' ' + a.formUrl().toString(),
                 "http://127.0.0.1:8081/ gtx https://translate.google.com/");
        QCOMPARE(a.onlineHelp(), QUrl("http://127.0.0.1:8082/site/help.html"));
    }

    void webPageAddress()
    {
        // The page address goes in as typed, unescaped.
        QCOMPARE(webPageTranslationAddress("http://s", "th", "", "zh-CN",
                                           "en.wikipedia.org/w/index.php?a=1&b=2 #top"),
                 "http://s/"
                 "translate?js=n&prev=_t&hl=th&ie=UTF-8&layout=2&eotf=1&sl=&tl=zh-CN&u=en.wikipedia.org/w/"
                 "index.php?a=1&b=2 #top");
    }
};

QTEST_APPLESS_MAIN(AddressesTest)
#include "test_addresses.moc"
