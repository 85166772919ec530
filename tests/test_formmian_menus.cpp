#include "FormMianRig.h"
#include "TestSupport.h"
#include "app/StringTable.h"
#include "desktop/AutoStart.h"
#include "desktop/Form2.h"
#include "desktop/ModUniTxt.h"
#include "desktop/ModmonClip.h"
#include "desktop/VisualStyle.h"
#include "net/FormAbout.h"
#include "translate/ServiceAddresses.h"

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

using namespace quillora;
using quillora::test::FormMianRig;

namespace
{

int clickButtonOf(QDialog* dialog, const QString& name)
{
    auto* button = dialog->findChild<QPushButton*>(name);
    if (!button)
        return -1;
    button->click();
    return dialog->result();
}

} // namespace

class TestFormMianMenus : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void englishMenuTree();
    void switchToSlovakKeepsTheRows();
    void languagesWithoutTableChangeNothing();
    void styleAutoCopyAndAutoRun();
    void panesFollowTheCheckBoxes();
    void pagesOpenInTheBrowser();
    void optionsDialogOkAndClose();
    void aboutDialog();
    void openTextFileTranslates();
    void saveResultsWritesTheBanner();
    void saveFailureShowsTheNotice();
};

void TestFormMianMenus::englishMenuTree()
{
    FormMianRig rig;
    FormMian& w = rig.window();
    const QList<QPair<QString, QString>> captions{
        {QStringLiteral("menuF"), QStringLiteral("&File")},
        {QStringLiteral("menuF0"), QStringLiteral("Translate")},
        {QStringLiteral("menuF1"), QStringLiteral("Open...")},
        {QStringLiteral("menuF2"), QStringLiteral("Save Results")},
        {QStringLiteral("menuF3"), QStringLiteral("Exit")},
        {QStringLiteral("menuS"), QStringLiteral("&Setting")},
        {QStringLiteral("menuS0"), QStringLiteral("Auto Run When Logon Windows")},
        {QStringLiteral("menuS4"), QStringLiteral("Setting Font...")},
        {QStringLiteral("menuS5"), QStringLiteral("Auto copy the translation")},
        {QStringLiteral("menuS209"), QStringLiteral("Polish")},
        {QStringLiteral("menuS213"), QStringLiteral("Slovak")},
        {QStringLiteral("STYLE:2"), QStringLiteral("Sky Blue")},
        {QStringLiteral("menuH4"), QStringLiteral("Google Translate Home ")},
        {QStringLiteral("menuSite10"), QStringLiteral("World Famous Website")},
        {QStringLiteral("menuSYS1"), QStringLiteral("Display/Hide Translate Tool (F11)")},
        {QStringLiteral("menuSYS3"), QStringLiteral("Exit")},
    };
    for (const auto& [key, caption] : captions) {
        QVERIFY2(w.action(key), qPrintable(key));
        QCOMPARE(w.action(key)->text(), caption);
    }
    QVERIFY(!w.action(QStringLiteral("menuH5"))->isVisible());
    QVERIFY(w.systemMenu());
    QStringList trayKeys;
    for (QAction* item : w.systemMenu()->actions())
        trayKeys << item->objectName();
    QCOMPARE(trayKeys, (QStringList{QStringLiteral("menuSYS1"), QStringLiteral("menuSYS2"),
                                    QStringLiteral("SYS:SEPARATOR"), QStringLiteral("menuSYS3")}));
}

