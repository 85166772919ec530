#include "app/TranslatorPane.h"

#include "app/StringTable.h"
#include "app/UniTextBox.h"
#include "desktop/ButtonRow.h"
#include "desktop/LanguagePickers.h"
#include "desktop/ModmonClip.h"
#include "desktop/SpeakerButtons.h"
#include "desktop/TextPanes.h"
#include "desktop/VisualStyle.h"
#include "net/Connectivity.h"
#include "translate/TranslationSession.h"
#include "ui/LayoutScale.h"
#include "ui/RowFit.h"

#include <QPlainTextEdit>
#include <QShortcut>

namespace quillora
{

namespace
{

constexpr int kBoxWidth = 710;
constexpr int kSpeakerSize = 18;

QString failureStatusText(const TranslationOutcome& outcome, bool offline, int language)
{
    const QString message = StringTable::text(language, failureStatusOffset(outcome, offline));
    switch (outcome.failure) {
    case TranslationFailure::Refused:
    case TranslationFailure::HumanCheck:
        if (!outcome.retryAt.isValid())
            return message;
        return message.arg(localTimeText(outcome.retryAt, QDateTime::currentDateTime()));
    case TranslationFailure::TooLong:
        return message.arg(kMaxTextBytes / 1024);
    default:
        return message;
    }
}

} // namespace

TranslatorPane::TranslatorPane(QWidget* parent, TranslationSession* session, ConnectivityProbe* connectivity,
                               ClipboardMonitor* clipboard, const ServiceAddresses& addresses, Notice notice)
    : QWidget(parent), m_session(session), m_connectivity(connectivity), m_clipboard(clipboard),
      m_notice(std::move(notice))
{
    setObjectName(QStringLiteral("Pic1"));
    setAutoFillBackground(true);
    const LayoutScale scale = LayoutScale::of(this);
    resize(scale(kBoxWidth + 3 + kSpeakerSize), scale(188 + 239));
    m_panes = new TextPanes(this, [this] { jcbuttonClick(ButtonRow::Paste); });
    m_pickers = new LanguagePickers(this);
    m_buttons = new ButtonRow(this);
    m_speakers = new SpeakerButtons(this, addresses.service);
    connect(m_pickers, &LanguagePickers::sourceChosen, this, [this](int row, const SourceRowEffect& effect) {
        m_session->setSourceRow(row);
        m_panes->setSourceRightToLeft(effect.rightToLeft);
        m_buttons->setSwapEnabled(effect.swapEnabled);
    });
    connect(m_pickers, &LanguagePickers::targetChosen, this, [this](int row, const TargetRowEffect& effect) {
        m_session->setTargetRow(row);
        m_panes->setTargetRightToLeft(effect.rightToLeft);
    });
    connect(m_buttons, &ButtonRow::clicked, this, &TranslatorPane::jcbuttonClick);
    // Ctrl+Enter in the source box, the main or the keypad one, presses Translate.
    for (const QKeyCombination keys : {Qt::CTRL | Qt::Key_Return, Qt::CTRL | Qt::Key_Enter}) {
        auto* shortcut = new QShortcut(QKeySequence(keys), m_panes->source());
        shortcut->setContext(Qt::WidgetShortcut);
        connect(shortcut, &QShortcut::activated, m_buttons,
                [this] { m_buttons->press(ButtonRow::Translate); });
    }
    connect(m_speakers, &SpeakerButtons::speechFailed, this,
            [this] { Q_EMIT status(StringTable::text(m_language, MsgSpeechFailed)); });
    connect(m_session, &TranslationSession::finished, this, &TranslatorPane::translationDone);
    connect(m_session, &TranslationSession::wentBack, this, &TranslatorPane::showSlot);
}

// Labels and check boxes take the room their text needs, the pickers share what is left of the row.
void TranslatorPane::applyCaptions(int language)
{
    m_language = language;
    m_panes->applyCaptions(language);
    m_buttons->applyCaptions(language);
    m_pickers->applyCaptions(language);
    m_speakers->applyCaptions(language);
    constexpr int minPickerWidth = 100;
    const LayoutScale scale = LayoutScale::of(this);
    fitRow(m_pickers->rowWidgets() + m_panes->checkBoxes(), m_pickers->pickers(), 0, scale(kBoxWidth),
           scale(minPickerWidth));
}

void TranslatorPane::applyStyle(int style)
{
    applyVisualStyle(style, this, m_panes->checkBoxes(), m_buttons->buttons());
}

bool TranslatorPane::applyOptions(const Options& options)
{
    return applied(options.sourceRow, [this](int row) { m_pickers->setSourceRow(row); }) &&
           applied(options.targetRow, [this](int row) { m_pickers->setTargetRow(row); }) &&
           applied(options.showPhonetic, [this](bool on) { m_panes->setPhoneticShown(on); }) &&
           applied(options.showDictionary, [this](bool on) { m_panes->setDictionaryShown(on); }) &&
           applied(options.interfaceLanguageRow, [this](int row) { m_session->setInterfaceRow(row); }) &&
           applied(options.caching, [this](bool on) {
               if (on)
                   m_session->enableCaching();
           });
}

void TranslatorPane::applyFont(const FontSetting& font)
{
    m_panes->applyFont(font);
}

void TranslatorPane::insertPasted(const QString& text)
{
    insertBoxText(m_panes->source(), text);
}

void TranslatorPane::jcbuttonClick(int index)
{
    if (m_session->Translating() || index < 0 || index >= ButtonRow::Count)
        return;
    const std::array<std::function<void()>, ButtonRow::Count> actions{
        [this] {
            m_runForCopy = false;
            translate();
        },
        [this] { swap(); }, [this] { m_session->goBack(); }, [this] { copyResult(); },
        // Read without waiting for the other program; the text lands through insertPasted().
        [this] { m_clipboard->requestPaste(); }, [this] { clearBoxes(); }};
    actions[index]();
}

void TranslatorPane::translateCopiedText(const QString& text)
{
    if (m_session->Translating()) {
        m_copiedText = text; // only the newest copy counts
        return;
    }
    setBoxText(m_panes->source(), text);
    m_runForCopy = true;
    translate();
}

// Without a connection an installed offline pair may still cover the text; the session says.
void TranslatorPane::translate()
{
    const bool online = m_connectivity->isOnline();
    // Offline, a blank text has no pair to cover it either: the connection's notice, as ever.
    if (!online && trimBlanks(boxText(m_panes->source())).isEmpty())
        notConnected();
    else
        fanYi(online ? EngineChoice::Auto : EngineChoice::Offline);
}

// A copied text's notice has no owner and offers Cancel, the Translate button's is the window's.
void TranslatorPane::notConnected()
{
    if (m_runForCopy)
        m_notice(MsgNotConnected, QMessageBox::Information, QMessageBox::Ok | QMessageBox::Cancel, false);
    else
        m_notice(MsgNotConnected, QMessageBox::Warning, QMessageBox::Ok, true);
}

void TranslatorPane::fanYi(EngineChoice choice)
{
    const QString source = boxText(m_panes->source());
    if (trimBlanks(source).isEmpty()) {
        m_panes->clearResults();
        return;
    }
    Q_EMIT status(StringTable::text(m_language, MsgTranslating));
    m_session->translate(source, choice);
}

void TranslatorPane::translationDone(const SessionResult& result)
{
    const TranslationOutcome& outcome = result.outcome;
    if (result.uncovered) {
        Q_EMIT status({});
        notConnected();
    } else {
        if (outcome.ok()) {
            m_panes->showResults(outcome.result.translation, outcome.result.romanization,
                                 outcome.result.dictionary);
            if (result.offlinePair)
                Q_EMIT status(StringTable::text(m_language, MsgOffline).arg(result.offlinePair->mode));
            else
                Q_EMIT status({});
        } else {
            m_panes->clearResults();
            Q_EMIT status(failureStatusText(outcome, result.offlinePair.has_value(), m_language));
        }
        m_speakers->showSpeaker(0, result.TranslationSpeechOk,
                                {outcome.result.translation, result.targetCode});
        m_speakers->showSpeaker(1, result.SourceSpeechOk, {result.source, result.sourceCode});
        if (m_autoCopy)
            copyResult();
    }
    Q_EMIT translationFinished();
}

void TranslatorPane::takeWaitingCopy()
{
    if (m_copiedText && !m_session->Translating())
        translateCopiedText(*std::exchange(m_copiedText, std::nullopt));
}

void TranslatorPane::showSlot(const HistorySlot& slot)
{
    setBoxText(m_panes->source(), slot.source);
    m_panes->showResults(slot.translation, slot.romanization, slot.dictionary);
    m_pickers->setTargetRow(slot.targetRow);
    m_pickers->setSourceRow(slot.sourceRow);
    m_speakers->showSpeaker(0, slot.translationSpeech, {slot.translation, LanguageCode(slot.targetRow)});
    m_speakers->showSpeaker(1, slot.sourceSpeech,
                            {slot.source, LanguageCode(slot.sourceRow - kSourcePickerOffset)});
}

void TranslatorPane::swap()
{
    if (!m_buttons->swapEnabled())
        return;
    const int target = m_pickers->targetRow();
    const int source = m_pickers->sourceRow();
    m_pickers->setTargetRow(source - kSourcePickerOffset);
    m_pickers->setSourceRow(target + kSourcePickerOffset);
    jcbuttonClick(ButtonRow::Translate);
}

// Only the emptiness test trims: the clipboard gets the box text as it stands.
void TranslatorPane::copyResult()
{
    QPlainTextEdit* result = m_panes->result();
    if (trimBlanks(boxText(result)).isEmpty())
        return;
    m_clipboard->markOwnCopy();
    result->selectAll();
    result->copy();
}

// The history ring is left as it is.
void TranslatorPane::clearBoxes()
{
    m_panes->source()->clear();
    m_panes->clearResults();
    m_speakers->showSpeaker(0, false, {});
    m_speakers->showSpeaker(1, false, {});
}

} // namespace quillora
