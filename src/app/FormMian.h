#pragma once

#include "desktop/MenuCommands.h"

#include <QMainWindow>
#include <QMessageBox>
#include <QStringList>
#include <functional>
#include <memory>

class QAbstractButton;
class QAction;
class QCheckBox;
class QComboBox;
class QDialog;
class QMenu;
class QPlainTextEdit;
class QUrl;

namespace quillora
{

class ClipboardMonitor;
class ConnectivityProbe;
class OfflineEngine;
class PromotionPanel;
class SitesMenu;
class UpdateCheck;
class Settings;
class TranslationEngine;

// A message box request; tests replace the shower to answer without a human.
struct NoticeRequest {
    QMessageBox::Icon icon = QMessageBox::Information;
    QString title;
    QString text;
    QMessageBox::StandardButtons buttons = QMessageBox::Ok;
    bool owned = true; // false: no owner window
};
using NoticeShower = std::function<QMessageBox::StandardButton(QWidget* owner, const NoticeRequest&)>;

// A file dialog request (open or save); tests answer it with a path or "" for cancel.
struct FileDialogRequest {
    enum Mode { Open, Save };
    Mode mode = Open;
    QString title;
    QStringList nameFilters;
    QString defaultSuffix;
};
using FileChooser = std::function<QString(QWidget* owner, const FileDialogRequest&)>;
using UrlOpener = std::function<bool(const QUrl&)>;
// Opens an address exactly as written, for addresses the program builds as text.
using AddressOpener = std::function<bool(const QString&)>;
using DialogRunner = std::function<int(QDialog*)>; // returns QDialog::DialogCode
using ProgramStarter = std::function<bool(const QString& program, const QStringList& arguments)>;

// What the main window is built with; all of it has defaults for the real program.
struct FormMianDeps {
    Settings* settings = nullptr;              // required
    ConnectivityProbe* connectivity = nullptr; // default: the system's
    TranslationEngine* engine = nullptr;       // default: one of its own
    OfflineEngine* offline = nullptr;          // default: one of its own, on the installed pairs
    NoticeShower notice;                       // default: a real QMessageBox
    QString programPath;                       // default: QCoreApplication::applicationFilePath()
    bool registerHotKey = true;                // tests on offscreen pass false
    UrlOpener openUrl;                         // default: QDesktopServices::openUrl
    AddressOpener openAddress;                 // default: xdg-open, else openUrl
    FileChooser chooseFile;                    // default: a QFileDialog
    DialogRunner runDialog;                    // default: QDialog::exec
    ProgramStarter startProgram;               // default: QProcess::startDetached
};

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

    QPlainTextEdit* sourceBox() const;
    QPlainTextEdit* resultBox() const;
    QPlainTextEdit* phoneticBox() const;
    QPlainTextEdit* dictionaryBox() const;
    QComboBox* combo1() const;       // target
    QComboBox* combo2() const;       // source
    const QString& response() const; // the raw answer, shown nowhere
    QAbstractButton* jcbutton(int index) const;
    QAbstractButton* speakerButton(int slot) const; // 0 translation, 1 source
    QCheckBox* check1() const;                      // "Show phonetically"
    QCheckBox* check2() const;                      // "Show dictionary"
    QComboBox* ucComText() const;                   // web page address box
    ClipboardMonitor* clipboardMonitor() const;
    UpdateCheck* updateCheck() const;       // `Timer2`
    SitesMenu* sitesMenu() const;           // "menuSite"
    PromotionPanel* promotionPanel() const; // `Timer3`, `WebBrowser3`, `jcbutton2`

    QAction* action(const QString& key) const; // menu item by key ("menuF0", "STYLE:2", ...)
    QMenu* systemMenu() const;                 // "SYSMENU", the tray menu
    void dispatch(const QString& key);         // runs the command of a menu key
    void runCommand(const CommandChoice& choice);

    // The show/hide toggle shared by the tray icon, F11 and "menuSYS1".
    void toggleShowHide();
    // "Exit": sets the exit flag and closes for real.
    void requestExit();
    bool exitRequested() const;

    // Where there is a tray the window hides there when minimised or closed; without one it
    // stays minimised in the task bar so it can always be reached.
    void setTrayPresent(bool present);
    bool trayPresent() const;

    QString interfaceLanguage() const; // "1".."7"
    QString statusMessage() const;
    void setStatusMessage(const QString& text);

Q_SIGNALS:
    void hiddenToTray(); // the window went to the tray: show the welcome balloon
    void interfaceLanguageChanged();
    void translationFinished();
    void exiting(); // the exit was accepted: the program should end now

protected:
    void closeEvent(QCloseEvent* event) override;
    void changeEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Private;
    std::unique_ptr<Private> d;
};

} // namespace quillora
