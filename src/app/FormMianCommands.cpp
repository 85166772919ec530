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

namespace
{

bool isLanguageMenuKey(const QString& key)
{
    static const QString prefix = QStringLiteral("menuS2");
    return key.size() == prefix.size() + 2 && key.startsWith(prefix);
}

} // namespace

void FormMian::dispatch(const QString& key)
{
    // While a translation runs only the way out and the show/hide toggle go at once; any other
    // command runs when the translation ends.
    if (d->session->Translating() && key != QLatin1String("menuSYS1") && key != QLatin1String("menuSYS3") &&
        key != QLatin1String("menuF3")) {
        d->waitingCommand = key;
        return;
    }

    if (key.startsWith(QLatin1String("STYLE:"))) {
        bool ok = false;
        const int style = key.mid(6).toInt(&ok);
        if (!ok)
            return;
        d->deps.settings->setStyle(style);
        d->style = style;
        d->applyStyle();
    } else if (key == QLatin1String("menuS4")) {
        d->chooseFont();
    } else if (key == QLatin1String("menuS5")) {
        d->autoCopy = action(key)->isChecked();
        d->deps.settings->setAutoCopy(d->autoCopy);
    } else if (key == QLatin1String("menuS0")) {
        SetAutoRun(action(key)->isChecked(), d->deps.programPath);
    } else if (isLanguageMenuKey(key)) {
        d->setLanguage(interfaceLanguageForMenuKey(key));
    } else if (key == QLatin1String("menuSYS2") || key == QLatin1String("menuS1")) {
        d->showOptionsDialog();
    } else if (key == QLatin1String("menuH3")) {
        d->showAbout();
    } else if (key == QLatin1String("menuH1")) {
        d->openUrl(d->addresses().onlineHelp());
    } else if (key == QLatin1String("menuH2")) {
        d->openUrl(d->addresses().productHome());
    } else if (key == QLatin1String("menuH4")) {
        d->openUrl(d->addresses().serviceHome(d->session->InterfaceCode()));
    } else if (key == QLatin1String("menuH5")) {
        d->openUrl(d->addresses().outsideTranslator());
    } else if (key == QLatin1String("menuSYS3") || key == QLatin1String("menuF3")) {
        requestExit();
    } else if (key == QLatin1String("menuF1")) {
        d->openTextFile();
    } else if (key == QLatin1String("menuF2")) {
        d->saveResults();
    } else if (key == QLatin1String("menuSYS1")) {
        toggleShowHide();
    } else if (key == QLatin1String("menuF0")) {
        jcbuttonClick(0);
    } else if (key.startsWith(QLatin1String("menuSite"))) {
        d->sites->open(key);
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
