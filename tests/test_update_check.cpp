#include "TestSupport.h"
#include "WindowRig.h"
#include "app/StringTable.h"
#include "net/Form1.h"
#include "net/Http.h"
#include "net/MakerLists.h"
#include "net/PromotionPanel.h"
#include "net/PromotionView.h"
#include "net/SitesMenu.h"
#include "net/UpdateCheck.h"
#include "net/WebLink.h"
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

class UpdateCheckTest : public QObject
{
    Q_OBJECT
    // The maker's site on a stand-in, and what the parts asked of the program.
    struct Site {
        ServiceAddresses addresses() const { return {{}, {}, {}, site.url()}; }
        // The update check of a program in `folder`; every question is answered with `answer`.
        UpdateCheckDeps checkDeps(const QString& folder, QMessageBox::StandardButton answer = QMessageBox::Ok)
        {
            return {&connectivity,
                    [this, answer](int offset, QMessageBox::Icon, QMessageBox::StandardButtons buttons) {
                        return notices << offset << int(buttons), answer;
                    },
                    open,
                    [this](const QString& program, const QStringList& args) {
                        return started << (QStringList{program} + args), true;
                    },
                    [this] { ++exits; },
                    folder + u"/quillora"_s,
                    addresses()};
        }
        // The promotion band in a widget of its own, its ticks driven by hand.
        PromotionPanel* promotion()
        {
            picAD.resize(710, 60);
            auto* panel = new PromotionPanel(&picAD, {&connectivity, open, addresses(), temp.path()});
            panel->Timer3()->stop();
            return panel;
        }

        StandinService service;
        bool listening = service.listen();
        MakerSite site{service};
        FixedConnectivity connectivity{true};
        QStringList opened;
        std::function<bool(const QUrl&)> open = [this](const QUrl& url) {
            return opened << url.toString(), true;
        };
        QList<int> notices; // the text's offset and the buttons, for each
        QList<QStringList> started;
        int exits = 0;
        QTemporaryDir temp;
        QWidget picAD;
    };

    // One update check, to its end.
    static void run(UpdateCheck& check)
    {
        QSignalSpy done(&check, &UpdateCheck::finished);
        check.Timer2_Timer();
        QVERIFY(done.wait(10000));
    }

private Q_SLOTS:
    void makerLists()
    {
        const QByteArray digest = QByteArray(32, '\xab').toHex();
        // Text, then version/number/download/details and the digest.
        const QList<std::tuple<QString, QString, QByteArray>> rows{
            {u"2.1.92|3|http://d/q|Updates:\r\nmore"_s, u"2.1.92/3/http://d/q/Updates:\r\nmore"_s, {}},
            {u"2.2.0|12| http://d/q |Updates| "_s + QString::fromLatin1(digest.toUpper()) + u"\n"_s,
             u"2.2.0/12/http://d/q/Updates"_s, digest},
            {u"2.2.0|1|u|Updates|abcd"_s, u"2.2.0/1/u/Updates"_s, {}},
            {u"2.2.0|1|u|Updates|"_s + QString(64, u'g'), u"2.2.0/1/u/Updates"_s, {}},
            {u"v|x|u|d"_s, u"v/0/u/d"_s, {}},
            {u" 2.1.92"_s, u" 2.1.92/0//"_s, {}}};
        for (const auto& [text, fields, sha256Hex] : rows) {
            const UpdateList list = parseUpdateList(text);
            QCOMPARE(QStringList({list.version, QString::number(list.number), list.download, list.details})
                         .join(u'/'),
                     fields);
            QCOMPARE(list.sha256.toHex(), sha256Hex);
        }
        using Records = QList<SiteRecord>;
        const Records two{{u"News"_s, u"http://n"_s}, {u"Maps"_s, u"http://m"_s}};
        const QList<std::pair<QString, Records>> sites{
            {u"News|http://n<Maps|http://m"_s, two},
            {u"News|http://n\r\n<Maps|http://m<\r\n"_s, two}, // a trailing separator and line break
            {u"Just a caption"_s, {{u"Just a caption"_s, {}}}},
            {u"A|http://a|ignored"_s, {{u"A"_s, u"http://a"_s}}},
            {QString(), {}},
            {u"S|http://s<"_s.repeated((16 << 20) / 11), Records(100, {u"S"_s, u"http://s"_s})}}; // 16 MiB
        for (const auto& [text, records] : sites)
            QCOMPARE(parseSitesList(text), records);
        const QList<std::pair<QString, QStringList>> pages{
            {u"http://a<|http://b"_s, {u"http://a"_s, u"http://b"_s}},
            {u"http://a<|http://b<|\r\n"_s, {u"http://a"_s, u"http://b"_s, QString()}}, // an empty place kept
            {u"http://a?x<y"_s, {u"http://a?x<y"_s}}, // a lone < is part of the address
            {QString(), {}}}; // the limit of 100 shows in the replay of the fuzz corpus
        for (const auto& [text, list] : pages)
            QCOMPARE(splitPageList(text), list);
    }

