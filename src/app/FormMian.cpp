#include "app/FormMian.h"

#include "app/FormMianPrivate.h"
#include "app/LocaleChoice.h"
#include "app/StringTable.h"
#include "app/UniTextBox.h"
#include "desktop/AutoStart.h"
#include "desktop/CommandMenus.h"
#include "desktop/ModFont.h"
#include "desktop/ModHotKey.h"
#include "desktop/ModmonClip.h"
#include "desktop/VisualStyle.h"
#include "net/Connectivity.h"
#include "net/SitesMenu.h"
#include "translate/LanguageCatalogue.h"
#include "translate/TempFolder.h"
#include "translate/TranslationEngine.h"
#include "ui/InputHold.h"

#include <QAudioOutput>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFrame>
#include <QGuiApplication>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QMediaPlayer>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QShowEvent>
#include <QStatusBar>
#include <QStyle>
#include <QToolButton>
#include <QUrl>
#include <algorithm>

namespace quillora
{

namespace
{

QMessageBox::StandardButton showMessageBox(QWidget* owner, const NoticeRequest& request)
{
    QMessageBox box(request.icon, request.title, request.text, request.buttons,
                    request.owned ? owner : nullptr);
    return QMessageBox::StandardButton(box.exec());
}

QString chooseWithDialog(QWidget* owner, const FileDialogRequest& request)
{
    QFileDialog dialog(owner, request.title);
    dialog.setNameFilters(request.nameFilters);
    if (request.mode == FileDialogRequest::Save) {
        dialog.setAcceptMode(QFileDialog::AcceptSave);
        dialog.setDefaultSuffix(request.defaultSuffix);
    } else {
        dialog.setFileMode(QFileDialog::ExistingFile);
    }
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return {};
    return dialog.selectedFiles().constFirst();
}

} // namespace

FormMian::Private::Private(FormMian* owner, const FormMianDeps& given)
    : q(owner), deps(given), tempFolder(temporaryFolder())
{
    if (!deps.connectivity) {
        ownConnectivity = std::make_unique<SystemConnectivity>();
        connectivity = ownConnectivity.get();
    } else {
        connectivity = deps.connectivity;
    }
    engine = deps.engine ? deps.engine : new TranslationEngine(ServiceAddresses::fromEnvironment(), owner);
    session = new TranslationSession(
        engine, deps.offline ? deps.offline : new OfflineEngine(QStringLiteral("apertium"), owner),
        tempFolder, owner);
    QObject::connect(session, &TranslationSession::finished, owner,
                     [this](const SessionResult& result) { translated(result); });
    QObject::connect(session, &TranslationSession::wentBack, owner,
                     [this](const HistorySlot& slot) { showHistorySlot(slot); });
    if (!deps.notice)
        deps.notice = showMessageBox;
    if (deps.programPath.isEmpty())
        deps.programPath = QCoreApplication::applicationFilePath();
    if (!deps.openUrl)
        deps.openUrl = [](const QUrl& url) { return QDesktopServices::openUrl(url); };
    if (!deps.openAddress) {
        // QUrl would re-encode what the user typed; the browser gets the text as built.
        deps.openAddress = [open = deps.openUrl](const QString& address) {
            return QProcess::startDetached(QStringLiteral("xdg-open"), {address}) ||
                   open(QUrl(address, QUrl::TolerantMode));
        };
    }
    if (!deps.chooseFile)
        deps.chooseFile = chooseWithDialog;
    if (!deps.runDialog)
        deps.runDialog = [](QDialog* dialog) { return dialog->exec(); };
}

FormMian::Private::~Private() = default;

QString FormMian::Private::text(int offset) const
{
    return uiText(language, offset);
}

QMessageBox::StandardButton FormMian::Private::notice(int offset, QMessageBox::Icon icon,
                                                      QMessageBox::StandardButtons buttons, bool owned)
{
    NoticeRequest request;
    request.icon = icon;
    request.title = text(100);
    request.text = text(offset);
    request.buttons = buttons;
    request.owned = owned;
    return deps.notice(q, request);
}

const ServiceAddresses& FormMian::Private::addresses() const
{
    return engine->addresses();
}

bool FormMian::Private::openUrl(const QUrl& url) const
{
    return deps.openUrl(url);
}

int FormMian::Private::runDialog(QDialog* dialog) const
{
    return deps.runDialog(dialog);
}

// ---------------------------------------------------------------------------------------------
// Loading

void FormMian::Private::Form_Load()
{
    q->setWindowIcon(QIcon(QStringLiteral(":/icons/quillora.svg")));
    buildWidgets();

    menus = new CommandMenus(q);
    QObject::connect(menus, &CommandMenus::triggered, q, &FormMian::dispatch);
    buildSitesMenu();
    clipboard = new ClipboardMonitor(QGuiApplication::clipboard(), q);
    // Queued: a text found on the clipboard at load is translated once the window runs, not while
    // it is being built.
    QObject::connect(clipboard, &ClipboardMonitor::textCopied, q, &FormMian::translateCopiedText,
                     Qt::QueuedConnection);
    QObject::connect(clipboard, &ClipboardMonitor::focusOnly, q,
                     [this] { q->setStatusMessage(text(MsgClipboardFocus)); });
    QObject::connect(clipboard, &ClipboardMonitor::pasteText, q,
                     [this](const QString& pasted) { pasteClipboardText(pasted); });
    QObject::connect(clipboard, &ClipboardMonitor::tooLarge, q, [this] {
        q->setStatusMessage(text(MsgClipboardTooLarge).arg(ClipboardOffer::kMaxKiB));
    });

    readMarks();
    applyStyle();
    applyCaptions();
    applyOptions();

    font = parseFont(deps.settings->fontText()).font;
    ApplyFont(font, {sourceBox, resultBox, phoneticBox, dictionaryBox});

    registerHotKey();
    ucComText->setEditText(addresses().webAddressBoxDefault());
    buildNetServices();
}

// ---------------------------------------------------------------------------------------------
// The window

FormMian::FormMian(const FormMianDeps& deps, QWidget* parent)
    : QMainWindow(parent), d(std::make_unique<Private>(this, deps))
{
    Q_ASSERT(deps.settings);
    deps.settings->setWriteFailureHandler(
        [this](const QString& reason) { setStatusMessage(d->text(MsgSettingsNotSaved).arg(reason)); });
    d->Form_Load();
}

FormMian::~FormMian()
{
    d->deps.settings->setWriteFailureHandler({});
    d->session->cancel();
}

QPlainTextEdit* FormMian::sourceBox() const
{
    return d->sourceBox;
}
QPlainTextEdit* FormMian::resultBox() const
{
    return d->resultBox;
}
QPlainTextEdit* FormMian::phoneticBox() const
{
    return d->phoneticBox;
}
QPlainTextEdit* FormMian::dictionaryBox() const
{
    return d->dictionaryBox;
}
const QString& FormMian::response() const
{
    return d->response;
}
QComboBox* FormMian::combo1() const
{
    return d->Combo1;
}
QComboBox* FormMian::combo2() const
{
    return d->Combo2;
}
QCheckBox* FormMian::check1() const
{
    return d->Check1;
}
QCheckBox* FormMian::check2() const
{
    return d->Check2;
}
QComboBox* FormMian::ucComText() const
{
    return d->ucComText;
}
ClipboardMonitor* FormMian::clipboardMonitor() const
{
    return d->clipboard;
}
bool FormMian::isTranslating() const
{
    return d->session->Translating();
}
bool FormMian::exitRequested() const
{
    return d->exitRequested;
}
bool FormMian::trayPresent() const
{
    return d->trayPresent;
}
void FormMian::setTrayPresent(bool present)
{
    d->trayPresent = present;
    // A window that waits minimised in the task bar for want of a tray goes into the one that came up.
    if (present && isMinimized() && !isHidden()) {
        d->meantShown = false;
        hide();
        Q_EMIT hiddenToTray();
    }
}
QString FormMian::interfaceLanguage() const
{
    return d->language;
}
QString FormMian::statusMessage() const
{
    return statusBar()->currentMessage();
}
void FormMian::setStatusMessage(const QString& text)
{
    statusBar()->showMessage(text);
}

QAbstractButton* FormMian::jcbutton(int index) const
{
    return index >= 0 && index < int(d->jcbutton.size()) ? d->jcbutton[index] : nullptr;
}

QAbstractButton* FormMian::speakerButton(int slot) const
{
    return slot >= 0 && slot < int(d->speaker.size()) ? d->speaker[slot] : nullptr;
}

QAction* FormMian::action(const QString& key) const
{
    return d->menus->action(key);
}

QMenu* FormMian::systemMenu() const
{
    return d->menus->bar(QStringLiteral("SYSMENU"));
}

// Decided by the program's own state: the window manager reports earlier requests late.
void FormMian::toggleShowHide()
{
    d->lastToggle.start();
    if (!d->meantShown) {
        d->meantShown = true;
        showNormal();
        raise();
        activateWindow();
    } else {
        d->meantShown = false;
        setWindowState(windowState() | Qt::WindowMinimized);
    }
}

// A report that contradicts a toggle of the last moment is a late one about an earlier request.
bool FormMian::Private::lateReport() const
{
    constexpr int kReportDelayMs = 1000;
    return lastToggle.isValid() && !lastToggle.hasExpired(kReportDelayMs);
}

void FormMian::requestExit()
{
    d->exitRequested = true;
    d->session->cancel();
    d->clipboard->setMonitoring(false);
    close();
}

void FormMian::closeEvent(QCloseEvent* event)
{
    if (!d->exitRequested) {
        // Closing never ends the program: it minimises, and with a tray that hides the window there.
        event->ignore();
        d->meantShown = false;
        setWindowState(windowState() | Qt::WindowMinimized);
        return;
    }
    d->clipboard->setMonitoring(false);
    if (d->hotKey)
        d->hotKey->releaseKey();
    event->accept();
    Q_EMIT exiting();
}

void FormMian::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() != QEvent::WindowStateChange || !isMinimized())
        return;
    if (d->meantShown && d->lateReport()) {
        QMetaObject::invokeMethod(this, &QWidget::showNormal, Qt::QueuedConnection);
        return;
    }
    d->meantShown = false;
    if (!d->trayPresent)
        return;
    // Hiding from inside the state change confuses some window managers; do it right after.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (d->meantShown || isHidden() || !d->trayPresent)
                return;
            hide();
            Q_EMIT hiddenToTray();
        },
        Qt::QueuedConnection);
}

void FormMian::showEvent(QShowEvent* event)
{
    QMainWindow::showEvent(event);
    if (!event->spontaneous())
        d->meantShown = true;
}

void FormMian::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && d->session->Translating()) {
        d->session->cancel();
        return;
    }
    QMainWindow::keyPressEvent(event);
}

} // namespace quillora
