#include "TestSupport.h"
#include "WindowRig.h"
#include "app/AccessKeys.h"
#include "app/FormMian.h"
#include "app/Settings.h"
#include "app/StringTable.h"
#include "net/Connectivity.h"
#include "net/Form1.h"
#include "net/Http.h"
#include "net/PromotionPanel.h"
#include "net/PromotionView.h"
#include "net/SitesMenu.h"
#include "net/UpdateCheck.h"
#include "standin/MakerSite.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QMenu>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <pwd.h>
#include <unistd.h>

using namespace quillora;
using namespace quillora::test;
using namespace Qt::StringLiterals;

namespace
{

const QString kStalePage = u"<html><body>stale page</body></html>"_s;

// The real main window against a stand-in maker's site, in a private program folder and temporary
// folder.
struct Rig : WindowRig {
    explicit Rig(const QString& language = u"1"_s, bool stalePage = false, const QString& programFolder = {})
        : WindowRig({{u"Language"_s, language}})
    {
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime.path()));
        if (stalePage)
            writeFile(runtime.filePath(u"quillora/offADen21.htm"_s), kStalePage.toUtf8());
        if (!service.listen())
            qFatal("the stand-in site cannot listen");
        qputenv("QUILLORA_SITE_URL", site.url().toUtf8());
        FormMianDeps d = deps();
        if (!programFolder.isEmpty())
            d.programPath = programFolder + u"/quillora"_s;
        open(d).findChild<PromotionPanel*>()->Timer3()->stop(); // ticks are driven by hand
    }
    ~Rig() { window.reset(); }
    QString updater() const { return dir.filePath(u"Update.exe"_s); }
    QMenu* sites() const { return window->findChild<QMenu*>(u"SITEMENU"_s); }
    QString siteKeys() const
    {
        QStringList keys;
        for (const QAction* item : sites()->actions())
            keys << item->objectName() + u'=' + item->text();
        return keys.join(u' ');
    }
    // One update check, to its end.
    void check()
    {
        QSignalSpy done(window->findChild<UpdateCheck*>(), &UpdateCheck::finished);
        window->findChild<UpdateCheck*>()->Timer2_Timer();
        QVERIFY(done.wait(10000));
    }
    void showAndWaitForSites()
    {
        QSignalSpy filled(window->findChild<SitesMenu*>(), &SitesMenu::filled);
        window->show();
        QVERIFY(filled.wait(5000));
    }

    QTemporaryDir runtime;
    MakerSite site{service};
};

} // namespace

class UpdateCheckTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void updateCheck_data()
    {
        QTest::addColumn<QString>("version");
        QTest::addColumn<int>("answer");
        QTest::addColumn<bool>("asked");
        const int ok = QMessageBox::Ok, cancel = QMessageBox::Cancel;
        QTest::newRow("equal") << u"2.1.91"_s << ok << false;
        QTest::newRow("textually older") << u"2.1.100"_s << ok << false;
        QTest::newRow("newer, Cancel") << u"2.1.92"_s << cancel << true;
        QTest::newRow("newer, OK") << u"2.1.92"_s << ok << true;
    }
    void updateCheck()
    {
        QFETCH(QString, version);
        QFETCH(int, answer);
        QFETCH(bool, asked);
        Rig rig;
        rig.answer = QMessageBox::StandardButton(answer);
        rig.site.setUpdate(version, rig.site.urlOf(u"quillora-2.1.92"_s));
        QVERIFY(writeFile(rig.updater(), "stale"));
        QSignalSpy exiting(rig.window.get(), &FormMian::exiting);

        rig.check();
        QCOMPARE(rig.site.requests(u"Update.txt"_s), 1);
        QCOMPARE(rig.notices.size(), asked ? 1 : 0);
        if (asked)
            QVERIFY(rig.notices.constFirst().buttons == (QMessageBox::Ok | QMessageBox::Cancel));
        // A stale updater is removed; OK writes the built one, executable, and hands over.
        const bool handedOver = asked && answer == QMessageBox::Ok;
        QCOMPARE(rig.opened, asked && !handedOver ? QStringList{rig.site.url() + u'/'} : QStringList());
        QCOMPARE(readFile(rig.updater()), handedOver ? readFile(qEnvironmentVariable("QUILLORA_BUILD_DIR") +
                                                                u"/src/quillora-updater"_s)
                                                     : QByteArray());
        QCOMPARE(QFileInfo(rig.updater()).isExecutable(), handedOver);
        QCOMPARE(rig.started,
                 handedOver ? QList<QStringList>({{rig.updater(), u"quillora"_s}}) : QList<QStringList>());
        QCOMPARE(exiting.size(), handedOver ? 1 : 0);
    }

    // A packaged install, where the user cannot write the program's folder: OK opens the download page
    // (the product page when the list's address is no web page) and the program stays. Root runs this
    // test again as nobody, on a folder root keeps.
    void packagedInstallOpensTheDownloadPage()
    {
        QTemporaryDir programFolder, home;
        QString folder = qEnvironmentVariable("QUILLORA_PROGRAM_FOLDER");
        QFile::setPermissions(programFolder.path(), QFile::ReadOwner | QFile::ExeOwner | QFile::ExeOther);
        if (geteuid() == 0) {
            const passwd* nobody = getpwnam("nobody");
            if (!nobody || ::chown(QFile::encodeName(home.path()).constData(), nobody->pw_uid, 0) != 0)
                QSKIP("needs the user nobody");
            QStringList args{u"--reuid=nobody"_s, u"--regid=nogroup"_s, u"--clear-groups"_s, u"env"_s};
            for (const char* name :
                 {"HOME=", "XDG_CONFIG_HOME=", "XDG_CACHE_HOME=", "QUILLORA_PROGRAM_FOLDER="})
                args << QString::fromLatin1(name) + (name[0] == 'Q' ? programFolder.path() : home.path());
            const CommandResult run = runCommand(u"setpriv"_s,
                                                 args << QCoreApplication::applicationFilePath()
                                                      << QString::fromLatin1(QTest::currentTestFunction()),
                                                 {}, 60000);
            if (!run.started)
                QSKIP("needs setpriv");
            QVERIFY2(run.ok() && run.out.contains("Totals: 3 passed, 0 failed, 0 skipped"),
                     run.out.constData());
            return;
        }
        Rig rig(u"1"_s, false, folder.isEmpty() ? programFolder.path() : folder);
        QSignalSpy exiting(rig.window.get(), &FormMian::exiting);
        const QString download = rig.site.urlOf(u"quillora-2.1.92"_s);
        for (const QString& address : {download, u"file:///etc/passwd"_s}) {
            rig.site.setUpdate(u"2.1.92"_s, address);
            rig.check();
        }
        QCOMPARE(rig.opened, QStringList({download, rig.site.url() + u'/'}));
        QVERIFY(rig.notices.size() == 2 && rig.started.isEmpty() && exiting.isEmpty());
    }

    void offlineSaysSoOnce()
    {
        Rig rig;
        rig.connectivity.setOnline(false);
        rig.site.setUpdate(u"2.1.92"_s);
        QTimer* timer = rig.window->findChild<UpdateCheck*>()->Timer2();
        QVERIFY(timer->isActive());
        timer->setInterval(10);
        QTRY_COMPARE(rig.notices.size(), 1);
        QTest::qWait(100);
        QCOMPARE(rig.notices.size(), 1);
        QCOMPARE(rig.notices.constFirst().text, u"Is not connected to the Internet."_s);
        QCOMPARE(rig.site.requests(u"Update.txt"_s), 0);
        QVERIFY(!timer->isActive());
    }

    void updateMessageWindow()
    {
        // Details, Download, Next Time.
        for (const auto& [button, opens] : {std::pair(0, u"http://site/Lastest.html"_s),
                                            std::pair(1, u"http://site/q.tar"_s), std::pair(2, QString())}) {
            QStringList opened;
            Form1 form(1, u"2.1.92|42|http://site/q.tar|Updates:\r\nfaster"_s,
                       QUrl(u"http://site/Lastest.html"_s),
                       [&opened](const QUrl& url) { return opened << url.toString(), true; });
            form.show();
            QCOMPARE(form.Text1()->toPlainText().replace(u'\r', QString()),
                     u"Version: V2.1.92\nUpdates:\nfaster"_s);
            form.jcbutton1(button)->click();
            QCOMPARE(opened.join(u' '), opens);
            QVERIFY(!form.isVisible());
        }
    }

    // Nothing is asked before the window has shown; then the list, its alternate when the list is
    // missing, and with neither the records stay. Later language changes fetch even while hidden.
    void sitesMenu()
    {
        Rig rig;
        QList<SiteRecord> twelve;
        for (int i = 0; i < 12; ++i)
            twelve.append({u"S%1"_s.arg(i), u"http://s%1"_s.arg(i)});
        rig.site.setList(u"CDlist21.txt"_s, twelve);
        rig.site.setList(u"ZTlist26.txt"_s, {{u"Le Monde & Co"_s, u"http://lemonde"_s}});
        const auto asked = [&rig] {
            QStringList names;
            for (const auto& request : rig.service.requests())
                if (request.path().contains(u"list2"_s))
                    names << request.path().section(u'/', -1);
            rig.service.clearRequests();
            return names.join(u' ');
        };
        QCOMPARE(rig.sites()->actions().size(), 1);
        QCOMPARE(asked(), QString());
        rig.showAndWaitForSites();
        QCOMPARE(asked(), u"CDlist21.txt"_s);
        QList<QAction*> items = rig.sites()->actions();
        QCOMPARE(items.size(), 13);
        items.at(10)->trigger(); // the record that also got the key "menuSite10"
        items.at(11)->trigger();
        QCOMPARE(rig.opened, QStringList({rig.site.url() + u"/sites.html"_s, u"http://s11"_s}));

        rig.window->hide();
        // French shares the Slovak lists; Chinese has none.
        for (const auto& [command, lists, keys] :
             {std::tuple(u"menuS214"_s, u"CDlist26.txt ZTlist26.txt"_s,
                         u"menuSite0=Le Monde && Co menuSite10=Sites &Web célèbres dans le monde"_s),
              std::tuple(u"menuS202"_s, u"CDlist22.txt ZTlist22.txt"_s,
                         u"menuSite0=Le Monde && Co menuSite10="_s + StringTable::text(2, 127))}) {
            QSignalSpy filled(rig.window->findChild<SitesMenu*>(), &SitesMenu::filled);
            rig.window->dispatch(command);
            QVERIFY(filled.wait(5000));
            QCOMPARE(asked(), lists);
            QCOMPARE(rig.siteKeys(), keys);
        }
    }

    void promotionRotation()
    {
        Rig rig;
        const QString one = rig.site.addPromotionPage(u"one.html"_s, u"First"_s);
        const QString two = rig.site.addPromotionPage(u"two.html"_s, u"Second"_s);
        rig.site.setPageList({one, two, QString()}); // a trailing separator
        rig.site.setList(u"TXlist21.txt"_s, {{u"Offer A"_s, u"http://a"_s}, {u"Offer B"_s, u"http://b"_s}});
        PromotionPanel* panel = rig.window->findChild<PromotionPanel*>();
        PromotionView* view = panel->WebBrowser3();
        rig.window->show(); // images are asked for when the page is laid out
        const auto state = [&] {
            return QStringList{QString::number(rig.site.requests(u"promo/one.html"_s)),
                               QString::number(rig.site.requests(u"promo/two.html"_s)),
                               view->page().fileName(), QString(panel->jcbutton2()->text()).remove(u'&')}
                .join(u' ');
        };
        auto* lists = panel->findChild<HttpClient*>();
        const auto tick = [&](int n) {
            for (int i = 0; i < n; ++i) {
                panel->Timer3_Timer();
                QTRY_VERIFY(!lists->busy());
            }
        };
        QTRY_COMPARE(state(), u"0 0 offADen21.htm Your AD here partners@zelvan.org"_s);
        tick(15);
        QCOMPARE(state(), u"0 0 offADen21.htm Your AD here partners@zelvan.org"_s);
        // The first tick fetched both lists.
        QCOMPARE(rig.site.requests(u"list/ADlist21.txt"_s) + rig.site.requests(u"list/TXlist21.txt"_s), 2);
        tick(1);
        QTRY_COMPARE(state(), u"1 0 one.html Offer A"_s);
        QVERIFY(!AccessKeys::keyOf(panel->jcbutton2()->text()).isNull()); // keyed again as it rotates
        QTRY_VERIFY(rig.site.requests(u"promo/banner.png"_s) == 1 &&
                    view->toPlainText().contains(u"First"_s));
        panel->jcbutton2()->click();
        Q_EMIT view->anchorClicked(QUrl(u"offer.html"_s));
        QCOMPARE(rig.opened, QStringList({u"http://a"_s, rig.site.urlOf(u"promo/offer.html"_s)}));
        QVERIFY(view->geometry().bottom() < rig.window->findChild<QWidget*>(u"PicAD"_s)->height());

        // The reset comes before the count, so later turns are 15 ticks apart; the empty address takes
        // its turn without a page.
        for (const auto& [ticks, shown] :
             {std::pair(14, u"1 0 one.html Offer A"_s), std::pair(1, u"1 1 two.html Offer B"_s),
              std::pair(15, u"1 1 two.html Offer A"_s), std::pair(15, u"2 1 one.html Offer B"_s)}) {
            tick(ticks);
            QTRY_COMPARE(state(), shown);
        }
        tick(180 - 61);
        QCOMPARE(rig.site.requests(u"list/ADlist21.txt"_s), 1);
        tick(1);
        QCOMPARE(rig.site.requests(u"list/ADlist21.txt"_s), 2);
    }

    void offlineFilesAreNeverOverwritten()
    {
        Rig rig(u"1"_s, true);
        const QString folder = rig.runtime.filePath(u"quillora"_s);
        PromotionPanel* panel = rig.window->findChild<PromotionPanel*>();
        rig.window->show();
        QTRY_VERIFY(panel->WebBrowser3()->toPlainText().contains(u"stale page"_s));
        QFile data(u":/promotion/offADen21.xml"_s);
        QVERIFY(data.open(QIODevice::ReadOnly));
        QCOMPARE(readFile(folder + u"/offADen21.xml"_s), data.readAll());

        rig.connectivity.setOnline(false);
        QVERIFY(QFile::remove(folder + u"/offADen21.xml"_s));
        for (int i = 0; i < 20; ++i)
            panel->Timer3_Timer();
        QVERIFY(QFile::exists(folder + u"/offADen21.xml"_s));
        QCOMPARE(readFile(folder + u"/offADen21.htm"_s), kStalePage.toUtf8());
        QCOMPARE(rig.site.requests(u"list/ADlist21.txt"_s), 0);
        // Offline ticks do not count: the first connected one still fetches the lists.
        rig.connectivity.setOnline(true);
        panel->Timer3_Timer();
        QTRY_COMPARE(rig.site.requests(u"list/ADlist21.txt"_s), 1);
    }
};

QTEST_MAIN(UpdateCheckTest)
#include "test_update_check.moc"
