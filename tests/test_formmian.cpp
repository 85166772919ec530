#include "TestSupport.h"
#include "WindowRig.h"
#include "app/FormMian.h"
#include "app/StringTable.h"
#include "app/UniTextBox.h"
#include "desktop/Form2.h"
#include "desktop/ModUniTxt.h"
#include "desktop/ModmonClip.h"
#include "standin/StandinService.h"
#include "translate/OfflineEngine.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QMenu>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTest>

using namespace quillora;
using namespace quillora::test;
using namespace Qt::StringLiterals;

namespace
{

using Setup = QHash<QString, QString>; // raw values of the "Setup" group
// Detection, target French, both panes, monitoring off, caching on.
const Setup kFrench{{u"Options"_s, u"0|19|1|1|15|0|1"_s}};
// Source English, target French, interface German.
const Setup kEnglishFrench{{u"Options"_s, u"17|19|1|1|22|0|1"_s}};
constexpr int kSwap = 1, kBack = 2, kCopy = 3, kPaste = 4, kClear = 5;
// An `apertium` of the test's own: one installed pair, eng-spa, which upper-cases.
const QByteArray kApertium = "#!/bin/sh\n[ \"$1\" = -l ] && { echo eng-spa; exit 0; }\nexec tr a-z A-Z\n";

QString checked(const FormMian& w, const QStringList& keys)
{
    QStringList on;
    for (const QString& key : keys)
        if (named<QAction>(w, qPrintable(key))->isChecked())
            on << key;
    return on.join(u' ');
}
const QStringList kMarks{u"menuS201"_s, u"menuS202"_s, u"menuS209"_s, u"menuS213"_s, u"menuS214"_s,
                         u"STYLE:0"_s,  u"STYLE:1"_s,  u"STYLE:2"_s,  u"STYLE:3"_s,  u"menuS5"_s};

QList<int> rows(const FormMian& w)
{
    return {named<QComboBox>(w, "Combo2")->currentIndex(), named<QComboBox>(w, "Combo1")->currentIndex()};
}

QAbstractButton* button(const FormMian& w, int index)
{
    return named<QAbstractButton>(w, qPrintable(u"jcbutton_%1"_s.arg(index)));
}

QAbstractButton* speaker(const FormMian& w, int slot)
{
    return named<QAbstractButton>(w, qPrintable(u"WebBrowser2_%1"_s.arg(slot)));
}

QString boxes(const FormMian& w)
{
    QStringList texts;
    for (const char* name : {"sourceBox", "resultBox", "phoneticBox", "dictionaryBox"})
        texts << box(w, name)->toPlainText();
    return texts.join(u'|');
}

// Runs `act` and waits for the end of the translation it starts.
bool finishes(FormMian& w, const std::function<void()>& act)
{
    QSignalSpy finished(&w, &FormMian::translationFinished);
    act();
    return finished.wait(20000);
}

bool translate(FormMian& w, const QString& text)
{
    box(w, "sourceBox")->setPlainText(text);
    return finishes(w, [&w] { w.jcbuttonClick(0); });
}

} // namespace

class TestFormMian : public QObject
{
    Q_OBJECT
    std::unique_ptr<OfflineEngine> offline; // outlives the window
    std::unique_ptr<WindowRig> rig;
    FormMian& open(const Setup& setup = {}, bool withService = false)
    {
        rig = std::make_unique<WindowRig>(setup);
        return rig->open(rig->deps(withService));
    }
    QByteArray lastForm() const { return rig->service.requests().constLast().body; }

private Q_SLOTS:
    void cleanup()
    {
        rig.reset();
        QFile::remove(ServiceBackoff::defaultFilePath());
    }

    // Loading

