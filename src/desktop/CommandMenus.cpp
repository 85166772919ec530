#include "desktop/CommandMenus.h"

#include "app/StringTable.h"
#include "translate/LanguageCatalogue.h"

#include <QAction>
#include <QActionGroup>
#include <QIcon>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

namespace quillora
{

namespace
{

using K = MenuItemDef;

const QString kLanguageMenu = QStringLiteral("LANGUAGEMENU");
const QString kStyleMenu = QStringLiteral("STYLEMENU");
const QString kTrayMenu = QStringLiteral("SYSMENU");

// Language menu keys of the interface languages 1-7, in language order.
const char* const kLanguageKeys[] = {"menuS201", "menuS202", "menuS203", "menuS204",
                                     "menuS212", "menuS213", "menuS214"};

// The caption offset of a language item: the catalogue's own name of that language.
int nameOf(const char* code)
{
    return LanguageNames + languageIndexForCode(QLatin1String(code));
}

QMenu* menuOf(const QHash<QString, QMenu*>& bars, const QString& name)
{
    return bars.value(name, nullptr);
}

} // namespace

const QVector<MenuItemDef>& menuTable()
{
    static const QVector<MenuItemDef> table = {
        {"", "menuF", "&File", K::Submenu, -1, MenuFile, "FILEMENU"},
        {"FILEMENU", "menuF0", "Translate", K::Normal, 0, MenuTranslate, ""},
        {"FILEMENU", "FILE1:SEPARATOR", "", K::Separator, -1, 0, ""},
        {"FILEMENU", "menuF1", "Open...", K::Normal, 1, MenuOpen, ""},
        {"FILEMENU", "menuF2", "Save Results", K::Normal, 2, MenuSaveResults, ""},
        {"FILEMENU", "FILE2:SEPARATOR", "", K::Separator, -1, 0, ""},
        {"FILEMENU", "menuF3", "Exit", K::Normal, 3, MenuExit, ""},

        {"", "menuS", "&Setting", K::Submenu, -1, MenuSetting, "EDITMENU"},
        {"EDITMENU", "menuS0", "Auto Run When Logon Windows", K::Check, -1, MenuAutoRun, ""},
        {"EDITMENU", "menuS5", "Auto copy the translation", K::Check, -1, MenuAutoCopy, ""},
        {"EDITMENU", "SET1:SEPARATOR", "", K::Separator, -1, 0, ""},
        {"EDITMENU", "menuS1", "Options", K::Normal, 4, MenuOptions, ""},
        {"EDITMENU", "SET2:SEPARATOR", "", K::Separator, -1, 0, ""},
        {"EDITMENU", "menuS2", "Language", K::Submenu, -1, MenuLanguage, "LANGUAGEMENU"},
        {"EDITMENU", "SET4:SEPARATOR", "", K::Separator, -1, 0, ""},
        {"EDITMENU", "menuS4", "Seting Font...", K::Normal, 10, MenuFont, ""},
        {"EDITMENU", "SET3:SEPARATOR", "", K::Separator, -1, 0, ""},
        {"EDITMENU", "menuS3", "STYLE", K::Submenu, -1, MenuStyle, "STYLEMENU"},

        {"LANGUAGEMENU", "menuS201", "English", K::Option, -1, nameOf("en"), ""},
        {"LANGUAGEMENU", "menuS202", "Chinese(Simplified)", K::Option, -1, nameOf("zh-CN"), ""},
        {"LANGUAGEMENU", "menuS203", "Chinese(Traditional)", K::Option, -1, nameOf("zh-TW"), ""},
        {"LANGUAGEMENU", "menuS204", "Thai", K::Option, -1, nameOf("th"), ""},
        {"LANGUAGEMENU", "menuS205", "Indonesian", K::Option, -1, nameOf("id"), ""},
        {"LANGUAGEMENU", "menuS206", "Malay", K::Option, -1, nameOf("ms"), ""},
        {"LANGUAGEMENU", "menuS207", "Hindi", K::Option, -1, nameOf("hi"), ""},
        {"LANGUAGEMENU", "menuS208", "Turkish", K::Option, -1, nameOf("tr"), ""},
        {"LANGUAGEMENU", "menuS209", "Polish", K::Option, -1, nameOf("pl"), ""},
        {"LANGUAGEMENU", "menuS210", "Arabic", K::Option, -1, nameOf("ar"), ""},
        {"LANGUAGEMENU", "menuS211", "Korean", K::Option, -1, nameOf("ko"), ""},
        {"LANGUAGEMENU", "menuS212", "Spanish", K::Option, -1, nameOf("es"), ""},
        {"LANGUAGEMENU", "menuS213", "Slovak", K::Option, -1, nameOf("sk"), ""},
        {"LANGUAGEMENU", "menuS214", "French", K::Option, -1, nameOf("fr"), ""},

        {"STYLEMENU", "STYLE:0", "Office XP", K::Option, -1, MenuStyleOfficeXp, ""},
        {"STYLEMENU", "STYLE:1", "Office 2003", K::Option, -1, MenuStyleOffice2003, ""},
        {"STYLEMENU", "STYLE:2", "MS Money", K::Option, -1, MenuStyleSkyBlue, ""},
        {"STYLEMENU", "STYLE:3", "System", K::Option, -1, MenuStyleSystem, ""},

        {"", "menuH", "&Help", K::Submenu, -1, MenuHelp, "HELPMENU"},
        {"HELPMENU", "menuH1", "Online Help", K::Normal, -1, MenuOnlineHelp, ""},
        {"HELPMENU", "menuH5", "Web Vesperin", K::Normal, -1, MenuWebHome, ""},
        {"HELPMENU", "menuH2", "Vesperin Home", K::Normal, 6, MenuHome, ""},
        {"HELPMENU", "menuH3", "About Vesperin", K::Normal, 7, MenuAbout, ""},
        {"HELPMENU", "HELP:SEPARATOR", "", K::Separator, -1, 0, ""},
        {"HELPMENU", "menuH4", "Google Translate Home", K::Normal, 8, MenuGoogleHome, ""},

        {"", "menuSite", "&Cool WebSite", K::Submenu, -1, MenuSites, "SITEMENU"},
        {"SITEMENU", "menuSite10", "", K::Normal, -1, MenuFamousSites, ""},

        {"", "menuSYS", "SYS", K::Submenu, -1, 0, "SYSMENU"},
        {"SYSMENU", "menuSYS1", "Open Translate Tool (F11)", K::Normal, 9, MenuShowHide, ""},
        {"SYSMENU", "menuSYS2", "Options", K::Normal, 4, MenuOptions, ""},
        {"SYSMENU", "SYS:SEPARATOR", "", K::Separator, -1, 0, ""},
        {"SYSMENU", "menuSYS3", "EXIT", K::Normal, 3, MenuExit, ""},
    };
    return table;
}

int interfaceLanguageForMenuKey(const QString& key)
{
    for (int i = 0; i < kInterfaceLanguageCount; ++i) {
        if (key == QLatin1String(kLanguageKeys[i]))
            return i + 1;
    }
    return 0;
}

CommandMenus::CommandMenus(QMainWindow* window)
    : QObject(window), m_languages(new QActionGroup(this)), m_styles(new QActionGroup(this))
{
    m_languages->setExclusionPolicy(QActionGroup::ExclusionPolicy::Exclusive);
    m_styles->setExclusionPolicy(QActionGroup::ExclusionPolicy::Exclusive);
    build(window);
}

void CommandMenus::build(QMainWindow* window)
{
    // Every bar exists before any item goes in, so the table can list them in any order.
    for (const MenuItemDef& row : menuTable()) {
        if (row.kind != MenuItemDef::Submenu)
            continue;
        auto* menu = new QMenu(row.builtIn, window);
        menu->setObjectName(row.opens);
        menu->menuAction()->setObjectName(row.key);
        m_bars.insert(row.opens, menu);
    }
    QMenuBar* menuBar = window->menuBar();
    for (const MenuItemDef& row : menuTable()) {
        QAction* item = addItem(row);
        m_actions.insert(row.key, item);
        // The tray menu is shown by the notification icon, never from the bar.
        if (row.kind == MenuItemDef::Submenu && row.opens == kTrayMenu)
            continue;
        if (row.bar.isEmpty())
            menuBar->addAction(item);
        else
            menuOf(m_bars, row.bar)->addAction(item);
    }
    m_actions.value(QStringLiteral("menuH5"))->setVisible(false);
}

QAction* CommandMenus::addItem(const MenuItemDef& row)
{
    QAction* item = nullptr;
    switch (row.kind) {
    case MenuItemDef::Separator:
        item = new QAction(this);
        item->setSeparator(true);
        item->setObjectName(row.key);
        return item;
    case MenuItemDef::Submenu:
        item = menuOf(m_bars, row.opens)->menuAction();
        break;
    case MenuItemDef::Normal:
    case MenuItemDef::Check:
    case MenuItemDef::Option:
        item = new QAction(row.builtIn, this);
        item->setObjectName(row.key);
        break;
    }
    if (row.icon >= 0)
        item->setIcon(QIcon(QStringLiteral(":/icons/icon%1.svg").arg(row.icon)));
    if (row.kind == MenuItemDef::Check || row.kind == MenuItemDef::Option)
        item->setCheckable(true);
    const bool language = row.kind == MenuItemDef::Option && row.bar == kLanguageMenu;
    if (language)
        m_languages->addAction(item);
    else if (row.kind == MenuItemDef::Option && row.bar == kStyleMenu)
        m_styles->addAction(item);
    const QString key = row.key;
    connect(item, &QAction::triggered, this, [this, item, key, language] {
        if (language)
            keepLanguageMark(item);
        Q_EMIT triggered(key);
    });
    return item;
}

void CommandMenus::keepLanguageMark(QAction* clicked)
{
    if (interfaceLanguageForMenuKey(clicked->objectName()) != 0) {
        m_languageMark = clicked;
        return;
    }
    // Languages without a table change nothing, not even the mark.
    if (m_languageMark)
        m_languageMark->setChecked(true);
    else
        clicked->setChecked(false);
}

QAction* CommandMenus::action(const QString& key) const
{
    return m_actions.value(key, nullptr);
}

QMenu* CommandMenus::bar(const QString& name) const
{
    return menuOf(m_bars, name);
}

void CommandMenus::applyCaptions(int language)
{
    for (const MenuItemDef& row : menuTable()) {
        if (row.offset > 0)
            m_actions.value(row.key)->setText(StringTable::text(language, row.offset));
    }
}

void CommandMenus::checkLanguageItem(int language)
{
    if (language < 1 || language > kInterfaceLanguageCount) {
        if (QAction* checked = m_languages->checkedAction())
            checked->setChecked(false);
        m_languageMark = nullptr;
        return;
    }
    m_languageMark = action(QLatin1String(kLanguageKeys[language - 1]));
    m_languageMark->setChecked(true);
}

void CommandMenus::checkStyleItem(int style)
{
    if (style < 0 || style > 3) {
        if (QAction* checked = m_styles->checkedAction())
            checked->setChecked(false);
        return;
    }
    action(QStringLiteral("STYLE:%1").arg(style))->setChecked(true);
}

} // namespace quillora
