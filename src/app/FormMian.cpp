#include "app/FormMian.h"

#include "app/HotKeyBinding.h"
#include "app/LocaleChoice.h"
#include "app/StringTable.h"
#include "app/TranslatorPane.h"
#include "app/UniTextBox.h"
#include "desktop/AutoStart.h"
#include "desktop/ButtonRow.h"
#include "desktop/CommandMenus.h"
#include "desktop/ModmonClip.h"
#include "desktop/TextPanes.h"
#include "desktop/WebPageBar.h"
#include "net/Connectivity.h"
#include "net/PromotionPanel.h"
#include "net/SitesMenu.h"
#include "net/UpdateCheck.h"
#include "translate/TempFolder.h"
#include "translate/TranslationSession.h"
#include "translate/WebPageAddress.h"
#include "ui/AccessKeyGroups.h"
#include "ui/EnterPresses.h"
#include "ui/FirstShowing.h"
#include "ui/HeldInput.h"
#include "ui/LayoutScale.h"
#include "ui/TabOrder.h"

#include <QAction>
#include <QCloseEvent>
#include <QFrame>
#include <QGuiApplication>
#include <QLayout>
#include <QMap>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QStatusBar>

namespace quillora
{

namespace
{

constexpr int kBoxWidth = 710;
constexpr int kMargin = 2;
constexpr int kPicAdHeight = 60; // 900 twips

} // namespace

FormMian::FormMian(const FormMianDeps& deps, QWidget* parent)
    : QMainWindow(parent), m_deps(withDefaults(deps)), m_dialogs(this, m_deps), m_visibility(this),
      m_held(this, [this] { m_session->cancel(); })
{
    Q_ASSERT(deps.settings);
    m_deps.settings->setWriteFailureHandler(
        [this](const QString& reason) { setStatusMessage(text(MsgSettingsNotSaved).arg(reason)); });
    if (!m_deps.connectivity) {
        m_ownConnectivity = std::make_unique<SystemConnectivity>();
        m_connectivity = m_ownConnectivity.get();
    } else {
        m_connectivity = m_deps.connectivity;
    }
    m_engine = m_deps.engine ? m_deps.engine : new TranslationEngine(ServiceAddresses::fromEnvironment());
    auto* offline = m_deps.offline ? m_deps.offline : new OfflineEngine(QStringLiteral("apertium"));
    m_session = new TranslationSession(m_engine, offline, temporaryFolder(), this);
    // Engines of the window's own go with the session, after it has cancelled what runs on them.
    if (!m_deps.engine)
        m_engine->setParent(m_session);
    if (!m_deps.offline)
        offline->setParent(m_session);
    Form_Load();
}

FormMian::~FormMian()
{
    m_deps.settings->setWriteFailureHandler({});
}

void FormMian::Form_Load()
{
    buildWidgets();
    m_menus = new CommandMenus(this);
    connect(m_menus, &CommandMenus::triggered, this, &FormMian::runCommand);
    m_sites =
        new SitesMenu(m_menus->bar(QStringLiteral("SITEMENU")), m_menus->action(QStringLiteral("menuSite10")),
                      this, m_engine->addresses(), m_deps.openUrl);
    connect(m_sites, &SitesMenu::triggered, this, &FormMian::dispatch);
    readMarks();
    m_translator->applyStyle(m_style);
    applyCaptions();
    const std::optional<bool> monitoring = applyOptions();
    m_font = parseFont(m_deps.settings->fontText()).font;
    m_translator->applyFont(m_font);
    m_webBar->setAddressText(m_engine->addresses().webAddressBoxDefault());
    finishWidgets();
    new FirstShowing(this, [this, monitoring] { startServices(monitoring); });
}

void FormMian::buildWidgets()
{
    m_clipboard = new ClipboardMonitor(QGuiApplication::clipboard(), this);
    // Queued: a text found on the clipboard at load is translated once the window runs.
    connect(m_clipboard, &ClipboardMonitor::textCopied, this, &FormMian::translateCopiedText,
            Qt::QueuedConnection);
    connect(m_clipboard, &ClipboardMonitor::focusOnly, this,
            [this] { setStatusMessage(text(MsgClipboardFocus)); });
    connect(m_clipboard, &ClipboardMonitor::pasteText, this, [this](const QString& pasted) {
        m_held.defer([this, pasted] { m_translator->insertPasted(pasted); });
    });
    connect(m_clipboard, &ClipboardMonitor::tooLarge, this,
            [this] { setStatusMessage(text(MsgClipboardTooLarge).arg(ClipboardOffer::kMaxKiB)); });

    auto* central = new QWidget(this);
    setCentralWidget(central);
    const LayoutScale scale = LayoutScale::of(central);
    // The promotion panel keeps its place below the menu bar.
    m_picAD = new QFrame(central);
    m_picAD->setObjectName(QStringLiteral("PicAD"));
    m_picAD->setGeometry(scale(QRect(kMargin, kMargin, kBoxWidth, kPicAdHeight)));
    m_translator =
        new TranslatorPane(central, m_session, m_connectivity, m_clipboard, m_engine->addresses(),
                           [this](int offset, QMessageBox::Icon icon, QMessageBox::StandardButtons buttons,
                                  bool owned) { notice(offset, icon, buttons, owned); });
    m_translator->move(scale(kMargin), scale(kMargin * 2 + kPicAdHeight));
    connect(m_translator, &TranslatorPane::status, this, &FormMian::setStatusMessage);
    connect(m_translator, &TranslatorPane::translationFinished, this, [this] {
        // What the user did meanwhile comes first, then the newest copied text.
        m_held.release();
        m_translator->takeWaitingCopy();
        Q_EMIT translationFinished();
    });
    const int addressTop = m_translator->geometry().bottom() + 1 + scale(6);
    m_webBar = new WebPageBar(
        central, scale(kMargin), addressTop,
        [this](const QString& typed) {
            return webPageTranslationAddress(m_engine->addresses().service, m_session->InterfaceCode(),
                                             m_session->SourceCode(), m_session->TargetCode(), typed);
        },
        m_deps.openAddress);
    connect(m_webBar, &WebPageBar::openFailed, this, [this](const QString& reason) {
        setStatusMessage(text(MsgWithReason).arg(text(MsgPageNotOpened), reason));
    });
    central->setFixedSize(m_translator->width() + 2 * scale(kMargin), addressTop + scale(24 + kMargin));
    layout()->setSizeConstraint(QLayout::SetFixedSize);
    statusBar()->setSizeGripEnabled(false);

    connect(&m_visibility, &WindowVisibility::hiddenToTray, this, &FormMian::hiddenToTray);
    // The first time in a run, the status line says where the window went and how to quit.
    connect(
        &m_visibility, &WindowVisibility::hiddenToTray, this,
        [this] { setStatusMessage(text(MsgKeepsRunning)); }, Qt::SingleShotConnection);
    connect(m_session, &TranslationSession::busyChanged, this, [this](bool busy) {
        if (busy)
            m_held.hold();
    });
}

void FormMian::finishWidgets()
{
    m_promotion = new PromotionPanel(
        m_picAD, {m_connectivity, m_deps.openUrl, m_engine->addresses(), m_session->tempFolder()});
    m_promotion->applyCaptions(m_language.toInt());
    const auto keys = [this] { assignControlAccessKeys(centralWidget(), menuBar()); };
    connect(m_promotion, &PromotionPanel::captionChanged, this, keys);
    keys();
    pressOnEnter(centralWidget());
    orderTabsByScreen(this);
}

// Key, clipboard and update check work out of sight: they start once the window is on screen.
void FormMian::startServices(std::optional<bool> monitoring)
{
    m_clipboard->connectReader();
    applyMonitoring(monitoring);
    if (m_deps.registerHotKey) {
        m_hotKey = new HotKeyBinding(this);
        connect(m_hotKey, &HotKeyBinding::activated, this, &FormMian::toggleShowHide);
        connect(m_hotKey, &HotKeyBinding::problem, this,
                [this](int offset) { setStatusMessage(text(offset)); });
        m_hotKey->bind();
    }
    const auto ask = [this](int offset, QMessageBox::Icon icon, QMessageBox::StandardButtons buttons) {
        return notice(offset, icon, buttons, true);
    };
    new UpdateCheck({m_connectivity, ask, m_deps.openUrl, m_deps.startProgram, [this] { requestExit(); },
                     m_deps.programPath, m_engine->addresses()},
                    this);
}

void FormMian::readMarks()
{
    const Settings& settings = *m_deps.settings;
    m_language = interfaceLanguageFor(settings.language());
    m_menus->checkLanguageItem(m_language.toInt());
    m_menus->action(QStringLiteral("menuS0"))->setChecked(isAutoRunRegistered(m_deps.programPath));
    m_translator->setAutoCopy(settings.autoCopy());
    m_menus->action(QStringLiteral("menuS5"))->setChecked(settings.autoCopy());
    m_style = settings.style();
    m_menus->checkStyleItem(m_style);
}

// Captions differ in length between languages: labels and check boxes take the room their text needs,
// the pickers and the address box share the rest. At load the keys wait for the promotion button.
void FormMian::applyCaptions()
{
    const int language = m_language.toInt();
    m_menus->applyCaptions(language);
    m_sites->rebuild(language);
    setWindowTitle(text(WindowTitle));
    m_translator->applyCaptions(language);
    m_webBar->applyCaptions(language);
    m_webBar->fit(LayoutScale::of(this)(kBoxWidth));
    if (m_promotion) {
        m_promotion->applyCaptions(language);
        assignControlAccessKeys(centralWidget(), menuBar());
    }
}

// The stored "Options", in the order 0, 1, 2, 3, 4, 6, 5, stopping at the first that does not read;
// the text area applies all but clipboard monitoring, which is left to applyMonitoring().
std::optional<bool> FormMian::applyOptions()
{
    const Options options = m_deps.settings->options();
    return m_translator->applyOptions(options) ? options.monitorClipboard : std::nullopt;
}

void FormMian::applyMonitoring(std::optional<bool> on)
{
    if (!on)
        return;
    // A restart takes the clipboard's current text again, also when monitoring already ran.
    m_clipboard->setMonitoring(false);
    m_clipboard->setMonitoring(*on);
}

QString FormMian::text(int offset) const
{
    return uiText(m_language, offset);
}

QMessageBox::StandardButton FormMian::notice(int offset, QMessageBox::Icon icon,
                                             QMessageBox::StandardButtons buttons, bool owned)
{
    return m_deps.notice(this, {icon, text(NoticeTitle), text(offset), buttons, owned});
}

void FormMian::dispatch(const QString& key)
{
    runCommand(commandForKey(key));
}

void FormMian::runCommand(const CommandChoice& choice)
{
    const bool atOnce = choice.command == Command::Exit || choice.command == Command::ShowHide;
    if (atOnce || !m_session->Translating())
        run(choice);
    else
        m_held.defer([this, choice] { run(choice); });
}

void FormMian::run(const CommandChoice& choice)
{
    const ServiceAddresses& addresses = m_engine->addresses();
    switch (choice.command) {
    case Command::None:
        break;
    case Command::Translate:
        jcbuttonClick(ButtonRow::Translate);
        break;
    case Command::Open:
        if (const std::optional<QString> content = m_dialogs.openTextFile(m_language.toInt())) {
            setBoxText(m_translator->panes()->source(), *content);
            jcbuttonClick(ButtonRow::Translate);
        }
        break;
    case Command::SaveResults:
        m_dialogs.saveResults(m_language.toInt(), m_translator->panes()->texts());
        break;
    case Command::Exit:
        requestExit();
        break;
    case Command::AutoRun:
        SetAutoRun(m_menus->action(choice.key)->isChecked(), m_deps.programPath);
        break;
    case Command::AutoCopy:
        m_translator->setAutoCopy(m_menus->action(choice.key)->isChecked());
        m_deps.settings->setAutoCopy(m_menus->action(choice.key)->isChecked());
        break;
    case Command::Options:
        if (m_dialogs.options(m_language.toInt()))
            applyMonitoring(applyOptions());
        break;
    case Command::Font:
        m_font = m_dialogs.chooseFont(m_font, m_language.toInt());
        break;
    case Command::Language:
        setLanguage(choice.argument);
        break;
    case Command::Style:
        m_deps.settings->setStyle(choice.argument);
        m_style = choice.argument;
        m_translator->applyStyle(m_style);
        break;
    case Command::OnlineHelp:
    case Command::Home:
    case Command::GoogleHome:
    case Command::WebHome: {
        const QMap<Command, QUrl> pages{
            {Command::OnlineHelp, addresses.onlineHelp()},
            {Command::Home, addresses.productHome()},
            {Command::GoogleHome, addresses.serviceHome(m_session->InterfaceCode())},
            {Command::WebHome, addresses.outsideTranslator()}};
        m_deps.openUrl(pages.value(choice.command));
        break;
    }
    case Command::About:
        m_dialogs.about(m_language.toInt());
        break;
    case Command::SitesHome:
    case Command::Site:
        m_sites->open(choice.key);
        break;
    case Command::ShowHide:
        toggleShowHide();
        break;
    }
}

// Languages without a string table change nothing.
void FormMian::setLanguage(int number)
{
    if (number < 1)
        return;
    m_language = QString::number(number);
    m_deps.settings->setLanguage(m_language);
    applyCaptions();
    m_menus->checkLanguageItem(number);
    Q_EMIT interfaceLanguageChanged();
}

void FormMian::jcbuttonClick(int index)
{
    m_translator->jcbuttonClick(index);
}

void FormMian::translateCopiedText(const QString& text)
{
    m_translator->translateCopiedText(text);
}

bool FormMian::isTranslating() const
{
    return m_session->Translating();
}

QMenu* FormMian::systemMenu() const
{
    return m_menus->bar(QStringLiteral("SYSMENU"));
}

QString FormMian::statusMessage() const
{
    return statusBar()->currentMessage();
}

void FormMian::setStatusMessage(const QString& text)
{
    statusBar()->showMessage(text);
}

void FormMian::requestExit()
{
    m_exitRequested = true;
    m_session->cancel();
    m_clipboard->setMonitoring(false);
    close();
}

void FormMian::closeEvent(QCloseEvent* event)
{
    if (!m_exitRequested) {
        // Closing never ends the program: it minimises, and with a tray that hides the window there.
        event->ignore();
        m_visibility.minimise();
        return;
    }
    m_clipboard->setMonitoring(false);
    if (m_hotKey)
        m_hotKey->release();
    event->accept();
    Q_EMIT exiting();
}

} // namespace quillora