    void storedChoicesAtLoad_data()
    {
        QTest::addColumn<Setup>("setup");
        QTest::addColumn<QList<int>>("rows"); // source, target
        // Shown: phonetic, dictionary, monitoring, Swap, source right to left.
        QTest::addColumn<QList<bool>>("shown");
        QTest::addColumn<QString>("marks"); // checked menu items, the boxes' font
        QTest::newRow("first run") << Setup() << QList{0, 15} << QList{true, true, true, false, false}
                                   << u"menuS201 STYLE:2 Tahoma"_s;
        QTest::newRow("Arabic, phonetic only, Slovak")
            << Setup{{u"Options"_s, u"4|7|1|0|15|0|0"_s},
                     {u"Language"_s, u"6"_s},
                     {u"AutoCopy"_s, u"True"_s},
                     {u"Font"_s, u"DejaVu Serif|700|True|15|0|False|False|255"_s}}
            << QList{4, 7} << QList{true, false, false, true, true}
            << u"menuS213 STYLE:2 menuS5 DejaVu Serif"_s;
        QTest::newRow("text in field 1")
            << Setup{{u"Options"_s, u"4|x|0|0|15|1|1"_s}} << QList{4, 15}
            << QList{true, true, false, true, true} << u"menuS201 STYLE:2 Tahoma"_s;
    }
    void storedChoicesAtLoad()
    {
        QFETCH(Setup, setup);
        rig = std::make_unique<WindowRig>(setup);
        const QByteArray stored = readFile(rig->settings->filePath());
        FormMian& w = rig->open(rig->deps());
        QTEST(rows(w), "rows");
        QTEST((QList{!box(w, "phoneticBox")->isHidden(), !box(w, "dictionaryBox")->isHidden(),
                     w.findChild<ClipboardMonitor*>()->monitoring(), button(w, kSwap)->isEnabled(),
                     box(w, "sourceBox")->layoutDirection() == Qt::RightToLeft}),
              "shown");
        QTEST(checked(w, kMarks) + u' ' + box(w, "dictionaryBox")->font().family(), "marks");
        QCOMPARE(readFile(rig->settings->filePath()), stored); // read, not rewritten
    }

    // Menus

    // Languages without a table of their own change nothing; the others are stored and applied, as
    // are the styles (7 is none).
    void languageAndStyleItems()
    {
        FormMian& w = open({{u"Style"_s, u"7"_s}});
        auto* pic1 = named<QWidget>(w, "Pic1");
        QCOMPARE(pic1->palette().color(pic1->backgroundRole()),
                 QApplication::palette().color(QPalette::Window));
        QSignalSpy changed(&w, &FormMian::interfaceLanguageChanged);
        const QString before = readFile(rig->settings->filePath()) + button(w, 0)->text();
        named<QAction>(w, "menuS209")->trigger();
        QCOMPARE(readFile(rig->settings->filePath()) + button(w, 0)->text() + checked(w, kMarks),
                 before + u"menuS201"_s);
        w.dispatch(u"menuS213"_s);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(rig->settings->language() + u' ' + checked(w, kMarks), u"6 menuS213"_s);
        QCOMPARE(named<QAction>(w, "menuF3")->text().remove(u'&'), StringTable::text(6, MenuExit));
        w.dispatch(u"menuS201"_s);
        QCOMPARE(named<QAction>(w, "menuF3")->text() + rig->settings->language(), u"&Exit1"_s);
        named<QAction>(w, "STYLE:1")->trigger();
        QCOMPARE(rig->settings->style(), 1);
        QCOMPARE(pic1->palette().color(pic1->backgroundRole()), QColor(173, 209, 255));
    }

    // OK in the options dialog, here from the tray menu's item, applies the stored options at once.
    void optionsDialogOk()
    {
        FormMian& w = open(kFrench);
        rig->dialogAnswer = [](QDialog* dialog) {
            auto* form = qobject_cast<Form2*>(dialog);
            if (!form)
                return -1;
            form->combo2()->setCurrentIndex(1);
            form->combo3()->setCurrentIndex(22);
            form->check(3)->setChecked(false);
            form->check(1)->setChecked(true);
            form->findChild<QAbstractButton*>(u"Command1"_s)->click();
            return form->result();
        };
        QApplication::clipboard()->setText(u"cat"_s);
        w.dispatch(u"menuSYS2"_s);
        QCOMPARE(rig->settings->optionsText(), u"1|22|0|1|15|1|1"_s);
        QCOMPARE(rows(w), (QList{1, 22}));
        QVERIFY(!button(w, kSwap)->isEnabled() && box(w, "phoneticBox")->isHidden());
        // Monitoring restarts, which takes the clipboard's text again.
        QTRY_COMPARE(box(w, "sourceBox")->toPlainText(), u"cat"_s);
        box(w, "sourceBox")->setPlainText(u"typed"_s);
        w.dispatch(u"menuS1"_s);
        QTRY_COMPARE(box(w, "sourceBox")->toPlainText(), u"cat"_s);
        QApplication::clipboard()->clear();
    }

