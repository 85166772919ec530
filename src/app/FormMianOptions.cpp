// The pickers, the stored options and the global key as the window applies them.
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
    session->setInterfaceRow(field(OptInterfaceLanguageRow));
    // Field 6 goes before field 5, so a bad field 5 leaves the cache applied.
    const std::optional<int> caching = optionField(stored, OptCaching);
    if (!caching)
        return;
    // Caching once on stays on for the rest of the run.
    if (*caching != 0)
        session->enableCaching();
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
    // A key held by another program has its own text, shown before the reason arrives.
    auto taken = std::make_shared<bool>(false);
    QObject::connect(hotKey.get(), &GlobalHotKey::keyTaken, q, [this, taken] {
        *taken = true;
        q->setStatusMessage(text(MsgHotKeyTaken));
    });
    QObject::connect(hotKey.get(), &GlobalHotKey::unavailable, q, [this, taken](const QString& reason) {
        qWarning("Global key F11 unavailable: %s", qPrintable(reason));
        if (!*taken)
            q->setStatusMessage(text(MsgHotKeyOff));
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
    session->setSourceRow(row);
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
    session->setTargetRow(row);
    for (QPlainTextEdit* box : {resultBox, phoneticBox}) {
        if (effect.rightToLeft)
            setRightToLeft(box);
        else
            copyLayout(box, dictionaryBox);
    }
}

} // namespace quillora
