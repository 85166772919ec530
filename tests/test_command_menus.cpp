#include "app/StringTable.h"
#include "desktop/CommandMenus.h"
#include "desktop/VisualStyle.h"

#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QSvgRenderer>
#include <QTest>

using namespace quillora;

namespace
{

struct Item {
    QString key;
    QString caption; // built-in
    int offset;      // 0: none
    int icon;        // -1: none
};

// The tree as the program must build it, written out independently of the program's table.
const QList<QPair<QString, QList<Item>>>& expectedBars()
{
    static const QList<QPair<QString, QList<Item>>> bars = {
        {"FILEMENU",
         {{"menuF0", "Translate", 2, 0},
          {"FILE1:SEPARATOR", "", 0, -1},
          {"menuF1", "Open...", 3, 1},
          {"menuF2", "Save Results", 4, 2},
          {"FILE2:SEPARATOR", "", 0, -1},
          {"menuF3", "Exit", 5, 3}}},
        {"EDITMENU",
         {{"menuS0", "Auto Run When Logon Windows", 7, -1},
          {"menuS5", "Auto copy the translation", 128, -1},
          {"SET1:SEPARATOR", "", 0, -1},
          {"menuS1", "Options", 8, 4},
          {"SET2:SEPARATOR", "", 0, -1},
          {"menuS2", "Language", 9, -1},
          {"SET4:SEPARATOR", "", 0, -1},
          {"menuS4", "Seting Font...", 117, 10},
          {"SET3:SEPARATOR", "", 0, -1},
          {"menuS3", "STYLE", 10, -1}}},
        {"LANGUAGEMENU",
         {{"menuS201", "English", 53, -1},
          {"menuS202", "Chinese(Simplified)", 47, -1},
          {"menuS203", "Chinese(Traditional)", 48, -1},
          {"menuS204", "Thai", 90, -1},
          {"menuS205", "Indonesian", 67, -1},
          {"menuS206", "Malay", 76, -1},
          {"menuS207", "Hindi", 64, -1},
          {"menuS208", "Turkish", 91, -1},
          {"menuS209", "Polish", 80, -1},
          {"menuS210", "Arabic", 40, -1},
          {"menuS211", "Korean", 71, -1},
          {"menuS212", "Spanish", 87, -1},
          {"menuS213", "Slovak", 85, -1},
          {"menuS214", "French", 57, -1}}},
        {"STYLEMENU",
         {{"STYLE:0", "Office XP", 11, -1},
          {"STYLE:1", "Office 2003", 114, -1},
          {"STYLE:2", "MS Money", 115, -1},
          {"STYLE:3", "System", 116, -1}}},
        {"HELPMENU",
         {{"menuH1", "Online Help", 13, -1},
          {"menuH5", "Web Vesperin", 119, -1},
          {"menuH2", "Vesperin Home", 14, 6},
          {"menuH3", "About Vesperin", 15, 7},
          {"HELP:SEPARATOR", "", 0, -1},
          {"menuH4", "Google Translate Home", 16, 8}}},
        {"SITEMENU", {{"menuSite10", "", 127, -1}}},
        {"SYSMENU",
         {{"menuSYS1", "Open Translate Tool (F11)", 18, 9},
          {"menuSYS2", "Options", 8, 4},
          {"SYS:SEPARATOR", "", 0, -1},
          {"menuSYS3", "EXIT", 5, 3}}},
    };
    return bars;
}

const QList<Item> kTopLevel = {{"menuF", "&File", 1, -1},
                               {"menuS", "&Setting", 6, -1},
                               {"menuH", "&Help", 12, -1},
                               {"menuSite", "&Cool WebSite", 126, -1}};

QList<Item> allItems()
{
    QList<Item> items = kTopLevel;
    for (const auto& bar : expectedBars())
        items += bar.second;
    return items;
}

QStringList keysOf(const QList<QAction*>& actions)
{
    QStringList keys;
    for (const QAction* a : actions)
        keys.append(a->objectName());
    return keys;
}

QStringList keysOf(const QList<Item>& items)
{
    QStringList keys;
    for (const Item& i : items)
        keys.append(i.key);
    return keys;
}

QStringList checkedKeys(const QMenu* menu)
{
    QStringList keys;
    for (const QAction* a : menu->actions()) {
        if (a->isChecked())
            keys.append(a->objectName());
    }
    return keys;
}

} // namespace