    void cachingIsAppliedBeforeMonitoring()
    {
        for (const auto& [stored, cached] :
             {qMakePair(u"0|19|1|1|15|x|1"_s, u"hello"_s), qMakePair(u"0|19|1|1|15|1|x"_s, QString()),
              qMakePair(u"0|19|1|1|15|0|0"_s, QString())}) {
            FormMian& w = open({{u"Options"_s, stored}});
            QVERIFY(translate(w, u"hello"_s) && translate(w, u"world"_s));
            w.jcbuttonClick(kBack);
            QCOMPARE(box(w, "sourceBox")->toPlainText(), cached);
            QVERIFY(!w.findChild<ClipboardMonitor*>()->monitoring());
        }
    }

    // The desktop's keys for Open and Save: a blank file translates nothing, another is translated;
    // saving opens the file written, or says why it failed. Ctrl and either Enter in the source box
    // translate, adding no line; Enter on a focused button presses it.
    void filesAndKeys()
    {
        FormMian& w = open(kFrench, true);
        QVERIFY(shownOnScreen(w));
        w.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&w));
        QPlainTextEdit* source = box(w, "sourceBox");
        source->setFocus();
        rig->fileAnswer = rig->dir.filePath(u"open.txt"_s);
        QVERIFY(writeFile(rig->fileAnswer, "    "));
        source->setPlainText(u"kept"_s);
        QTest::keyClick(source, Qt::Key_O, Qt::ControlModifier);
        QCOMPARE(source->toPlainText(), u"kept"_s);
        QVERIFY(writeFile(rig->fileAnswer, "hello"));
        QVERIFY(finishes(w, [source] { QTest::keyClick(source, Qt::Key_O, Qt::ControlModifier); }));
        rig->fileAnswer = rig->dir.filePath(u"results.txt"_s);
        QTest::keyClick(source, Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(rig->opened, QStringList{QUrl::fromLocalFile(rig->fileAnswer).toString()});
        QVERIFY(ReadTextFile(rig->fileAnswer).contains(u"/bonjour/"_s));
        rig->fileAnswer = rig->dir.filePath(u"missing/results.txt"_s);
        w.dispatch(u"menuF2"_s);
        QCOMPARE(rig->notices.size(), 1);
        QCOMPARE(rig->notices.constFirst().text, u"Save failed! Reason: No such file or directory"_s);
        QCOMPARE(rig->opened.size(), 1);
        QVERIFY(finishes(w, [source] { QTest::keyClick(source, Qt::Key_Return, Qt::ControlModifier); }));
        QVERIFY(finishes(w, [source] {
            QTest::keyClick(source, Qt::Key_Enter, Qt::ControlModifier | Qt::KeypadModifier);
        }));
        QCOMPARE(boxes(w).section(u'|', 0, 1), u"hello|bonjour"_s);
        QCOMPARE(rig->service.requests().size(), 3);
        button(w, kClear)->setFocus();
        QTest::keyClick(button(w, kClear), Qt::Key_Enter, Qt::KeypadModifier);
        QTRY_COMPARE(boxes(w), u"|||"_s);
    }

    // Buttons

    // The source box's text as it stands goes to the service and the answer fills the panes; a blank one
    // sends nothing and empties them. Swap exchanges the languages and translates. Back shows a slot of
    // the ring in the boxes, the pickers and the speakers.
    void translateSwapAndBack()
    {
        FormMian& w = open(kEnglishFrench, true);
        setBoxText(box(w, "sourceBox"), u" hello\r\n "_s);
        QVERIFY(finishes(w, [&w] { w.dispatch(u"menuF0"_s); }));
        QCOMPARE(lastForm(), "prev=hp&hl=de&ie=UTF-8&js=y&text= hello\r\n &file=&sl=en&tl=fr");
        QCOMPARE(boxes(w), u" hello\n |bonjour|/bonjour/|interjection:\n1. bonjour\n2. salut\n3. allô\n"_s);
        QVERIFY(w.statusMessage().isEmpty());
        box(w, "sourceBox")->setPlainText(u"   "_s);
        w.jcbuttonClick(0);
        QCOMPARE(boxes(w), u"   |||"_s);
        box(w, "sourceBox")->setPlainText(u"hello"_s);
        QVERIFY(finishes(w, [&w] { w.jcbuttonClick(kSwap); }));
        QCOMPARE(rows(w), (QList{21, 15}));
        QVERIFY(lastForm().endsWith("&sl=fr&tl=en"));
        QCOMPARE(box(w, "resultBox")->toPlainText(), u"HELLO"_s);
        named<QComboBox>(w, "Combo1")->setCurrentIndex(22);
        QVERIFY(translate(w, u"world"_s));
        named<QComboBox>(w, "Combo2")->setCurrentIndex(17);
        named<QComboBox>(w, "Combo1")->setCurrentIndex(19);
        QVERIFY(translate(w, QString(101, u'x')));
        QVERIFY(speaker(w, 0)->isHidden() && speaker(w, 1)->isHidden()); // up to 100 characters
        w.jcbuttonClick(kBack);
        QCOMPARE(boxes(w).section(u'|', 0, 2), u"world|WORLD|/world/"_s);
        QCOMPARE(rows(w), (QList{21, 22}));
        QVERIFY(!speaker(w, 0)->isHidden() && !speaker(w, 1)->isHidden());
        QVERIFY(translate(w, u"world"_s)); // the pickers' codes follow the restored rows
        QVERIFY(lastForm().endsWith("&sl=fr&tl=de"));
        named<QComboBox>(w, "Combo2")->setCurrentIndex(1); // detection: Swap is disabled and does nothing
        QVERIFY(!button(w, kSwap)->isEnabled());
        w.jcbuttonClick(kSwap);
        QCOMPARE(rig->service.requests().size(), 5);
        QCOMPARE(rows(w), (QList{1, 22}));
    }

    void copyPasteAndClear()
    {
        FormMian& w = open(kFrench, true);
        QVERIFY(translate(w, u"world"_s) && translate(w, u"hello"_s));
        box(w, "resultBox")->setPlainText(u"   leading and trailing  "_s);
        w.jcbuttonClick(kCopy);
        box(w, "resultBox")->setPlainText(u"    "_s);
        w.jcbuttonClick(kCopy); // a blank result is not copied
        QCOMPARE(QGuiApplication::clipboard()->text(), u"   leading and trailing  "_s);
        QGuiApplication::clipboard()->setText(u" pasted 中文"_s);
        box(w, "sourceBox")->moveCursor(QTextCursor::End);
        w.jcbuttonClick(kPaste);
        QTRY_COMPARE(box(w, "sourceBox")->toPlainText(), u"hello pasted 中文"_s);
        QVERIFY(!speaker(w, 0)->isHidden());
        w.jcbuttonClick(kClear);
        QCOMPARE(boxes(w), u"|||"_s);
        QVERIFY(speaker(w, 0)->isHidden() && speaker(w, 1)->isHidden());
        w.jcbuttonClick(kBack); // the ring is untouched
        QCOMPARE(boxes(w).section(u'|', 0, 1), u"world|monde"_s);
        QCOMPARE(rig->service.requests().size(), 2);
    }

    // Offline an installed pair may cover the text, else the connection's notice; a refusal is said in
    // the status line with the time of the next request.
    void offlineAndRefusedTranslations()
    {
        rig = std::make_unique<WindowRig>(kEnglishFrench);
        const QString apertium = rig->dir.filePath(u"apertium"_s);
        QVERIFY(writeFile(apertium, kApertium) &&
                QFile::setPermissions(apertium, QFile::ReadOwner | QFile::ExeOwner));
        offline = std::make_unique<OfflineEngine>(apertium);
        FormMianDeps deps = rig->deps(true);
        deps.offline = offline.get();
        FormMian& w = rig->open(deps);
        rig->connectivity.setOnline(false);
        QVERIFY(translate(w, u"hello"_s));
        QCOMPARE(rig->notices.size(), 1);
        QCOMPARE(rig->notices.at(0).title + u'|' + rig->notices.at(0).text,
                 u"Notice|Is not connected to the Internet."_s);
        QVERIFY(rig->notices.at(0).icon == QMessageBox::Warning && rig->notices.at(0).owned);
        QVERIFY(w.statusMessage().isEmpty());
        // A copied text: the ownerless OK/Cancel notice; the text still lands in the source box.
        QVERIFY(finishes(w, [&w] { w.translateCopiedText(u"copied"_s); }));
        QCOMPARE(rig->notices.size(), 2);
        QVERIFY(rig->notices.at(1).buttons == (QMessageBox::Ok | QMessageBox::Cancel) &&
                !rig->notices.at(1).owned);
        QCOMPARE(boxes(w), u"copied|||"_s);
        w.translateCopiedText(u"  "_s); // a blank copy too, at once
        QCOMPARE(rig->notices.size(), 3);
        named<QComboBox>(w, "Combo1")->setCurrentIndex(49);
        QVERIFY(translate(w, u"hello"_s));
        QCOMPARE(box(w, "resultBox")->toPlainText().trimmed(), u"HELLO"_s);
        QCOMPARE(w.statusMessage(), u"Translated offline by Apertium (eng-spa)."_s);
        named<QComboBox>(w, "Combo1")->setCurrentIndex(19); // where no pair takes over
        rig->connectivity.setOnline(true);
        rig->service.setFormMode(StandinService::FormMode::Refused);
        rig->service.setRetryAfter("3600");
        const auto said = [] {
            const QDateTime now = QDateTime::currentDateTime();
            return StringTable::text(1000 + MsgRefusedUntil).arg(localTimeText(now.addSecs(3600), now));
        };
        const QString before = said();
        QVERIFY(translate(w, u"hello"_s));
        QVERIFY2(w.statusMessage() == before || w.statusMessage() == said(), qPrintable(w.statusMessage()));
        QCOMPARE(boxes(w), u"hello|||"_s);
        QCOMPARE(rig->notices.size(), 3);
        QCOMPARE(rig->service.requests().size(), 1); // offline nothing went to the service
    }

    // While a translation runs input is held and Escape cancels; the commands chosen meanwhile run, in
    // order, when it ends.
    void escapeCancelsAndInputWaits()
    {
        FormMian& w = open(kFrench, true);
        QVERIFY(shownOnScreen(w));
        rig->service.setDelayMs(60000);
        int dialogs = 0;
        rig->dialogAnswer = [&dialogs](QDialog*) { return ++dialogs, 0; };
        box(w, "sourceBox")->setPlainText(u"hello"_s);
        QSignalSpy finished(&w, &FormMian::translationFinished);
        w.jcbuttonClick(0);
        QVERIFY(w.isTranslating());
        QCOMPARE(w.statusMessage(), StringTable::text(1000 + MsgTranslating));
        QVERIFY(QGuiApplication::overrideCursor());
        named<QAction>(w, "menuS5")->trigger(); // "Auto copy", then "Options": both run at the end
        w.systemMenu()->actions().at(1)->trigger();
        QVERIFY(dialogs == 0 && !rig->settings->autoCopy());
        QTest::keyClick(box(w, "sourceBox"), Qt::Key_Escape);
        QVERIFY(finished.wait(20000));
        QCOMPARE(w.statusMessage(), u"Translation cancelled."_s);
        QCOMPARE(boxes(w), u"hello|||"_s);
        QVERIFY(rig->settings->autoCopy() && named<QAction>(w, "menuS5")->isChecked());
        QCOMPARE(dialogs, 1);
        QVERIFY(!w.isTranslating() && !QGuiApplication::overrideCursor());
    }

    // The page goes to the browser with the pickers' and the interface's codes; a failure is said.
    void webPageTranslation()
    {
        FormMian& w = open(kEnglishFrench, true);
        named<QComboBox>(w, "ucComText")->setEditText(u"example.org/a?x=1"_s);
        named<QAbstractButton>(w, "jcbutton1")->click();
        QCOMPARE(rig->opened,
                 QStringList{rig->service.baseUrl() +
                             u"/translate?js=n&prev=_t&hl=de&ie=UTF-8&layout=2&eotf=1&sl=en&tl=fr"
                             u"&u=example.org/a?x=1"_s});
        QVERIFY(rig->service.requests().isEmpty() && w.statusMessage().isEmpty());
        rig->openFailure = u"no browser"_s;
        named<QAbstractButton>(w, "jcbutton1")->click();
        QCOMPARE(w.statusMessage(), u"The web page could not be opened in a browser. Reason: no browser"_s);
    }

    // With a tray the window hides there, and the first time the status line says how to quit.
    void closeMinimisesWhileExitQuits()
    {
        FormMian& w = open();
        QVERIFY(shownOnScreen(w));
        QSignalSpy exiting(&w, &FormMian::exiting);
        QVERIFY(!w.close());
        QVERIFY(w.isMinimized() && exiting.isEmpty());
        w.setTrayPresent(true);
        QTRY_VERIFY(w.isHidden());
        QCOMPARE(w.statusMessage(), StringTable::text(1, MsgKeepsRunning));
        w.setStatusMessage({});
        w.toggleShowHide();
        QVERIFY(!w.close());
        QTRY_VERIFY(w.isHidden());
        QVERIFY(w.statusMessage().isEmpty());
        w.dispatch(u"menuF3"_s);
        QVERIFY(w.exitRequested() && !w.findChild<ClipboardMonitor*>()->monitoring());
        QCOMPARE(exiting.count(), 1);
    }
};

QTEST_MAIN(TestFormMian)
#include "test_formmian.moc"
