#pragma once

#include "desktop/MenuCommands.h"

#include <QHash>
#include <QObject>

class QAction;
class QActionGroup;
class QMainWindow;
class QMenu;
class QMenuBar;

namespace quillora
{

// The menu bar and the tray menu, built once from menuTable(). Every QAction's objectName is its key.
class CommandMenus : public QObject
{
    Q_OBJECT
public:
    explicit CommandMenus(QMainWindow* window);

    QAction* action(const QString& key) const;
    // The table's item for a command and its argument, null when there is none.
    QAction* actionFor(Command command, int argument) const;
    QMenu* bar(const QString& name) const; // "FILEMENU" ... "SYSMENU"
    // Localised captions of interface language 1-7, with access keys unique within each menu.
    void applyCaptions(int language);
    // Option groups are marked by the program.
    void checkLanguageItem(int language); // 1-7
    void checkStyleItem(int style);       // 0-3, anything else unchecks all

Q_SIGNALS:
    void triggered(const CommandChoice& choice);

private:
    void build(QMainWindow* window);
    QAction* addItem(const MenuItemDef& row);
    void keepLanguageMark(QAction* clicked);

    QHash<QString, QAction*> m_actions;
    QHash<QString, QMenu*> m_bars;
    QHash<QAction*, int> m_icons; // not yet set, by icon number
    QMenuBar* m_menuBar = nullptr;
    QActionGroup* m_languages;
    QActionGroup* m_styles;
    QAction* m_languageMark = nullptr; // restored when an item without a table is clicked
};

} // namespace quillora
