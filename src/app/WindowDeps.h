#pragma once

#include "desktop/DesktopOpener.h"

#include <QMessageBox>
#include <QStringList>
#include <functional>

class QDialog;
class QUrl;
class QWidget;

namespace quillora
{

class ConnectivityProbe;
class OfflineEngine;
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
    QStringList nameFilters; // "text as shown (patterns)"
    QString defaultSuffix;
};
using FileChooser = std::function<QString(QWidget* owner, const FileDialogRequest&)>;
using UrlOpener = std::function<bool(const QUrl&)>;
// Opens an address exactly as written, for addresses the program builds as text; a failure, now or
// later, is said through the second argument.
using AddressOpener = std::function<void(const QString& address, const OpenFailed& failed)>;
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
    AddressOpener openAddress;                 // default: openWithDesktop
    FileChooser chooseFile;                    // default: a QFileDialog
    DialogRunner runDialog;                    // default: QDialog::exec
    ProgramStarter startProgram;               // default: QProcess::startDetached
};

// `given` with every empty seam filled by the real thing (engines and connectivity excepted).
FormMianDeps withDefaults(FormMianDeps given);

} // namespace quillora
