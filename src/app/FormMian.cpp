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

// Text-box container layout, in pixels of Pic1.
constexpr int kBoxWidth = 710;
constexpr int kSpeakerSize = 18;
constexpr int kPic1Width = kBoxWidth + 3 + kSpeakerSize;
constexpr int kPic1Height = 188 + 239;
constexpr int kMargin = 2;
constexpr int kPicAdHeight = 60; // 900 twips

const QRect kSourceRect(0, 0, kBoxWidth, 135);
const QRect kResultRect(0, 188, kBoxWidth, 135);
const QRect kResultTallRect(0, 188, kBoxWidth, 239);
const QRect kPhoneticRect(0, 325, 400, 102);
const QRect kDictionaryRect(403, 325, 307, 102);
const QRect kLowerPaneWideRect(0, 325, kBoxWidth, 102);

// Button captions and tool tips by index, interface string offsets.
constexpr std::array<int, 6> kButtonCaption{25, 109, 26, 27, 28, 29};
constexpr std::array<int, 6> kButtonToolTip{2, 113, 110, 111, 112, 29};

bool isInterfaceLanguage(const QString& language)
{
    return language.size() == 1 && language.at(0) >= QLatin1Char('1') &&
           language.at(0) <= QLatin1Char(char('0' + kInterfaceLanguageCount));
}

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
    : q(owner), deps(given), tempFolder(temporaryFolder()), ring(tempFolder)
{
    if (!deps.connectivity) {
        ownConnectivity = std::make_unique<SystemConnectivity>();
        connectivity = ownConnectivity.get();
    } else {
        connectivity = deps.connectivity;
    }
    engine = deps.engine ? deps.engine : new TranslationEngine(ServiceAddresses::fromEnvironment(), owner);
    router = std::make_unique<TranslationRouter>(
        engine, deps.offline ? deps.offline : new OfflineEngine(QStringLiteral("apertium"), owner));
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

void FormMian::Private::buildWidgets()
{
    auto* central = new QWidget(q);
    q->setCentralWidget(central);

    // The promotion panel keeps its place below the menu bar.
    PicAD = new QFrame(central);
    PicAD->setObjectName(QStringLiteral("PicAD"));
    PicAD->setGeometry(kMargin, kMargin, kBoxWidth, kPicAdHeight);

    Pic1 = new QWidget(central);
    Pic1->setObjectName(QStringLiteral("Pic1"));
    Pic1->setAutoFillBackground(true);
    Pic1->setGeometry(kMargin, kMargin * 2 + kPicAdHeight, kPic1Width, kPic1Height);

    sourceBox = createTextBox(Pic1, kSourceRect, QStringLiteral("Source text"));
    resultBox = createTextBox(Pic1, kResultRect, QStringLiteral("Translation"));
    phoneticBox = createTextBox(Pic1, kPhoneticRect, QStringLiteral("Romanization"));
    dictionaryBox = createTextBox(Pic1, kDictionaryRect, QStringLiteral("Dictionary"));
    responseBox = new QPlainTextEdit(Pic1);
    responseBox->setObjectName(QStringLiteral("responseBox"));
    responseBox->setReadOnly(true);
    responseBox->hide();

    buildPickerBand();

    const QIcon speakerIcon = q->style()->standardIcon(QStyle::SP_MediaVolume);
    const std::array<int, 2> speakerTop{kResultRect.top(), kSourceRect.top()};
    for (int slot = 0; slot < 2; ++slot) {
        auto* button = new QToolButton(Pic1);
        button->setObjectName(QStringLiteral("WebBrowser2_%1").arg(slot));
        button->setIcon(speakerIcon);
        button->setAutoRaise(true);
        button->setGeometry(kBoxWidth + 3, speakerTop[slot], kSpeakerSize, kSpeakerSize);
        button->hide();
        QObject::connect(button, &QToolButton::clicked, q, [this, slot] { playSpeech(slot); });
        speaker[slot] = button;
    }

    const int addressTop = Pic1->geometry().bottom() + 1 + 6;
    buildAddressRow(central, addressTop);
    central->setFixedSize(kPic1Width + 2 * kMargin, addressTop + 24 + kMargin);
    q->layout()->setSizeConstraint(QLayout::SetFixedSize);
    q->statusBar()->setSizeGripEnabled(false);
}

void FormMian::Private::buildPickerBand()
{
    constexpr int rowA = 139;
    constexpr int rowB = 164;
    constexpr int height = 22;

    fromLabel = new QLabel(Pic1);
    fromLabel->setGeometry(0, rowA, 44, height);
    Combo2 = new QComboBox(Pic1);
    Combo2->setObjectName(QStringLiteral("Combo2"));
    Combo2->setGeometry(46, rowA, 170, height);
    fromLabel->setBuddy(Combo2);

    intoLabel = new QLabel(Pic1);
    intoLabel->setGeometry(226, rowA, 44, height);
    Combo1 = new QComboBox(Pic1);
    Combo1->setObjectName(QStringLiteral("Combo1"));
    Combo1->setGeometry(272, rowA, 170, height);
    intoLabel->setBuddy(Combo1);

    Check1 = new QCheckBox(Pic1);
    Check1->setObjectName(QStringLiteral("Check1"));
    Check1->setGeometry(452, rowA, 128, height);
    Check2 = new QCheckBox(Pic1);
    Check2->setObjectName(QStringLiteral("Check2"));
    Check2->setGeometry(584, rowA, 126, height);
    Check1->setChecked(true);
    Check2->setChecked(true);

    QObject::connect(Combo2, &QComboBox::currentIndexChanged, q, [this] { Combo2_Click(); });
    QObject::connect(Combo1, &QComboBox::currentIndexChanged, q, [this] { Combo1_Click(); });
    QObject::connect(Check1, &QCheckBox::toggled, q, [this] { Check_Click(); });
    QObject::connect(Check2, &QCheckBox::toggled, q, [this] { Check_Click(); });

    constexpr int buttonWidth = 114;
    constexpr int buttonStep = 119;
    for (int i = 0; i < int(jcbutton.size()); ++i) {
        auto* button = new QPushButton(Pic1);
        button->setObjectName(QStringLiteral("jcbutton_%1").arg(i)); // "jcbutton1" is the address button
        button->setGeometry(i * buttonStep, rowB, buttonWidth, height);
        button->setAutoDefault(false);
        QObject::connect(button, &QPushButton::clicked, q, [this, i] { q->jcbuttonClick(i); });
        jcbutton[i] = button;
    }
}

void FormMian::Private::buildAddressRow(QWidget* central, int top)
{
    addressLabel = new QLabel(central);
    addressLabel->setGeometry(kMargin, top, 170, 24);
    ucComText = new QComboBox(central);
    ucComText->setObjectName(QStringLiteral("ucComText"));
    ucComText->setEditable(true);
    ucComText->setInsertPolicy(QComboBox::NoInsert);
    ucComText->setGeometry(kMargin + 174, top, 440, 24);
    addressLabel->setBuddy(ucComText);
    jcbutton1 = new QPushButton(central);
    jcbutton1->setObjectName(QStringLiteral("jcbutton1"));
    jcbutton1->setGeometry(kMargin + 620, top, 90, 24);
    jcbutton1->setAutoDefault(false);
    QObject::connect(jcbutton1, &QPushButton::clicked, q, [this] { jcbutton1_Click(); });
}

void FormMian::Private::readMarks()
{
    Settings& settings = *deps.settings;
    QString stored = settings.language();
    if (stored.isEmpty())
        stored = chooseInterfaceLanguage();
    language = isInterfaceLanguage(stored) ? stored : QStringLiteral("1");
    menus->checkLanguageItem(language.toInt());

    menus->action(QStringLiteral("menuS0"))->setChecked(isAutoRunRegistered(deps.programPath));

    autoCopy = settings.autoCopy();
    menus->action(QStringLiteral("menuS5"))->setChecked(autoCopy);

    style = settings.style();
    menus->checkStyleItem(style);
}

void FormMian::Private::applyStyle()
{
    const QList<QWidget*> checks{Check1, Check2};
    const QList<QWidget*> buttons(jcbutton.begin(), jcbutton.end());
    applyVisualStyle(style, Pic1, checks, buttons);
}

void FormMian::Private::applyCaptions()
{
    menus->applyCaptions(language.toInt());
    sites->rebuild(language.toInt());
    q->setWindowTitle(text(17));
    fromLabel->setText(text(21));
    intoLabel->setText(text(22));
    Check1->setText(text(23));
    Check2->setText(text(24));
    addressLabel->setText(text(120));
    jcbutton1->setText(text(121));
    for (int i = 0; i < int(jcbutton.size()); ++i) {
        jcbutton[i]->setText(text(kButtonCaption[i]));
        jcbutton[i]->setToolTip(text(kButtonToolTip[i]));
    }
    fitCaptionedRows();
    refillPickers();
}

// Captions differ in length between languages: labels and check boxes take the room their text
// needs, the pickers and the address box share what is left of the row.
void FormMian::Private::fitCaptionedRows()
{
    constexpr int gap = 4;
    constexpr int minComboWidth = 100;
    const auto needed = [](const QWidget* w) { return w->sizeHint().width(); };
    const QRect band = fromLabel->geometry();
    const int captions = needed(fromLabel) + needed(intoLabel) + needed(Check1) + needed(Check2);
    const int comboWidth = std::max(minComboWidth, (kBoxWidth - captions - 5 * gap) / 2);
    const std::array<QWidget*, 6> row{fromLabel, Combo2, intoLabel, Combo1, Check1, Check2};
    int x = 0;
    for (QWidget* w : row) {
        const int span = (w == Combo1 || w == Combo2) ? comboWidth : needed(w);
        w->setGeometry(x, band.top(), std::min(span, kBoxWidth - x), band.height());
        x += span + gap;
    }

    const QRect label = addressLabel->geometry();
    const int labelWidth = std::min(needed(addressLabel), kBoxWidth / 3);
    addressLabel->setGeometry(label.left(), label.top(), labelWidth, label.height());
    const int boxLeft = label.left() + labelWidth + gap;
    ucComText->setGeometry(boxLeft, label.top(), jcbutton1->geometry().left() - gap - boxLeft,
                           label.height());
}

void FormMian::Private::refillPickers()
{
    // The first filling starts from the default rows; later ones keep the chosen rows.
    static const ParsedOptions defaults = parseOptions(kDefaultOptions);
    const int targetRow = Combo1->count() > 0 ? Combo1->currentIndex() : defaults.fields.at(OptTargetRow);
    const int sourceRow = Combo2->count() > 0 ? Combo2->currentIndex() : defaults.fields.at(OptSourceRow);
    const int number = language.toInt();
    {
        const QSignalBlocker blockTarget(Combo1);
        const QSignalBlocker blockSource(Combo2);
        Combo1->clear();
        Combo1->addItems(targetPickerNames(number));
        Combo2->clear();
        Combo2->addItems(sourcePickerNames(number));
        if (targetRow >= 0)
            Combo1->setCurrentIndex(targetRow);
        if (sourceRow >= 0)
            Combo2->setCurrentIndex(sourceRow);
    }
    Combo2_Click();
    Combo1_Click();
}

// The stored "Options", in the order 0, 1, 2, 3, 4, 6, 5. A short or garbled string stops at its
// first unreadable field; what came before stays applied.
void FormMian::Private::applyOptions()
{
    const QString stored = deps.settings->optionsText();
    const ParsedOptions options = parseOptions(stored);
    const auto field = [&options](OptionField f) { return options.fields.at(f); };

    if (!options.has(OptSourceRow))
        return;
    setCombo2Row(field(OptSourceRow));
    if (!options.has(OptTargetRow))
        return;
    setCombo1Row(field(OptTargetRow));
    if (!options.has(OptShowPhonetic))
        return;
    {
        const QSignalBlocker block(Check1);
        Check1->setChecked(field(OptShowPhonetic) != 0);
    }
    Check_Click();
    if (!options.has(OptShowDictionary))
        return;
    {
        const QSignalBlocker block(Check2);
        Check2->setChecked(field(OptShowDictionary) != 0);
    }
    Check_Click();
    if (!options.has(OptInterfaceLanguageRow))
        return;
    InterfaceCode = LanguageCode(field(OptInterfaceLanguageRow));
    // Field 6 goes before field 5, so a bad field 5 leaves the cache applied.
    const std::optional<int> caching = optionField(stored, OptCaching);
    if (!caching)
        return;
    // Caching once on stays on for the rest of the run.
    if (*caching != 0)
        CachingEnabled = true;
    const std::optional<int> monitoring = optionField(stored, OptMonitorClipboard);
    if (!monitoring)
        return;
    // A restart takes the clipboard's current text again, also when monitoring already ran.
    clipboard->setMonitoring(false);
    clipboard->setMonitoring(*monitoring != 0);
}

void FormMian::Private::registerHotKey()
{
    if (!deps.registerHotKey)
        return;
    hotKey = GlobalHotKey::create();
    QObject::connect(hotKey.get(), &GlobalHotKey::activated, q, &FormMian::toggleShowHide);
    QObject::connect(
        hotKey.get(), &GlobalHotKey::keyTaken, q, [this] { q->setStatusMessage(text(MsgHotKeyTaken)); },
        Qt::SingleShotConnection);
    QObject::connect(hotKey.get(), &GlobalHotKey::unavailable, q, [](const QString& reason) {
        qInfo("Global key F11 unavailable: %s", qPrintable(reason));
    });
    hotKey->registerKey();
}

// ---------------------------------------------------------------------------------------------
// Pickers and panes

// A row the picker does not have is not set; the change handler still runs on the current row.
void FormMian::Private::setCombo1Row(int row)
{
    if (row >= 0 && row < Combo1->count()) {
        const QSignalBlocker block(Combo1);
        Combo1->setCurrentIndex(row);
    }
    Combo1_Click();
}

void FormMian::Private::setCombo2Row(int row)
{
    if (row >= 0 && row < Combo2->count()) {
        const QSignalBlocker block(Combo2);
        Combo2->setCurrentIndex(row);
    }
    Combo2_Click();
}

void FormMian::Private::Combo2_Click()
{
    const int row = Combo2->currentIndex();
    if (row < 0)
        return;
    const SourceRowEffect effect = sourceRowEffect(row);
    SourceCode = effect.sourceCode;
    if (effect.rightToLeft)
        setRightToLeft(sourceBox);
    else
        copyLayout(sourceBox, dictionaryBox);
    jcbutton[1]->setEnabled(effect.swapEnabled);
}

void FormMian::Private::Combo1_Click()
{
    const int row = Combo1->currentIndex();
    if (row < 0)
        return;
    const TargetRowEffect effect = targetRowEffect(row);
    TargetCode = effect.targetCode;
    for (QPlainTextEdit* box : {resultBox, phoneticBox}) {
        if (effect.rightToLeft)
            setRightToLeft(box);
        else
            copyLayout(box, dictionaryBox);
    }
}

void FormMian::Private::Check_Click()
{
    const bool phonetic = Check1->isChecked();
    const bool dictionary = Check2->isChecked();
    if (phonetic && dictionary) {
        phoneticBox->setGeometry(kPhoneticRect);
        dictionaryBox->setGeometry(kDictionaryRect);
    } else if (phonetic || dictionary) {
        resultBox->setGeometry(kResultRect);
        (phonetic ? phoneticBox : dictionaryBox)->setGeometry(kLowerPaneWideRect);
    } else {
        resultBox->setGeometry(kResultTallRect);
    }
    phoneticBox->setVisible(phonetic);
    dictionaryBox->setVisible(dictionary);
}

// ---------------------------------------------------------------------------------------------
// The window

FormMian::FormMian(const FormMianDeps& deps, QWidget* parent)
    : QMainWindow(parent), d(std::make_unique<Private>(this, deps))
{
    Q_ASSERT(deps.settings);
    d->Form_Load();
}

FormMian::~FormMian()
{
    if (d->Translating)
        d->router->cancel();
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
QPlainTextEdit* FormMian::responseBox() const
{
    return d->responseBox;
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
    return d->Translating;
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
    if (d->Translating)
        d->router->cancel();
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
    if (event->key() == Qt::Key_Escape && d->Translating) {
        d->router->cancel();
        return;
    }
    QMainWindow::keyPressEvent(event);
}

} // namespace quillora