void TestFormMianMenus::switchToSlovakKeepsTheRows()
{
    FormMianRig rig;
    FormMian& w = rig.window();
    QSignalSpy changed(&w, &FormMian::interfaceLanguageChanged);
    w.combo2()->setCurrentIndex(21);
    w.combo1()->setCurrentIndex(47);

    w.action(QStringLiteral("menuS213"))->trigger();
    QCOMPARE(changed.count(), 1);
    QCOMPARE(w.interfaceLanguage(), QStringLiteral("6"));
    QCOMPARE(rig.settings().language(), QStringLiteral("6"));
    QVERIFY(w.action(QStringLiteral("menuS213"))->isChecked());
    QVERIFY(!w.action(QStringLiteral("menuS201"))->isChecked());

    // Captions come from the Slovak table, and they differ from the English ones.
    QCOMPARE(w.action(QStringLiteral("menuF3"))->text(), StringTable::text(6005));
    QCOMPARE(w.action(QStringLiteral("menuS1"))->text(), StringTable::text(6008));
    QCOMPARE(w.windowTitle(), StringTable::text(6017));
    QCOMPARE(w.check1()->text(), StringTable::text(6023));
    QCOMPARE(w.check2()->text(), StringTable::text(6024));
    const QList<int> captionOffsets{25, 109, 26, 27, 28, 29};
    const QList<int> tipOffsets{2, 113, 110, 111, 112, 29};
    for (int i = 0; i < 6; ++i) {
        QCOMPARE(w.jcbutton(i)->text(), StringTable::text(6000 + captionOffsets.at(i)));
        QCOMPARE(w.jcbutton(i)->toolTip(), StringTable::text(6000 + tipOffsets.at(i)));
    }
    QVERIFY(w.action(QStringLiteral("menuF3"))->text() != QStringLiteral("Exit"));
    QVERIFY(w.jcbutton(2)->text() != QStringLiteral("Back"));

    // The pickers hold Slovak names and keep the chosen rows and their codes.
    QCOMPARE(w.combo2()->itemText(0), StringTable::text(6099));
    QCOMPARE(w.combo1()->itemText(47), StringTable::text(6085));
    QCOMPARE(w.combo2()->currentIndex(), 21);
    QCOMPARE(w.combo1()->currentIndex(), 47);
    QVERIFY(w.jcbutton(1)->isEnabled());

    // And back to English.
    w.dispatch(QStringLiteral("menuS201"));
    QCOMPARE(w.action(QStringLiteral("menuF3"))->text(), QStringLiteral("Exit"));
    QCOMPARE(w.combo1()->currentText(), QStringLiteral("Slovak"));
    QCOMPARE(rig.settings().language(), QStringLiteral("1"));
}

void TestFormMianMenus::languagesWithoutTableChangeNothing()
{
    FormMianRig rig({{QStringLiteral("Language"), QStringLiteral("7")}});
    FormMian& w = rig.window();
    const QString before = rig.settingsText();
    const QString caption = w.jcbutton(0)->text();
    QSignalSpy changed(&w, &FormMian::interfaceLanguageChanged);
    for (int n = 205; n <= 211; ++n) {
        const QString key = QStringLiteral("menuS%1").arg(n);
        w.action(key)->trigger();
        QVERIFY2(!w.action(key)->isChecked(), qPrintable(key));
    }
    QCOMPARE(changed.count(), 0);
    QCOMPARE(w.interfaceLanguage(), QStringLiteral("7"));
    QVERIFY(w.action(QStringLiteral("menuS214"))->isChecked());
    QCOMPARE(w.jcbutton(0)->text(), caption);
    QCOMPARE(rig.settingsText(), before);
}