class TestCommandMenus : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window = new QMainWindow;
        m_menus = new CommandMenus(m_window);
    }
    void cleanup() { delete m_window; }

    void treeFollowsTheTable()
    {
        QCOMPARE(keysOf(m_window->menuBar()->actions()), keysOf(kTopLevel));
        for (const Item& top : kTopLevel)
            QCOMPARE(m_menus->action(top.key)->text(), top.caption);

        for (const auto& [name, items] : expectedBars()) {
            QMenu* menu = m_menus->bar(name);
            QVERIFY2(menu, qPrintable(name));
            QCOMPARE(keysOf(menu->actions()), keysOf(items));
            for (const Item& item : items) {
                QAction* a = m_menus->action(item.key);
                QVERIFY2(a, qPrintable(item.key));
                QCOMPARE(a, menu->actions().at(keysOf(items).indexOf(item.key)));
                QCOMPARE(a->isSeparator(), item.key.endsWith(QLatin1String(":SEPARATOR")));
                if (!a->isSeparator())
                    QCOMPARE(a->text(), item.caption);
                QCOMPARE(a->icon().isNull(), item.icon < 0);
            }
        }
        // Submenus hang from their opening items.
        QCOMPARE(m_menus->action("menuF")->menu(), m_menus->bar("FILEMENU"));
        QCOMPARE(m_menus->action("menuS2")->menu(), m_menus->bar("LANGUAGEMENU"));
        QCOMPARE(m_menus->action("menuS3")->menu(), m_menus->bar("STYLEMENU"));
        QCOMPARE(m_menus->action("menuSite")->menu(), m_menus->bar("SITEMENU"));
        QVERIFY(!m_menus->action("menuSite0"));
    }

    void trayMenuStaysOffTheBar()
    {
        QAction* opener = m_menus->action("menuSYS");
        QVERIFY(opener);
        QCOMPARE(opener->text(), QStringLiteral("SYS"));
        QCOMPARE(opener->menu(), m_menus->bar("SYSMENU"));
        QVERIFY(!m_window->menuBar()->actions().contains(opener));
        QCOMPARE(m_menus->bar("SYSMENU")->parentWidget(), m_window);
    }

    void iconsAreValidPictures()
    {
        for (int n = 0; n <= 10; ++n) {
            const QString path = QStringLiteral(":/icons/icon%1.svg").arg(n);
            QVERIFY2(QFile::exists(path), qPrintable(path));
            QSvgRenderer renderer(path);
            QVERIFY2(renderer.isValid(), qPrintable(path));
            QCOMPARE(renderer.viewBox(), QRect(0, 0, 16, 16));
        }
        const QImage image = m_menus->action("menuF3")->icon().pixmap(16, 16).toImage();
        QVERIFY(!image.isNull());
        bool drawn = false;
        for (int y = 0; y < image.height() && !drawn; ++y) {
            for (int x = 0; x < image.width() && !drawn; ++x)
                drawn = qAlpha(image.pixel(x, y)) > 0;
        }
        QVERIFY(drawn);
    }

    void visibilityAndKinds()
    {
        for (const Item& item : allItems())
            QCOMPARE(m_menus->action(item.key)->isVisible(), item.key != QLatin1String("menuH5"));
        QVERIFY(m_menus->action("menuS0")->isCheckable());
        QVERIFY(m_menus->action("menuS5")->isCheckable());
        QVERIFY(!m_menus->action("menuF0")->isCheckable());
        QVERIFY(!m_menus->action("menuSYS3")->isCheckable());
        for (const QAction* a :
             m_menus->bar("LANGUAGEMENU")->actions() + m_menus->bar("STYLEMENU")->actions()) {
            QVERIFY(a->isCheckable());
            QVERIFY(a->actionGroup());
            QCOMPARE(a->actionGroup()->exclusionPolicy(), QActionGroup::ExclusionPolicy::Exclusive);
            QVERIFY(!a->isChecked());
        }
        QVERIFY(m_menus->action("menuS201")->actionGroup() != m_menus->action("STYLE:0")->actionGroup());
    }

    void captionsPerLanguage_data()
    {
        QTest::addColumn<int>("language");
        for (int language = 1; language <= 7; ++language)
            QTest::addRow("language %d", language) << language;
    }
    void captionsPerLanguage()
    {
        QFETCH(int, language);
        m_menus->applyCaptions(language);
        for (const Item& item : allItems()) {
            if (item.offset > 0)
                QCOMPARE(m_menus->action(item.key)->text(), StringTable::text(language, item.offset));
        }
        QCOMPARE(m_menus->action("menuSYS")->text(), QStringLiteral("SYS"));
        QVERIFY(!m_menus->action("menuH5")->isVisible());
    }

    void englishAndSlovakCaptions()
    {
        QCOMPARE(m_menus->action("menuS4")->text(), QStringLiteral("Seting Font..."));
        m_menus->applyCaptions(1);
        QCOMPARE(m_menus->action("menuS4")->text(), QStringLiteral("Setting Font..."));
        QCOMPARE(m_menus->action("menuH4")->text(), QStringLiteral("Google Translate Home "));
        QCOMPARE(m_menus->action("menuSYS1")->text(), QStringLiteral("Display/Hide Translate Tool (F11)"));
        QCOMPARE(m_menus->action("menuSYS3")->text(), QStringLiteral("Exit"));
        QCOMPARE(m_menus->action("menuH2")->text(), QStringLiteral("Quillora Home"));
        QCOMPARE(m_menus->action("menuSite")->text(), QStringLiteral("&Cool Website"));
        QCOMPARE(m_menus->action("menuSite10")->text(), QStringLiteral("World Famous Website"));
        QCOMPARE(m_menus->action("STYLE:2")->text(), QStringLiteral("Sky Blue"));
        QCOMPARE(m_menus->action("menuS209")->text(), QStringLiteral("Polish"));
        QCOMPARE(m_menus->action("menuS202")->text(), QStringLiteral("Chinese (Simplified)"));

        m_menus->applyCaptions(6);
        QCOMPARE(m_menus->action("menuF")->text(), StringTable::text(6001));
        QVERIFY(m_menus->action("menuF")->text() != QStringLiteral("&File"));
        QCOMPARE(m_menus->bar("FILEMENU")->title(), StringTable::text(6001));
        QCOMPARE(m_menus->action("menuSYS1")->text(), StringTable::text(6018));
        QVERIFY(m_menus->action("menuSYS1")->text() != QStringLiteral("Display/Hide Translate Tool (F11)"));

        m_menus->applyCaptions(1);
        QCOMPARE(m_menus->action("menuF")->text(), QStringLiteral("&File"));
    }

    void checkItemsToggleThemselves()
    {
        QSignalSpy spy(m_menus, &CommandMenus::triggered);
        QAction* autoCopy = m_menus->action("menuS5");
        autoCopy->trigger();
        QVERIFY(autoCopy->isChecked());
        autoCopy->trigger();
        QVERIFY(!autoCopy->isChecked());
        m_menus->action("menuS0")->trigger();
        QVERIFY(m_menus->action("menuS0")->isChecked());
        QVERIFY(!autoCopy->isChecked());
        QCOMPARE(spy.size(), 3);
        QCOMPARE(spy.at(2).at(0).toString(), QStringLiteral("menuS0"));
    }

    void optionGroupsAreMarkedByTheProgram()
    {
        QMenu* languages = m_menus->bar("LANGUAGEMENU");
        m_menus->checkLanguageItem(2);
        QCOMPARE(checkedKeys(languages), QStringList{"menuS202"});
        m_menus->checkLanguageItem(6);
        QCOMPARE(checkedKeys(languages), QStringList{"menuS213"});
        m_menus->checkLanguageItem(0);
        QCOMPARE(checkedKeys(languages), QStringList{});

        QMenu* styles = m_menus->bar("STYLEMENU");
        m_menus->checkStyleItem(3);
        QCOMPARE(checkedKeys(styles), QStringList{"STYLE:3"});
        m_menus->checkStyleItem(1);
        QCOMPARE(checkedKeys(styles), QStringList{"STYLE:1"});
        m_menus->action("STYLE:2")->trigger();
        QCOMPARE(checkedKeys(styles), QStringList{"STYLE:2"});
        m_menus->checkStyleItem(7);
        QCOMPARE(checkedKeys(styles), QStringList{});
        // The language and style groups do not disturb each other.
        m_menus->checkLanguageItem(4);
        m_menus->checkStyleItem(0);
        QCOMPARE(checkedKeys(languages), QStringList{"menuS204"});
        QCOMPARE(checkedKeys(styles), QStringList{"STYLE:0"});
    }

    void languagesWithoutTableKeepTheMark()
    {
        QMenu* languages = m_menus->bar("LANGUAGEMENU");
        QSignalSpy spy(m_menus, &CommandMenus::triggered);
        m_menus->checkLanguageItem(3);
        for (const char* inert :
             {"menuS205", "menuS206", "menuS207", "menuS208", "menuS209", "menuS210", "menuS211"}) {
            m_menus->action(inert)->trigger();
            QCOMPARE(checkedKeys(languages), QStringList{"menuS203"});
            QCOMPARE(spy.last().at(0).toString(), QString::fromLatin1(inert));
        }
        // A real language moves the mark; the next inert click keeps it there.
        m_menus->action("menuS212")->trigger();
        QCOMPARE(checkedKeys(languages), QStringList{"menuS212"});
        m_menus->action("menuS209")->trigger();
        QCOMPARE(checkedKeys(languages), QStringList{"menuS212"});
        // With nothing marked an inert click leaves nothing marked.
        m_menus->checkLanguageItem(0);
        m_menus->action("menuS207")->trigger();
        QCOMPARE(checkedKeys(languages), QStringList{});
    }

    void mouseClickInOpenMenu()
    {
        QMenu* languages = m_menus->bar("LANGUAGEMENU");
        m_menus->checkLanguageItem(1);
        QSignalSpy spy(m_menus, &CommandMenus::triggered);
        languages->popup(QPoint(10, 10));
        QVERIFY(QTest::qWaitForWindowExposed(languages));
        QTest::mouseClick(languages, Qt::LeftButton, {},
                          languages->actionGeometry(m_menus->action("menuS210")).center());
        QTRY_COMPARE(spy.size(), 1);
        QCOMPARE(spy.at(0).at(0).toString(), QStringLiteral("menuS210"));
        QCOMPARE(checkedKeys(languages), QStringList{"menuS201"});
    }

    void everyItemReportsItsKey()
    {
        QSignalSpy spy(m_menus, &CommandMenus::triggered);
        QStringList expected;
        for (const Item& item : allItems()) {
            QAction* a = m_menus->action(item.key);
            if (a->isSeparator())
                continue;
            a->trigger();
            expected.append(item.key);
        }
        QStringList seen;
        for (const QList<QVariant>& args : spy)
            seen.append(args.at(0).toString());
        QCOMPARE(seen, expected);
        QVERIFY(seen.contains("menuS205"));
        QVERIFY(seen.contains("menuH5"));
    }

    void interfaceLanguageOfMenuKeys()
    {
        const QList<QPair<QString, int>> expected = {
            {"menuS201", 1}, {"menuS202", 2}, {"menuS203", 3}, {"menuS204", 4}, {"menuS205", 0},
            {"menuS206", 0}, {"menuS207", 0}, {"menuS208", 0}, {"menuS209", 0}, {"menuS210", 0},
            {"menuS211", 0}, {"menuS212", 5}, {"menuS213", 6}, {"menuS214", 7}, {"menuS2", 0},
            {"menuF0", 0},   {"", 0},         {"menuS2010", 0}};
        for (const auto& [key, language] : expected)
            QCOMPARE(interfaceLanguageForMenuKey(key), language);
    }

    void visualStyles()
    {
        QWidget host;
        auto* pic1 = new QWidget(&host);
        pic1->resize(40, 40);
        QList<QWidget*> checks = {new QCheckBox(&host), new QCheckBox(&host)};
        QList<QWidget*> buttons;
        for (int i = 0; i < 6; ++i)
            buttons.append(new QPushButton(QString::number(i), &host));
        // A button that came with a palette of its own gets exactly that back.
        QPalette own = buttons[0]->palette();
        own.setColor(QPalette::Button, Qt::red);
        buttons[0]->setPalette(own);
        const QColor platformButton = QApplication::palette().color(QPalette::Button);
        const QColor platformLight = QApplication::palette().color(QPalette::Light);

        const auto windowOf = [](QWidget* w) { return w->palette().color(QPalette::Window); };
        const auto buttonOf = [](QWidget* w) { return w->palette().color(QPalette::Button); };

        const QColor office2003(173, 209, 255);
        const QColor skyBlue(183, 222, 249);
        QCOMPARE(styleBackground(1), office2003);
        QCOMPARE(styleBackground(2), skyBlue);
        QCOMPARE(styleBackground(0), platformButton);
        QCOMPARE(styleBackground(3), platformLight);
        QVERIFY(!styleBackground(4).isValid());
        QVERIFY(!styleBackground(-1).isValid());

        applyVisualStyle(2, pic1, checks, buttons);
        QVERIFY(pic1->autoFillBackground());
        QCOMPARE(windowOf(pic1), skyBlue);
        QCOMPARE(pic1->grab().toImage().pixelColor(20, 20), skyBlue);
        for (QWidget* c : checks) {
            QCOMPARE(windowOf(c), skyBlue);
            QVERIFY(c->autoFillBackground());
        }
        for (QWidget* b : buttons)
            QCOMPARE(buttonOf(b), skyBlue);

        applyVisualStyle(1, pic1, checks, buttons);
        QCOMPARE(windowOf(pic1), office2003);
        QCOMPARE(windowOf(checks[1]), office2003);
        for (QWidget* b : buttons)
            QCOMPARE(buttonOf(b), office2003);

        applyVisualStyle(7, pic1, checks, buttons);
        QCOMPARE(windowOf(pic1), office2003);
        QCOMPARE(buttonOf(buttons[3]), office2003);

        applyVisualStyle(0, pic1, checks, buttons);
        QCOMPARE(windowOf(pic1), platformButton);
        QCOMPARE(windowOf(checks[0]), platformButton);
        QCOMPARE(buttonOf(buttons[0]), QColor(Qt::red));
        for (int i = 1; i < 6; ++i)
            QCOMPARE(buttonOf(buttons[i]), platformButton);

        applyVisualStyle(3, pic1, checks, buttons);
        QCOMPARE(windowOf(pic1), platformLight);
        QCOMPARE(windowOf(checks[1]), platformLight);
        QCOMPARE(buttonOf(buttons[0]), QColor(Qt::red));

        // Coloured again and back: still the button's own palette.
        applyVisualStyle(2, pic1, checks, buttons);
        applyVisualStyle(0, pic1, checks, buttons);
        QCOMPARE(buttonOf(buttons[0]), QColor(Qt::red));
        QCOMPARE(buttonOf(buttons[5]), platformButton);
    }

private:
    QMainWindow* m_window = nullptr;
    CommandMenus* m_menus = nullptr;
};

QTEST_MAIN(TestCommandMenus)
#include "test_command_menus.moc"
