#include "Version.h"
#include "standin/MakerSite.h"
#include "standin/StandinService.h"

#include <QCoreApplication>
#include <cstdio>

using namespace quillora;

// The stand-in service as its own process: prints "PORT <n>" and "SITE <url>" and serves until killed.
// Its maker's site offers the running version (so no update is asked), sites lists for every
// interface language, two promotion pages and a promotion text.
int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    test::StandinService service;
    if (!service.listen())
        return 1;
    test::MakerSite site(service);
    site.setUpdate(versionText());
    for (int language = 1; language <= 6; ++language)
        site.setList(
            sitesListNames(language).primary,
            {{QStringLiteral("Stand-in home"), service.baseUrl() + QStringLiteral("/files/home.html")}});
    site.setPageList({site.addPromotionPage(QStringLiteral("one.html"), QStringLiteral("First promotion")),
                      site.addPromotionPage(QStringLiteral("two.html"), QStringLiteral("Second promotion"))});
    site.setList(QStringLiteral("TXlist21.txt"),
                 {{QStringLiteral("Stand-in offer"), site.urlOf("offer.html")}});
    std::printf("PORT %u\nSITE %s\n", unsigned(service.port()), qPrintable(site.url()));
    std::fflush(stdout);
    return app.exec();
}