void TestFormMianMenus::styleAutoCopyAndAutoRun()
{
    FormMianRig rig;
    FormMian& w = rig.window();
    auto* pic1 = w.findChild<QWidget*>(QStringLiteral("Pic1"));
    QVERIFY(pic1);
    QCOMPARE(pic1->palette().color(pic1->backgroundRole()), styleBackground(2));

    w.action(QStringLiteral("STYLE:1"))->trigger();
    QCOMPARE(rig.settings().style(), 1);
    QVERIFY(w.action(QStringLiteral("STYLE:1"))->isChecked());
    QVERIFY(!w.action(QStringLiteral("STYLE:2"))->isChecked());
    QCOMPARE(pic1->palette().color(pic1->backgroundRole()), QColor(173, 209, 255));

    w.action(QStringLiteral("menuS5"))->trigger();
    QVERIFY(rig.settings().autoCopy());
    w.action(QStringLiteral("menuS5"))->trigger();
    QVERIFY(!rig.settings().autoCopy());

    const QString program = QStringLiteral("/opt/quillora/bin/quillora");
    QVERIFY(!QFile::exists(autostartFilePath()));
    w.action(QStringLiteral("menuS0"))->trigger();
    QVERIFY(isAutoRunRegistered(program));
    {
        // The next start reads the entry back as a check mark.
        FormMianRig again;
        QVERIFY(again.window().action(QStringLiteral("menuS0"))->isChecked());
    }
    w.action(QStringLiteral("menuS0"))->trigger();
    QVERIFY(!QFile::exists(autostartFilePath()));
}

void TestFormMianMenus::panesFollowTheCheckBoxes()
{
    FormMianRig rig;
    FormMian& w = rig.window();
    w.check2()->setChecked(false);
    QCOMPARE(w.resultBox()->geometry(), QRect(0, 188, 710, 135));
    QCOMPARE(w.phoneticBox()->geometry(), QRect(0, 325, 710, 102));
    QVERIFY(w.dictionaryBox()->isHidden());

    w.check1()->setChecked(false);
    QCOMPARE(w.resultBox()->geometry(), QRect(0, 188, 710, 239));
    QVERIFY(w.phoneticBox()->isHidden());
    QVERIFY(w.dictionaryBox()->isHidden());

    w.check2()->setChecked(true);
    QCOMPARE(w.resultBox()->geometry(), QRect(0, 188, 710, 135));
    QCOMPARE(w.dictionaryBox()->geometry(), QRect(0, 325, 710, 102));
    QVERIFY(w.phoneticBox()->isHidden());
    QVERIFY(!w.dictionaryBox()->isHidden());

    // Both on: the panes share the row; the result box stays where it was.
    w.resultBox()->setGeometry(0, 188, 710, 239);
    w.check1()->setChecked(true);
    QCOMPARE(w.resultBox()->geometry(), QRect(0, 188, 710, 239));
    QCOMPARE(w.phoneticBox()->geometry(), QRect(0, 325, 400, 102));
    QCOMPARE(w.dictionaryBox()->geometry(), QRect(403, 325, 307, 102));
    QVERIFY(!w.phoneticBox()->isHidden());
    QVERIFY(!w.dictionaryBox()->isHidden());
}

void TestFormMianMenus::pagesOpenInTheBrowser()
{
    FormMianRig rig({{QStringLiteral("Options"), QStringLiteral("0|15|1|1|19|0|1")}});
    FormMian& w = rig.window();
    const ServiceAddresses addresses = ServiceAddresses::fromEnvironment();
    for (const QString& key : {QStringLiteral("menuH1"), QStringLiteral("menuH2"), QStringLiteral("menuH4"),
                               QStringLiteral("menuH5"), QStringLiteral("menuSite10")})
        w.dispatch(key);
    const QList<QUrl> expected{addresses.onlineHelp(), addresses.productHome(),
                               addresses.serviceHome(QStringLiteral("fr")), addresses.outsideTranslator(),
                               addresses.sitesPage()};
    QCOMPARE(rig.openedUrls, expected);
    QVERIFY(rig.openedUrls.at(2).toString().endsWith(QStringLiteral("?hl=fr")));
}

