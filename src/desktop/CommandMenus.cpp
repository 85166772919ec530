#include "desktop/CommandMenus.h"

#include "app/StringTable.h"
#include "ui/AccessKeyGroups.h"

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

const QString kLanguageMenu = QStringLiteral("LANGUAGEMENU");
const QString kStyleMenu = QStringLiteral("STYLEMENU");
const QString kTrayMenu = QStringLiteral("SYSMENU");

QMenu* menuOf(const QHash<QString, QMenu*>& bars, const QString& name)
{
    return bars.value(name, nullptr);
}

} // namespace

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
        // Items that come later (the sites list) get their keys before they show. Icons are drawn
        // only in an open menu, and reading them costs the program's start: made when first needed.
        connect(menu, &QMenu::aboutToShow, menu, [this, menu] {
            for (QAction* item : menu->actions())
                if (m_icons.contains(item))
                    item->setIcon(QIcon(QStringLiteral(":/icons/icon%1.svg").arg(m_icons.take(item))));
            assignMenuAccessKeys(menu);
        });
        m_bars.insert(row.opens, menu);
    }
    QMenuBar* menuBar = window->menuBar();
    m_menuBar = menuBar;
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
    // The desktop's own keys; the tray menu's Exit stays without, one key one command.
    m_actions.value(QStringLiteral("menuF1"))->setShortcut(QKeySequence::Open);
    m_actions.value(QStringLiteral("menuF2"))->setShortcut(QKeySequence::Save);
    m_actions.value(QStringLiteral("menuF3"))->setShortcut(QKeySequence::Quit);
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
        m_icons.insert(item, row.icon);
    if (row.kind == MenuItemDef::Check || row.kind == MenuItemDef::Option)
        item->setCheckable(true);
    const bool language = row.kind == MenuItemDef::Option && row.bar == kLanguageMenu;
    if (language)
        m_languages->addAction(item);
    else if (row.kind == MenuItemDef::Option && row.bar == kStyleMenu)
        m_styles->addAction(item);
    const CommandChoice choice{row.command, row.argument, row.key};
    connect(item, &QAction::triggered, this, [this, item, choice, language] {
        if (language)
            keepLanguageMark(item);
        Q_EMIT triggered(choice);
    });
    return item;
}

void CommandMenus::keepLanguageMark(QAction* clicked)
{
    if (commandForKey(clicked->objectName()).argument != 0) {
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
    assignMenuAccessKeys(m_menuBar);
    for (QMenu* menu : std::as_const(m_bars))
        assignMenuAccessKeys(menu);
}

QAction* CommandMenus::actionFor(Command command, int argument) const
{
    for (const MenuItemDef& row : menuTable()) {
        if (row.command == command && row.argument == argument)
            return action(row.key);
    }
    return nullptr;
}

// Language 0 is an item without a table: nothing is marked then.
void CommandMenus::checkLanguageItem(int language)
{
    m_languageMark = language != 0 ? actionFor(Command::Language, language) : nullptr;
    if (m_languageMark)
        m_languageMark->setChecked(true);
    else if (QAction* checked = m_languages->checkedAction())
        checked->setChecked(false);
}

void CommandMenus::checkStyleItem(int style)
{
    if (QAction* item = actionFor(Command::Style, style))
        item->setChecked(true);
    else if (QAction* checked = m_styles->checkedAction())
        checked->setChecked(false);
}

} // namespace quillora
