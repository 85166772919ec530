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
#include "translate/WebPageAddress.h"
#include "ui/InputHold.h"

#include <QAudioOutput>
#include <QComboBox>
#include <QFile>
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
    if (d->Translating)
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
    if (!Translating)
        insertBoxText(sourceBox, text);
}

void FormMian::translateCopiedText(const QString& text)
{
    if (d->Translating) {
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
    if (d->offlineCovers()) {
        d->fanYi(d->autoCopy, EngineChoice::Offline);
        return;
    }
    d->notice(102, QMessageBox::Information, QMessageBox::Ok | QMessageBox::Cancel, false);
}

void FormMian::Private::runWaitingCommand()
{
    if (waitingCommand.command == Command::None)
        return;
    QMetaObject::invokeMethod(
        q, [this, choice = std::exchange(waitingCommand, CommandChoice())] { q->runCommand(choice); },
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
    if (offlineCovers()) {
        fanYi(autoCopy, EngineChoice::Offline);
        return;
    }
    notice(102, QMessageBox::Warning, QMessageBox::Ok, true);
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
    const HistorySlot& slot = ring.GoBack();
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
    const QString address = webPageTranslationAddress(addresses().service, InterfaceCode, SourceCode,
                                                      TargetCode, typed.trimmed());
    deps.openAddress(address);
    ucComText->addItem(typed);
    if (ucComText->count() > kMaxRememberedAddresses)
        ucComText->removeItem(0);
    ucComText->setEditText(typed);
}

bool FormMian::Private::offlineCovers()
{
    return router->offline().pairFor({boxText(sourceBox), SourceCode, TargetCode, InterfaceCode}).has_value();
}

void FormMian::Private::fanYi(bool autoCopyFlag, EngineChoice choice)
{
    if (trimBlanks(boxText(sourceBox)).isEmpty()) {
        for (QPlainTextEdit* box : {resultBox, phoneticBox, dictionaryBox})
            box->clear();
        return;
    }
    Translating = true;
    const QString source = boxText(sourceBox);
    q->setStatusMessage(text(MsgTranslating));

    RoutedOutcome routed;
    {
        // The window keeps painting while the request runs; its input waits, Escape cancels.
        const InputHold hold(q, [this] { router->cancel(); });
        routed = router->translate({source, SourceCode, TargetCode, InterfaceCode}, choice);
    }
    const TranslationOutcome& outcome = routed.outcome;

    response = outcome.response;
    if (outcome.ok()) {
        setBoxText(resultBox, outcome.result.translation);
        setBoxText(phoneticBox, outcome.result.romanization);
        setBoxText(dictionaryBox, outcome.result.dictionary);
        if (routed.offlinePair)
            q->setStatusMessage(text(MsgOffline).arg(routed.offlinePair->mode));
        else
            q->statusBar()->clearMessage();
    } else {
        for (QPlainTextEdit* box : {resultBox, phoneticBox, dictionaryBox})
            box->clear();
        q->setStatusMessage(failureStatus(outcome, routed.offlinePair.has_value()));
    }

    QString sentText = source;
    sentText.replace(QLatin1Char('&'), QLatin1String("%26"));
    prepareSpeech(sentText, outcome.ok() ? outcome.result.translation : QString());
    if (CachingEnabled)
        storeHistory();

    Translating = false;
    if (autoCopyFlag)
        q->jcbuttonClick(3);
    Q_EMIT q->translationFinished();
    runWaitingCommand();
    takeWaitingCopiedText();
}

void FormMian::Private::prepareSpeech(const QString& sentText, const QString& spokenTranslation)
{
    const QString base = addresses().service;
    const QString source = boxText(sourceBox);
    if (sentText.size() > kSpeechTextLimit) {
        SourceSpeechOk = false;
        QFile::remove(speechPagePath(tempFolder, 1));
    } else {
        SourceSpeechOk = BuildSpeechPage(sentText, SourceCode, 1, tempFolder, base);
    }
    showSpeaker(1, SourceSpeechOk, {source, SourceCode});

    if (spokenTranslation.size() > kSpeechTextLimit) {
        TranslationSpeechOk = false;
        QFile::remove(speechPagePath(tempFolder, 0));
    } else {
        TranslationSpeechOk = BuildSpeechPage(spokenTranslation, TargetCode, 0, tempFolder, base);
    }
    showSpeaker(0, TranslationSpeechOk, {spokenTranslation, TargetCode});
}

// The boxes are read back, so the source is stored untrimmed and unescaped.
void FormMian::Private::storeHistory()
{
    HistorySlot slot;
    slot.source = boxText(sourceBox);
    slot.translation = boxText(resultBox);
    slot.romanization = boxText(phoneticBox);
    slot.dictionary = boxText(dictionaryBox);
    slot.targetRow = Combo1->currentIndex();
    slot.sourceRow = Combo2->currentIndex();
    ring.store(slot, TranslationSpeechOk ? speechPagePath(tempFolder, 0) : QString(),
               SourceSpeechOk ? speechPagePath(tempFolder, 1) : QString());
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
