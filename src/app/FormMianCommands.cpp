// The command dispatch of the main window's menus and the commands behind it.
#include "app/FormMian.h"
#include "app/FormMianPrivate.h"
#include "app/StringTable.h"
#include "app/UniTextBox.h"
#include "desktop/AutoStart.h"
#include "desktop/CommandMenus.h"
#include "desktop/Form2.h"
#include "desktop/ModFont.h"
#include "desktop/ModUniTxt.h"
#include "desktop/ResultsFile.h"
#include "desktop/VisualStyle.h"
#include "net/FormAbout.h"
#include "net/SitesMenu.h"
#include "translate/ServiceAddresses.h"
#include "translate/TranslationEngine.h"

#include <QAction>
#include <QComboBox>
#include <QPlainTextEdit>
#include <QUrl>

namespace quillora
{

void FormMian::dispatch(const QString& key)
{
    runCommand(commandForKey(key));
}

void FormMian::runCommand(const CommandChoice& choice)
{
    // While a translation runs only the way out and the show/hide toggle go at once; any other
    // command runs when the translation ends.
    if (d->Translating && choice.command != Command::ShowHide && choice.command != Command::Exit) {
        d->waitingCommand = choice;
        return;
    }

    switch (choice.command) {
    case Command::None:
        break;
    case Command::Style:
        d->deps.settings->setStyle(choice.argument);
        d->style = choice.argument;
        d->applyStyle();
        break;
    case Command::Font:
        d->chooseFont();
        break;
    case Command::AutoCopy:
        d->autoCopy = action(choice.key)->isChecked();
        d->deps.settings->setAutoCopy(d->autoCopy);
        break;
    case Command::AutoRun:
        SetAutoRun(action(choice.key)->isChecked(), d->deps.programPath);
        break;
    case Command::Language:
        d->setLanguage(choice.argument);
        break;
    case Command::Options:
        d->showOptionsDialog();
        break;
    case Command::About:
        d->showAbout();
        break;
    case Command::OnlineHelp:
        d->openUrl(d->addresses().onlineHelp());
        break;
    case Command::Home:
        d->openUrl(d->addresses().productHome());
        break;
    case Command::GoogleHome:
        d->openUrl(d->addresses().serviceHome(d->InterfaceCode));
        break;
    case Command::WebHome:
        d->openUrl(d->addresses().outsideTranslator());
        break;
    case Command::Exit:
        requestExit();
        break;
    case Command::Open:
        d->openTextFile();
        break;
    case Command::SaveResults:
        d->saveResults();
        break;
    case Command::ShowHide:
        toggleShowHide();
        break;
    case Command::Translate:
        jcbuttonClick(0);
        break;
    case Command::SitesHome:
    case Command::Site:
        d->sites->open(choice.key);
        break;
    }
}

// Languages without a string table change nothing.
void FormMian::Private::setLanguage(int number)
{
    if (number < 1)
        return;
    language = QString::number(number);
    deps.settings->setLanguage(language);
    applyCaptions();
    menus->checkLanguageItem(number);
    Q_EMIT q->interfaceLanguageChanged();
}

void FormMian::Private::showOptionsDialog()
{
    Form2 dialog(deps.settings, language.toInt(), q);
    if (runDialog(&dialog) == QDialog::Accepted)
        applyOptions();
}

void FormMian::Private::showAbout()
{
    FormAbout dialog(language.toInt(), q);
    runDialog(&dialog);
}

// The chosen font is stored now and reaches the boxes at the next start.
void FormMian::Private::chooseFont()
{
    font = ChooseFontFor(font, q);
    deps.settings->setFontText(formatFont(font));
}

void FormMian::Private::openTextFile()
{
    FileDialogRequest request;
    request.mode = FileDialogRequest::Open;
    request.title = text(3);
    request.nameFilters = {QStringLiteral("Text (*.TXT *.ini *.inf *.log)"), QStringLiteral("All (*.*)")};
    const QString fileName = deps.chooseFile(q, request);
    if (fileName.isEmpty())
        return;
    const QString content = ReadTextFile(fileName);
    if (trimBlanks(content).isEmpty())
        return;
    setBoxText(sourceBox, content);
    q->jcbuttonClick(0);
}

void FormMian::Private::saveResults()
{
    FileDialogRequest request;
    request.mode = FileDialogRequest::Save;
    request.title = text(4);
    request.nameFilters = {QStringLiteral("Save as text file (*.TXT)")};
    request.defaultSuffix = QStringLiteral("txt");
    const QString fileName = deps.chooseFile(q, request);
    if (fileName.isEmpty())
        return;
    const ResultTexts texts{boxText(sourceBox), boxText(resultBox), boxText(phoneticBox),
                            boxText(dictionaryBox)};
    const WriteOutcome saved = saveResultsFile(fileName, texts);
    if (saved) {
        openUrl(QUrl::fromLocalFile(fileName));
        return;
    }
    NoticeRequest failed;
    failed.title = text(100);
    failed.text = text(MsgWithReason).arg(text(101), saved.reason);
    failed.buttons = QMessageBox::Ok | QMessageBox::Cancel;
    failed.owned = false;
    deps.notice(q, failed);
}

} // namespace quillora