    // Which addresses go to the browser, and which update lists may replace the program.
    void webLinks()
    {
        const QList<std::tuple<QString, bool, bool>> rows{{u"https://maker.example/Update.txt"_s, true, true},
                                                          {u"http://maker.example/Update.txt"_s, true, false},
                                                          {u"HTTP://[::1]:8/Update.txt"_s, true, true},
                                                          {u"file:///etc/passwd"_s, false, false},
                                                          {u"http:///x"_s, false, false}};
        for (const auto& [address, web, trusted] : rows) {
            QStringList opened;
            const bool ok = openWebAddress(QUrl(address),
                                           [&opened](const QUrl& u) { return opened << u.toString(), true; });
            QVERIFY2(ok == web && opened.size() == (web ? 1 : 0) &&
                         isTrustedUpdateSource(QUrl(address)) == trusted,
                     qPrintable(address));
        }
    }

    // Offered the same version, then a newer one answered Cancel and OK.
    void updateCheck()
    {
        for (const auto& [version, answer] :
             {std::pair(u"2.1.91"_s, QMessageBox::Ok), std::pair(u"2.1.92"_s, QMessageBox::Cancel),
              std::pair(u"2.1.92"_s, QMessageBox::Ok)}) {
            Site s;
            UpdateCheck check(s.checkDeps(s.temp.path(), answer), nullptr);
            s.site.setUpdate(version, s.site.urlOf(u"quillora-2.1.92"_s));
            const QString updater = s.temp.filePath(u"Update.exe"_s);
            QVERIFY(writeFile(updater, "stale"));

            run(check);
            QCOMPARE(s.site.requests(u"Update.txt"_s), 1);
            const bool asked = version == u"2.1.92";
            QCOMPARE(s.notices, asked ? QList<int>({MsgNewVersion, QMessageBox::Ok | QMessageBox::Cancel})
                                      : QList<int>());
            // A stale updater is removed; OK writes the built one, executable, and hands over.
            const bool handedOver = asked && answer == QMessageBox::Ok;
            QCOMPARE(s.opened, asked && !handedOver ? QStringList{s.site.url() + u'/'} : QStringList());
            QCOMPARE(readFile(updater), handedOver ? readFile(qEnvironmentVariable("QUILLORA_BUILD_DIR") +
                                                              u"/src/quillora-updater"_s)
                                                   : QByteArray());
            QCOMPARE(QFileInfo(updater).isExecutable(), handedOver);
            QCOMPARE(s.started,
                     handedOver ? QList<QStringList>({{updater, u"quillora"_s}}) : QList<QStringList>());
            QCOMPARE(s.exits, handedOver ? 1 : 0);
        }
    }

    // A packaged install, where the user cannot write the program's folder: OK opens the download page
    // (the product page when the list's address is no web page) and the program stays. Root runs this
    // test again as nobody, on a folder root keeps.
    void packagedInstallOpensTheDownloadPage()
    {
        QTemporaryDir programFolder;
        QString folder = qEnvironmentVariable("QUILLORA_PROGRAM_FOLDER");
        QFile::setPermissions(programFolder.path(), QFile::ReadOwner | QFile::ExeOwner | QFile::ExeOther);
        if (geteuid() == 0) {
            if (!getpwnam("nobody"))
                QSKIP("needs the user nobody");
            const CommandResult run = runCommand(
                u"setpriv"_s,
                {u"--reuid=nobody"_s, u"--regid=nogroup"_s, u"--clear-groups"_s,
                 QCoreApplication::applicationFilePath(), QString::fromLatin1(QTest::currentTestFunction())},
                {}, 60000, {u"QUILLORA_PROGRAM_FOLDER="_s + programFolder.path()});
            if (!run.started)
                QSKIP("needs setpriv");
            QVERIFY2(run.ok() && run.out.contains("Totals: 3 passed, 0 failed, 0 skipped"),
                     (run.out + run.err).constData());
            return;
        }
        Site s;
        UpdateCheck check(s.checkDeps(folder.isEmpty() ? programFolder.path() : folder), nullptr);
        const QString download = s.site.urlOf(u"quillora-2.1.92"_s);
        for (const QString& address : {download, u"file:///etc/passwd"_s}) {
            s.site.setUpdate(u"2.1.92"_s, address);
            run(check);
        }
        QCOMPARE(s.opened, QStringList({download, s.site.url() + u'/'}));
        QVERIFY(s.notices.size() == 4 && s.started.isEmpty() && s.exits == 0);
    }

