// The main window's network services: the sites menu, the update check and the promotion panel.
#include "app/FormMian.h"
#include "app/FormMianPrivate.h"
#include "desktop/CommandMenus.h"
#include "net/PromotionPanel.h"
#include "net/SitesMenu.h"
#include "net/UpdateCheck.h"
#include "translate/TranslationEngine.h"

#include <QFileInfo>
#include <QFrame>
#include <QProcess>

namespace quillora
{

void FormMian::Private::buildSitesMenu()
{
    sites = new SitesMenu(menus->bar(QStringLiteral("SITEMENU")), menus->action(QStringLiteral("menuSite10")),
                          q, addresses(), deps.openUrl);
    QObject::connect(sites, &SitesMenu::triggered, q, &FormMian::dispatch);
}

void FormMian::Private::buildNetServices()
{
    if (!deps.startProgram)
        deps.startProgram = [](const QString& program, const QStringList& arguments) {
            return QProcess::startDetached(program, arguments, QFileInfo(program).absolutePath());
        };
    UpdateCheckDeps check;
    check.connectivity = connectivity;
    check.notice = [this](int offset, QMessageBox::Icon icon, QMessageBox::StandardButtons buttons) {
        return notice(offset, icon, buttons, true);
    };
    check.openUrl = deps.openUrl;
    check.startProgram = deps.startProgram;
    check.exitProgram = [this] { q->requestExit(); };
    check.programPath = deps.programPath;
    check.addresses = addresses();
    updateCheck = new UpdateCheck(std::move(check), q);

    promotion = new PromotionPanel(PicAD, {connectivity, deps.openUrl, addresses(), tempFolder});
}

UpdateCheck* FormMian::updateCheck() const
{
    return d->updateCheck;
}

SitesMenu* FormMian::sitesMenu() const
{
    return d->sites;
}

PromotionPanel* FormMian::promotionPanel() const
{
    return d->promotion;
}

} // namespace quillora