void TestFormMianMenus::optionsDialogOkAndClose()
{
    FormMianRig rig({{QStringLiteral("Options"), QStringLiteral("0|15|1|1|15|0|1")}});
    FormMian& w = rig.window();

    // Close stores nothing and changes nothing.
    const QString before = rig.settingsText();
    rig.dialogAnswer = [](QDialog* dialog) {
        auto* form = qobject_cast<Form2*>(dialog);
        if (!form)
            return -1;
        form->combo2()->setCurrentIndex(5);
        return clickButtonOf(dialog, QStringLiteral("Command2"));
    };
    w.dispatch(QStringLiteral("menuS1"));
    QCOMPARE(rig.dialogsRun.size(), 1);
    QCOMPARE(rig.settingsText(), before);
    QCOMPARE(w.combo2()->currentIndex(), 0);

    // OK from the tray menu's item stores the string and applies it at once.
    rig.dialogAnswer = [](QDialog* dialog) {
        auto* form = qobject_cast<Form2*>(dialog);
        if (!form)
            return -1;
        form->combo2()->setCurrentIndex(1);
        form->combo3()->setCurrentIndex(19);
        form->check(3)->setChecked(false);
        form->check(1)->setChecked(true);
        return clickButtonOf(dialog, QStringLiteral("Command1"));
    };
    w.dispatch(QStringLiteral("menuSYS2"));
    QCOMPARE(rig.dialogsRun.size(), 2);
    QCOMPARE(rig.settings().optionsText(), QStringLiteral("1|19|0|1|15|1|1"));
    QCOMPARE(w.combo2()->currentIndex(), 1);
    QCOMPARE(w.combo1()->currentIndex(), 19);
    QVERIFY(!w.jcbutton(1)->isEnabled());
    QVERIFY(w.phoneticBox()->isHidden());
    QCOMPARE(w.dictionaryBox()->geometry(), QRect(0, 325, 710, 102));
    QVERIFY(w.clipboardMonitor()->monitoring());
}

void TestFormMianMenus::aboutDialog()
{
    FormMianRig rig({{QStringLiteral("Language"), QStringLiteral("4")}});
    QString title;
    rig.dialogAnswer = [&title](QDialog* dialog) {
        auto* about = qobject_cast<FormAbout*>(dialog);
        if (!about)
            return -1;
        title = about->windowTitle();
        return int(QDialog::Accepted);
    };
    rig.window().dispatch(QStringLiteral("menuH3"));
    QCOMPARE(rig.dialogsRun.size(), 1);
    QCOMPARE(title, StringTable::text(4108));
}

void TestFormMianMenus::openTextFileTranslates()
{
    FormMianRig rig({{QStringLiteral("Options"), QStringLiteral("0|19|1|1|15|0|1")}}, true);
    FormMian& w = rig.window();

    // Cancel: nothing.
    w.dispatch(QStringLiteral("menuF1"));
    QCOMPARE(rig.fileRequests.size(), 1);
    const FileDialogRequest& request = rig.fileRequests.constFirst();
    QCOMPARE(request.mode, FileDialogRequest::Open);
    QCOMPARE(request.title, QStringLiteral("Open..."));
    QCOMPARE(request.nameFilters,
             (QStringList{QStringLiteral("Text (*.TXT *.ini *.inf *.log)"), QStringLiteral("All (*.*)")}));
    QVERIFY(rig.service().requests().isEmpty());

    // A file of blanks changes nothing.
    w.sourceBox()->setPlainText(QStringLiteral("kept"));
    rig.fileAnswer = rig.path(QStringLiteral("blank.txt"));
    QVERIFY(quillora::test::writeFile(rig.fileAnswer, QByteArrayLiteral("    ")));
    w.dispatch(QStringLiteral("menuF1"));
    QCOMPARE(w.sourceBox()->toPlainText(), QStringLiteral("kept"));
    QVERIFY(rig.service().requests().isEmpty());

    // A UTF-16 BE file with its mark goes into the source box and is translated.
    rig.fileAnswer = rig.path(QStringLiteral("hello.txt"));
    QByteArray bytes = QByteArrayLiteral("\xFE\xFF");
    for (QChar c : QStringLiteral("hello world"))
        bytes += char(c.unicode() >> 8), bytes += char(c.unicode() & 0xFF);
    QVERIFY(quillora::test::writeFile(rig.fileAnswer, bytes));
    w.dispatch(QStringLiteral("menuF1"));
    QCOMPARE(w.sourceBox()->toPlainText(), QStringLiteral("hello world"));
    QCOMPARE(w.resultBox()->toPlainText(), QStringLiteral("bonjour monde"));
    QCOMPARE(rig.service().count("POST", QStringLiteral("/")), 1);
}