    // Once, five seconds after it is made; offline it only says so.
    void offlineSaysSoOnce()
    {
        Site s;
        s.connectivity.setOnline(false);
        UpdateCheck check(s.checkDeps(s.temp.path()), nullptr);
        QVERIFY(check.Timer2()->isActive());
        check.Timer2()->setInterval(10);
        QTRY_COMPARE(s.notices, QList<int>({MsgNotConnected, QMessageBox::Ok}));
        QVERIFY(!check.Timer2()->isActive() && s.service.requests().isEmpty());
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

    // Through the real window: its sites list is asked for once it has shown; then the list, its
    // alternate when the list is missing, and with neither the records stay. Later language changes
    // fetch even while hidden. Its update check asks in its words and ends the program.
    void theWindowsSitesMenuAndUpdate()
    {
        QTemporaryDir runtime;
        WindowRig rig;
        MakerSite site(rig.service);
        QVERIFY(rig.service.listen());
        qputenv("QUILLORA_SITE_URL", site.url().toUtf8());
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime.path()));
        FormMian& window = rig.open(rig.deps());
        // The promotion band's offline files go to the window's own temporary folder.
        QVERIFY(QFile::exists(runtime.filePath(u"quillora/offADen21.htm"_s)));
        window.findChild<PromotionPanel*>()->Timer3()->stop(); // it would fetch its lists too
        QList<SiteRecord> twelve(12, {u"S"_s, u"http://s"_s});
        twelve[11].address = u"http://s11"_s;
        site.setList(u"CDlist21.txt"_s, twelve);
        site.setList(u"ZTlist26.txt"_s, {{u"Le Monde & Co"_s, u"http://lemonde"_s}});
        QMenu* sites = window.findChild<QMenu*>(u"SITEMENU"_s);
        // How often a language's list and its alternate were asked for.
        const auto asked = [&site](const QString& number) {
            return std::pair(site.requests(u"list/CDlist"_s + number + u".txt"_s),
                             site.requests(u"list/ZTlist"_s + number + u".txt"_s));
        };
        QSignalSpy filled(window.findChild<SitesMenu*>(), &SitesMenu::filled);
        QCOMPARE(sites->actions().size(), 1);
        QCOMPARE(asked(u"21"_s), std::pair(0, 0));
        window.show();
        QVERIFY(filled.wait(5000));
        QCOMPARE(asked(u"21"_s), std::pair(1, 0));
        QList<QAction*> items = sites->actions();
        QCOMPARE(items.size(), 13);
        items.at(10)->trigger(); // the record that also got the key "menuSite10"
        items.at(11)->trigger();
        QCOMPARE(rig.opened, QStringList({site.url() + u"/sites.html"_s, u"http://s11"_s}));

