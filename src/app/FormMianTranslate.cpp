// The main window's buttons, the translation itself, its history and the speaker buttons.
#include "app/FormMian.h"
#include "app/FormMianPrivate.h"
#include "app/StringTable.h"
#include "app/UniTextBox.h"
#include "desktop/ModmonClip.h"
#include "net/Connectivity.h"
#include "translate/LanguageCatalogue.h"
#include "translate/ServiceAddresses.h"
#include "translate/SpeechPage.h"
#include "translate/TranslationEngine.h"
#include "translate/TranslationSession.h"
#include "translate/WebPageAddress.h"
#include "ui/InputHold.h"

#include <QAudioOutput>
#include <QComboBox>
#include <QMediaFormat>
#include <QMediaPlayer>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QToolButton>
#include <QUrl>

namespace quillora
{

namespace
{

constexpr int kMaxRememberedAddresses = 10;

} // namespace

QString FormMian::Private::failureStatus(const TranslationOutcome& outcome, bool offline) const
{
    const QString message = text(failureStatusOffset(outcome, offline));
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

void FormMian::jcbuttonClick(int index)
{
    if (d->session->Translating())
        return;
    switch (index) {
    case 0:
        d->translate();
        break;
    case 1:
        d->swap();
        break;
    case 2:
        d->GoBack();
        break;
    case 3:
        d->copyResult();
        break;
    case 4:
        // Read without waiting for the other program; the text lands through pasteClipboardText().
        d->clipboard->requestPaste();
        break;
    case 5:
        d->clearBoxes();
        break;
    default:
        break;
    }
}

// The clipboard text replaces the selection at the caret; no translation follows by itself.
void FormMian::Private::pasteClipboardText(const QString& text)
{
    if (!session->Translating())
        sourceBox->insertPlainText(text);
}

void FormMian::translateCopiedText(const QString& text)
{
    if (d->session->Translating()) {
        // Only the newest copy counts; it is translated once the running request ends.
        d->copiedText = text;
        d->copiedTextWaiting = true;
        return;
    }
    setBoxText(d->sourceBox, text);
    if (d->connectivity->isOnline()) {
        d->fanYi(d->autoCopy);
        return;
    }
    // Where no installed pair covers the text the session says so, and the notice follows.
    d->uncoveredFromCopy = true;
    d->fanYi(d->autoCopy, EngineChoice::Offline);
}

void FormMian::Private::runWaitingCommand()
{
    if (waitingCommand.isEmpty())
        return;
    QMetaObject::invokeMethod(
        q, [this, key = std::exchange(waitingCommand, QString())] { q->dispatch(key); },
        Qt::QueuedConnection);
}

void FormMian::Private::takeWaitingCopiedText()
{
    if (!copiedTextWaiting)
        return;
    copiedTextWaiting = false;
    QMetaObject::invokeMethod(
        q, [this, text = std::exchange(copiedText, QString())] { q->translateCopiedText(text); },
        Qt::QueuedConnection);
}

void FormMian::Private::translate()
{
    if (connectivity->isOnline()) {
        fanYi(autoCopy);
        return;
    }
    uncoveredFromCopy = false;
    fanYi(autoCopy, EngineChoice::Offline);
}

void FormMian::Private::swap()
{
    if (!jcbutton[1]->isEnabled())
        return;
    const int target = Combo1->currentIndex();
    const int source = Combo2->currentIndex();
    setCombo1Row(source - kSourcePickerOffset);
    setCombo2Row(target + kSourcePickerOffset);
    q->jcbuttonClick(0);
}

void FormMian::Private::GoBack()
{
    session->goBack();
}

void FormMian::Private::showHistorySlot(const HistorySlot& slot)
{
    setBoxText(sourceBox, slot.source);
    setBoxText(resultBox, slot.translation);
    setBoxText(phoneticBox, slot.romanization);
    setBoxText(dictionaryBox, slot.dictionary);
    setCombo1Row(slot.targetRow);
    setCombo2Row(slot.sourceRow);
    showSpeaker(0, slot.translationSpeech, {slot.translation, LanguageCode(slot.targetRow)});
    showSpeaker(1, slot.sourceSpeech, {slot.source, LanguageCode(slot.sourceRow - kSourcePickerOffset)});
}

// Only the emptiness test trims: the clipboard gets the box text as it stands.
void FormMian::Private::copyResult()
{
    if (trimBlanks(boxText(resultBox)).isEmpty())
        return;
    clipboard->markOwnCopy();
    resultBox->selectAll();
    resultBox->copy();
}

// The history ring is left as it is.
void FormMian::Private::clearBoxes()
{
    for (QPlainTextEdit* box : {sourceBox, resultBox, phoneticBox, dictionaryBox})
        box->clear();
    showSpeaker(0, false, {});
    showSpeaker(1, false, {});
}

void FormMian::Private::jcbutton1_Click()
{
    const QString typed = ucComText->currentText();
    const QString address =
        webPageTranslationAddress(addresses().service, session->InterfaceCode(), session->SourceCode(),
                                  session->TargetCode(), typed.trimmed());
    deps.openAddress(address);
    ucComText->addItem(typed);
    if (ucComText->count() > kMaxRememberedAddresses)
        ucComText->removeItem(0);
    ucComText->setEditText(typed);
}

void FormMian::Private::fanYi(bool autoCopyFlag, EngineChoice choice)
{
    if (trimBlanks(boxText(sourceBox)).isEmpty()) {
        for (QPlainTextEdit* box : {resultBox, phoneticBox, dictionaryBox})
            box->clear();
        return;
    }
    if (!session->translate(boxText(sourceBox), choice))
        return;
    autoCopyPending = autoCopyFlag;
    statusBefore = q->statusMessage();
    q->setStatusMessage(text(MsgTranslating));
    // The window keeps painting while the request runs; its input waits, Escape cancels.
    hold = std::make_unique<InputHold>(q, [this] { session->cancel(); });
}

void FormMian::Private::translated(const SessionResult& result)
{
    hold.reset();
    if (result.uncovered) {
        q->setStatusMessage(statusBefore);
        if (uncoveredFromCopy)
            notice(102, QMessageBox::Information, QMessageBox::Ok | QMessageBox::Cancel, false);
        else
            notice(102, QMessageBox::Warning, QMessageBox::Ok, true);
        runWaitingCommand();
        takeWaitingCopiedText();
        return;
    }
    const TranslationOutcome& outcome = result.outcome;
    response = outcome.response;
    if (outcome.ok()) {
        setBoxText(resultBox, outcome.result.translation);
        setBoxText(phoneticBox, outcome.result.romanization);
        setBoxText(dictionaryBox, outcome.result.dictionary);
        if (result.offlinePair)
            q->setStatusMessage(text(MsgOffline).arg(result.offlinePair->mode));
        else
            q->statusBar()->clearMessage();
    } else {
        for (QPlainTextEdit* box : {resultBox, phoneticBox, dictionaryBox})
            box->clear();
        q->setStatusMessage(failureStatus(outcome, result.offlinePair.has_value()));
    }
    showSpeaker(1, result.SourceSpeechOk, {result.source, result.sourceCode});
    showSpeaker(0, result.TranslationSpeechOk,
                {outcome.ok() ? outcome.result.translation : QString(), result.targetCode});

    if (autoCopyPending)
        q->jcbuttonClick(3);
    Q_EMIT q->translationFinished();
    runWaitingCommand();
    takeWaitingCopiedText();
}

void FormMian::Private::showSpeaker(int slot, bool shown, const SpokenText& text)
{
    spoken[slot] = text;
    speaker[slot]->setVisible(shown);
}

// The player is made on first use so that start-up does not wait for the audio system. Without
// any audio decoder (no media framework plugins) there is nothing to play with.
void FormMian::Private::playSpeech(int slot)
{
    if (!player) {
        if (QMediaFormat().supportedAudioCodecs(QMediaFormat::Decode).isEmpty()) {
            q->setStatusMessage(text(MsgSpeechFailed));
            return;
        }
        audioOutput = std::make_unique<QAudioOutput>();
        player = std::make_unique<QMediaPlayer>();
        player->setAudioOutput(audioOutput.get());
        QObject::connect(player.get(), &QMediaPlayer::errorOccurred, q,
                         [this] { q->setStatusMessage(text(MsgSpeechFailed)); });
    }
    player->stop();
    player->setSource(speechAudioUrl(addresses().service, spoken[slot].text, spoken[slot].code));
    player->play();
}

} // namespace quillora