void TestFormMianMenus::saveResultsWritesTheBanner()
{
    FormMianRig rig({{QStringLiteral("Options"), QStringLiteral("0|19|1|1|15|0|1")}}, true);
    FormMian& w = rig.window();
    w.sourceBox()->setPlainText(QStringLiteral("hello"));
    w.jcbuttonClick(0);
    rig.fileAnswer = rig.path(QStringLiteral("results.txt"));
    w.dispatch(QStringLiteral("menuF2"));

    const FileDialogRequest& request = rig.fileRequests.constLast();
    QCOMPARE(request.mode, FileDialogRequest::Save);
    QCOMPARE(request.title, QStringLiteral("Save Results"));
    QCOMPARE(request.nameFilters, QStringList{QStringLiteral("Save as text file (*.TXT)")});
    QCOMPARE(request.defaultSuffix, QStringLiteral("txt"));
    QCOMPARE(rig.openedUrls, QList<QUrl>{QUrl::fromLocalFile(rig.fileAnswer)});

    int encoding = -1;
    const QString text = ReadTextFile(rig.fileAnswer, &encoding);
    QCOMPARE(encoding, int(EncUtf16BE));
    const QStringList lines = text.split(QStringLiteral("\r\n"));
    QVERIFY(lines.at(0).startsWith(QStringLiteral("******************DATE:")));
    QCOMPARE(lines.at(1), QStringLiteral("--------------------------- Original --------------------------"));
    QCOMPARE(lines.at(2), QStringLiteral("hello"));
    QCOMPARE(lines.at(3), QString(66, QLatin1Char('*')));
    QCOMPARE(lines.at(4),
             QStringLiteral("--------------------- Translation  Results -----------------------"));
    QCOMPARE(lines.at(5), QStringLiteral("bonjour"));
    QVERIFY(text.contains(QStringLiteral(" Romanization ")));
    QVERIFY(text.contains(QStringLiteral("/bonjour/")));
    QVERIFY(text.contains(QStringLiteral(" Dictionary ")));
    QVERIFY(text.contains(QStringLiteral("*****************************END*****************************")));
    QVERIFY(rig.notices.isEmpty());
}

void TestFormMianMenus::saveFailureShowsTheNotice()
{
    FormMianRig rig;
    FormMian& w = rig.window();
    rig.fileAnswer = rig.path(QStringLiteral("missing/folder/results.txt"));
    w.dispatch(QStringLiteral("menuF2"));
    QCOMPARE(rig.notices.size(), 1);
    QCOMPARE(rig.notices.constFirst().text, QStringLiteral("Save failed!"));
    QCOMPARE(rig.notices.constFirst().title, QStringLiteral("Notice"));
    QCOMPARE(rig.notices.constFirst().buttons, QMessageBox::Ok | QMessageBox::Cancel);
    QCOMPARE(rig.notices.constFirst().icon, QMessageBox::Information);
    QVERIFY(!rig.notices.constFirst().owned);
    QVERIFY(rig.openedUrls.isEmpty());

    // A cancelled dialog does nothing at all.
    rig.fileAnswer.clear();
    w.dispatch(QStringLiteral("menuF2"));
    QCOMPARE(rig.notices.size(), 1);
    QVERIFY(!QFile::exists(rig.path(QStringLiteral("results.txt"))));
}

QTEST_MAIN(TestFormMianMenus)
#include "test_formmian_menus.moc"
