#pragma once

#include "app/DialogCommands.h"
#include "app/Settings.h"
#include "app/WindowDeps.h"
#include "app/WindowVisibility.h"
#include "desktop/MenuCommands.h"
#include "ui/HeldInput.h"

#include <QMainWindow>
#include <memory>
#include <optional>

class QFrame;
class QMenu;

namespace quillora
{

class ClipboardMonitor;
class CommandMenus;
class ConnectivityProbe;
class HotKeyBinding;
class PromotionPanel;
class SitesMenu;
class TranslationSession;
class TranslatorPane;
class WebPageBar;

// The program's one main window: its menus, status line, showing and hiding, and the parts it is
// made of (text panes, language pickers, buttons, speakers, the web page bar, the promotion panel),
// tied to one translation session.
class FormMian : public QMainWindow
{
    Q_OBJECT
public:
    explicit FormMian(const FormMianDeps& deps, QWidget* parent = nullptr);
    ~FormMian() override;

    // The six buttons by index: 0 Translate, 1 Swap, 2 Back, 3 Copy, 4 Paste, 5 Clear.
    void jcbuttonClick(int index);
    // Clipboard translation step: replaces the source text, tests the connection, translates.
    // While a translation runs only the newest text is kept and translated once it ends.
    void translateCopiedText(const QString& text);
    bool isTranslating() const;

    QMenu* systemMenu() const; // "SYSMENU", the tray menu
    // Runs the command of a menu key ("menuF0", "STYLE:2", ...); while a translation runs, every
    // command but the way out and the show/hide toggle waits for its end.
    void dispatch(const QString& key);
    void runCommand(const CommandChoice& choice);

    void toggleShowHide() { m_visibility.toggle(); }
    // "Exit": sets the exit flag and closes for real.
    void requestExit();
    bool exitRequested() const { return m_exitRequested; }
    void setTrayPresent(bool present) { m_visibility.setTrayPresent(present); }
    bool trayPresent() const { return m_visibility.trayPresent(); }

    QString interfaceLanguage() const { return m_language; } // "1".."7"
    QString statusMessage() const;
    void setStatusMessage(const QString& text);

Q_SIGNALS:
    void hiddenToTray(); // the window went to the tray: show the welcome balloon
    void interfaceLanguageChanged();
    void translationFinished();
    void exiting(); // the exit was accepted: the program should end now

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void Form_Load();
    void buildWidgets();
    void finishWidgets();
    void startServices(std::optional<bool> monitoring);
    void readMarks();
    void applyCaptions();
    std::optional<bool> applyOptions();
    void applyMonitoring(std::optional<bool> on);
    void setLanguage(int number);
    void run(const CommandChoice& choice);

    QString text(int offset) const;
    QMessageBox::StandardButton notice(int offset, QMessageBox::Icon icon,
                                       QMessageBox::StandardButtons buttons, bool owned);

    FormMianDeps m_deps;
    DialogCommands m_dialogs;
    WindowVisibility m_visibility;
    HeldInput m_held; // what the user does while a translation runs
    std::unique_ptr<ConnectivityProbe> m_ownConnectivity;
    ConnectivityProbe* m_connectivity = nullptr;
    TranslationEngine* m_engine = nullptr;
    TranslationSession* m_session = nullptr;
    HotKeyBinding* m_hotKey = nullptr;
    QFrame* m_picAD = nullptr;
    TranslatorPane* m_translator = nullptr;
    WebPageBar* m_webBar = nullptr;
    QString m_language = QStringLiteral("1");
    CommandMenus* m_menus = nullptr;
    SitesMenu* m_sites = nullptr;
    PromotionPanel* m_promotion = nullptr;
    ClipboardMonitor* m_clipboard = nullptr;

    int m_style = 2;
    FontSetting m_font;
    bool m_exitRequested = false;
};

} // namespace quillora