        window.hide();
        // French shares the Slovak lists; Chinese has none.
        for (const auto& [command, lists, shown] :
             {std::tuple(u"menuS214"_s, u"26"_s,
                         u"menuSite0=Le Monde && Co menuSite10=Sites &Web célèbres dans le monde"_s),
              std::tuple(u"menuS202"_s, u"22"_s,
                         u"menuSite0=Le Monde && Co menuSite10="_s + StringTable::text(2, 127))}) {
            window.dispatch(command);
            QVERIFY(filled.wait(5000));
            QCOMPARE(asked(lists), std::pair(1, 1));
            QStringList keys;
            for (const QAction* item : sites->actions())
                keys << item->objectName() + u'=' + item->text();
            QCOMPARE(keys.join(u' '), shown);
        }
        QSignalSpy exiting(&window, &FormMian::exiting);
        site.setUpdate(u"2.1.92"_s);
        run(*window.findChild<UpdateCheck*>());
        QCOMPARE(rig.notices.constFirst().text, StringTable::text(2, MsgNewVersion)); // Chinese by now
        QCOMPARE(rig.started, QList<QStringList>({{rig.dir.filePath(u"Update.exe"_s), u"quillora"_s}}));
        QCOMPARE(exiting.size(), 1);
    }

    void promotionRotation()
    {
        Site p;
        PromotionPanel* panel = p.promotion();
        const QString one = p.site.addPromotionPage(u"one.html"_s, u"First"_s);
        const QString two = p.site.addPromotionPage(u"two.html"_s, u"Second"_s);
        p.site.setPageList({one, two, QString()}); // a trailing separator
        p.site.setList(u"TXlist21.txt"_s, {{u"Offer A"_s, u"http://a"_s}, {u"Offer B"_s, u"http://b"_s}});
        PromotionView* view = panel->WebBrowser3();
        p.picAD.show(); // images are asked for when the page is laid out
        const auto state = [&] {
            return QStringList{QString::number(p.site.requests(u"promo/one.html"_s)),
                               QString::number(p.site.requests(u"promo/two.html"_s)), view->page().fileName(),
                               panel->jcbutton2()->text(),
                               view->focusPolicy() & Qt::TabFocus ? u"tab"_s : u"click"_s}
                .join(u' ');
        };
        auto* lists = panel->findChild<HttpClient*>();
        const auto tick = [&](int n) {
            for (int i = 0; i < n; ++i) {
                panel->Timer3_Timer();
                QTRY_VERIFY(!lists->busy());
            }
        };
        QTRY_COMPARE(state(), u"0 0 offADen21.htm Your AD here partners@zelvan.org click"_s);
        tick(15);
        QCOMPARE(state(), u"0 0 offADen21.htm Your AD here partners@zelvan.org click"_s);
        // The first tick fetched both lists.
        QCOMPARE(p.site.requests(u"list/ADlist21.txt"_s) + p.site.requests(u"list/TXlist21.txt"_s), 2);
        tick(1);
        QTRY_COMPARE(state(), u"1 0 one.html Offer A tab"_s);
        QTRY_VERIFY(p.site.requests(u"promo/banner.png"_s) == 1 && view->toPlainText().contains(u"First"_s));
        panel->jcbutton2()->click();
        Q_EMIT view->anchorClicked(QUrl(u"offer.html"_s));
        QCOMPARE(p.opened, QStringList({u"http://a"_s, p.site.urlOf(u"promo/offer.html"_s)}));
        QVERIFY(view->geometry().bottom() < p.picAD.height());

        // The reset comes before the count, so later turns are 15 ticks apart; the empty address takes
        // its turn without a page.
        for (const auto& [ticks, shown] :
             {std::pair(14, u"1 0 one.html Offer A tab"_s), std::pair(1, u"1 1 two.html Offer B tab"_s),
              std::pair(15, u"1 1 two.html Offer A tab"_s), std::pair(15, u"2 1 one.html Offer B tab"_s)}) {
            tick(ticks);
            QTRY_COMPARE(state(), shown);
        }
        tick(180 - 61);
        QCOMPARE(p.site.requests(u"list/ADlist21.txt"_s), 1);
        tick(1);
        QCOMPARE(p.site.requests(u"list/ADlist21.txt"_s), 2);
    }

    void offlineFilesAreNeverOverwritten()
    {
        const QByteArray stale = "<html><body>stale page</body></html>";
        Site p;
        QVERIFY(writeFile(p.temp.filePath(u"offADen21.htm"_s), stale));
        PromotionPanel* panel = p.promotion();
        p.picAD.show();
        QTRY_VERIFY(panel->WebBrowser3()->toPlainText().contains(u"stale page"_s));
        QCOMPARE(readFile(p.temp.filePath(u"offADen21.xml"_s)), readFile(u":/promotion/offADen21.xml"_s));

        p.connectivity.setOnline(false);
        QVERIFY(QFile::remove(p.temp.filePath(u"offADen21.xml"_s)));
        for (int i = 0; i < 20; ++i)
            panel->Timer3_Timer();
        QVERIFY(QFile::exists(p.temp.filePath(u"offADen21.xml"_s)));
        QCOMPARE(readFile(p.temp.filePath(u"offADen21.htm"_s)), stale);
        QCOMPARE(p.site.requests(u"list/ADlist21.txt"_s), 0);
        // Offline ticks do not count: the first connected one still fetches the lists.
        p.connectivity.setOnline(true);
        panel->Timer3_Timer();
        QTRY_COMPARE(p.site.requests(u"list/ADlist21.txt"_s), 1);
    }
};

QTEST_MAIN(UpdateCheckTest)
#include "test_update_check.moc"
