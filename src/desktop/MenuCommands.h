#pragma once

#include <QString>
#include <QVector>

namespace quillora
{

// What a menu item does. The key strings stay the items' names; the window dispatches on this.
enum class Command {
    None, // separators, the items that open a menu
    Translate,
    Open,
    SaveResults,
    Exit,
    AutoRun,
    AutoCopy,
    Options,
    Font,
    Language, // argument: interface language 1-7, 0 for the languages without a table
    Style,    // argument: style 0-3
    OnlineHelp,
    WebHome,
    Home,
    About,
    GoogleHome,
    SitesHome,
    Site, // argument: the site's index in the loaded list
    ShowHide
};

struct CommandChoice {
    Command command = Command::None;
    int argument = 0;
    QString key;
};

// One row of the menu table.
struct MenuItemDef {
    enum Kind { Normal, Check, Option, Separator, Submenu };
    QString bar;     // "" for the top level, else "FILEMENU", "EDITMENU", ...
    QString key;     // object name of the QAction
    QString builtIn; // caption before localisation
    Kind kind = Normal;
    int icon = -1;  // icon index 0-10, -1 none
    int offset = 0; // caption offset, 0 none
    QString opens;  // for Submenu: the bar it opens
    Command command = Command::None;
    int argument = 0;
};

const QVector<MenuItemDef>& menuTable();

// The command of a key from the table, the sites menu ("menuSite0" ...) or elsewhere; Command::None
// for keys that name no command.
CommandChoice commandForKey(const QString& key);

} // namespace quillora
