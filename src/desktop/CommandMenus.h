#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <QVector>

class QAction;
class QActionGroup;
class QMainWindow;
class QMenu;
class QMenuBar;

namespace quillora
{

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
};

const QVector<MenuItemDef>& menuTable();

// The menu bar and the tray menu, built once from menuTable(). Every QAction's objectName is its key.
class CommandMenus : public QObject
{
    Q_OBJECT
public:
    explicit CommandMenus(QMainWindow* window);

    QAction* action(const QString& key) const;
    QMenu* bar(const QString& name) const; // "FILEMENU" ... "SYSMENU"
    // Localised captions of interface language 1-7.
    void applyCaptions(int language);
    // Option groups are marked by the program.
    void checkLanguageItem(int language); // 1-7
    void checkStyleItem(int style);       // 0-3, anything else unchecks all

Q_SIGNALS:
    void triggered(const QString& key);

private:
    void build(QMainWindow* window);
    QAction* addItem(const MenuItemDef& row);
    void keepLanguageMark(QAction* clicked);

    QHash<QString, QAction*> m_actions;
    QHash<QString, QMenu*> m_bars;
    QActionGroup* m_languages;
    QActionGroup* m_styles;
    QAction* m_languageMark = nullptr; // restored when an item without a table is clicked
};

// Interface language number for a language menu key, 0 for the inert ones and other keys.
int interfaceLanguageForMenuKey(const QString& key);

} // namespace quillora
