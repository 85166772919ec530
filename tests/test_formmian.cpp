#include "TestSupport.h"
#include "WindowRig.h"
#include "app/AccessKeys.h"
#include "app/FormMian.h"
#include "app/StringTable.h"
#include "app/UniTextBox.h"
#include "desktop/Form2.h"
#include "desktop/ModUniTxt.h"
#include "desktop/ModmonClip.h"
#include "standin/StandinService.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTest>

using namespace quillora;
using namespace quillora::test;
using namespace Qt::StringLiterals;

namespace
{

using Setup = QHash<QString, QString>; // raw values of the "Setup" group
Setup options(const QString& text)
{
    return {{u"Options"_s, text}};
}
// Detection, target French, both panes, monitoring off, caching on.
const Setup kFrench = options(u"0|19|1|1|15|0|1"_s);
// Source English, target French, interface German.
const Setup kEnglishFrench = options(u"17|19|1|1|22|0|1"_s);
constexpr int kSwap = 1, kBack = 2, kCopy = 3, kPaste = 4, kClear = 5;

// A second window, for a look at how it loads.
std::unique_ptr<WindowRig> another(const Setup& setup)
{
    auto rig = std::make_unique<WindowRig>(setup);
    rig->open(rig->deps());
    return rig;
}

QAction* action(const FormMian& w, const char* key)
{
    return named<QAction>(w, key);
}

QString checked(const FormMian& w, const QStringList& keys)
{
    QStringList on;
    for (const QString& key : keys) {
        if (action(w, qPrintable(key))->isChecked())
            on << key;
    }
    return on.join(u' ');
}
const QStringList kStyles{u"STYLE:0"_s, u"STYLE:1"_s, u"STYLE:2"_s, u"STYLE:3"_s};
const QStringList kLanguages{u"menuS201"_s, u"menuS202"_s, u"menuS209"_s, u"menuS213"_s, u"menuS214"_s};

QComboBox* combo(const FormMian& w, const char* name)
{
    return named<QComboBox>(w, name);
}

QList<int> rows(const FormMian& w)
{
    return {combo(w, "Combo2")->currentIndex(), combo(w, "Combo1")->currentIndex()};
}

QAbstractButton* button(const FormMian& w, int index)
{
    return named<QAbstractButton>(w, qPrintable(u"jcbutton_%1"_s.arg(index)));
}

QAbstractButton* speaker(const FormMian& w, int slot)
{
    return named<QAbstractButton>(w, qPrintable(u"WebBrowser2_%1"_s.arg(slot)));
}

ClipboardMonitor* monitor(const FormMian& w)
{
    return w.findChild<ClipboardMonitor*>();
}

QString boxes(const FormMian& w)
{
    QStringList texts;
    for (const char* name : {"sourceBox", "resultBox", "phoneticBox", "dictionaryBox"})
        texts << box(w, name)->toPlainText();
    return texts.join(u'|');
}

// A caption as the screen shows it: the tables hold no literal ampersand.
QString shown(QString caption)
{
    return caption.remove(u'&');
}

bool translate(FormMian& w, const QString& text)
{
    box(w, "sourceBox")->setPlainText(text);
    return translateNow(w);
}

} // namespace

class TestFormMian : public QObject
{
    Q_OBJECT
    std::unique_ptr<WindowRig> rig;
    FormMian& open(const Setup& setup = {}, bool withService = false)
    {
        rig = std::make_unique<WindowRig>(setup);
        return rig->open(rig->deps(withService));
    }
    QString settingsText() const { return QString::fromUtf8(readFile(rig->settings->filePath())); }
    QByteArray lastForm() const { return rig->service.requests().constLast().body; }

private Q_SLOTS:
    void cleanup()
    {
        rig.reset();
        QFile::remove(ServiceBackoff::defaultFilePath());
    }

    // Loading

    void optionsAtLoad_data()
    {
        QTest::addColumn<QString>("stored");  // null: a first run
        QTest::addColumn<QList<int>>("rows"); // source, target
        QTest::addColumn<QList<bool>>(
            "shown"); // phonetic, dictionary, monitoring, Swap, source right to left
        QTest::newRow("first run") << QString() << QList{0, 15} << QList{true, true, true, false, false};
        QTest::newRow("Arabic, phonetic only")
            << u"4|7|1|0|15|0|0"_s << QList{4, 7} << QList{true, false, false, true, true};
        QTest::newRow("text in field 1")
            << u"4|x|0|0|15|1|1"_s << QList{4, 15} << QList{true, true, false, true, true};
        QTest::newRow("rows out of range")
            << u"99|-4|1|1|15|1|1"_s << QList{0, 15} << QList{true, true, true, false, false};
    }
    void optionsAtLoad()
    {
        QFETCH(QString, stored);
        QFETCH(QList<bool>, shown);
        FormMian& w = open(stored.isNull() ? Setup() : options(stored));
        QTEST(rows(w), "rows");
        QCOMPARE((QList{!box(w, "phoneticBox")->isHidden(), !box(w, "dictionaryBox")->isHidden(),
                        monitor(w)->monitoring(), button(w, kSwap)->isEnabled(),
                        box(w, "sourceBox")->layoutDirection() == Qt::RightToLeft}),
                 shown);
        QCOMPARE(settingsText().isEmpty(), stored.isNull()); // read, not rewritten
    }

    void storedAndFirstRunMarks()
    {
        FormMian& w = open({{u"Language"_s, u"6"_s},
                            {u"AutoCopy"_s, u"True"_s},
                            {u"Style"_s, u"0"_s},
                            {u"Font"_s, u"DejaVu Serif|700|True|15|0|False|False|255"_s}});
        QCOMPARE(checked(w, kLanguages + kStyles + QStringList{u"menuS5"_s}), u"menuS213 STYLE:0 menuS5"_s);
        QCOMPARE(shown(button(w, 0)->text()), shown(StringTable::text(6, ButtonTranslate)));
        QCOMPARE(box(w, "dictionaryBox")->font().family(), u"DejaVu Serif"_s);
        const auto first = another({});
        FormMian& f = *first->window;
        QCOMPARE(checked(f, kLanguages + kStyles + QStringList{u"menuS5"_s}), u"menuS201 STYLE:2"_s);
        QVERIFY(speaker(f, 0)->isHidden() && speaker(f, 1)->isHidden());
    }

    // Menus

    // Within each menu and among the window's controls and menu bar a key is used once; in the languages of
    // Latin script every caption has one.
    void accessKeysInEveryLanguage()
    {
        for (int language = 1; language <= 7; ++language) {
            FormMian& w = open({{u"Language"_s, QString::number(language)}});
            QList<QStringList> groups{{}};
            for (QWidget* control : w.centralWidget()->findChildren<QWidget*>()) {
                const auto* label = qobject_cast<QLabel*>(control);
                if (control->inherits("QAbstractButton") || (label && label->buddy()))
                    groups[0] << control->property("text").toString();
            }
            for (const QAction* item : w.menuBar()->actions())
                groups[0] << item->text(); // the menu bar's keys are the window's too
            QList<QWidget*> menus = {w.menuBar()};
            for (QMenu* menu : w.findChildren<QMenu*>())
                menus << menu;
            for (const QWidget* menu : menus) {
                groups << QStringList();
                for (const QAction* item : menu->actions())
                    groups.last() << (item->isVisible() ? item->text() : QString());
            }
            for (const QStringList& group : std::as_const(groups)) {
                QSet<QChar> keys;
                for (const QString& caption : group) {
                    const QChar key = AccessKeys::keyOf(caption);
                    const bool latin = (language == 1 || language >= 5) && !caption.isEmpty();
                    QVERIFY2(key.isNull() ? !latin : !keys.contains(key), qPrintable(caption));
                    keys.insert(key);
                }
            }
        }
    }

    void switchToSlovak()
    {
        FormMian& w = open();
        QSignalSpy changed(&w, &FormMian::interfaceLanguageChanged);
        combo(w, "Combo1")->setCurrentIndex(47);
        // Languages without a table of their own change nothing.
        const QString before = settingsText() + button(w, 0)->text();
        for (int n = 205; n <= 211; ++n)
            action(w, qPrintable(u"menuS%1"_s.arg(n)))->trigger();
        QCOMPARE(settingsText() + button(w, 0)->text() + checked(w, kLanguages), before + u"menuS201"_s);
        QCOMPARE(changed.count(), 0);
        w.dispatch(u"menuS213"_s);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(rig->settings->language() + u' ' + checked(w, kLanguages), u"6 menuS213"_s);
        QCOMPARE(shown(action(w, "menuF3")->text()) + combo(w, "Combo1")->currentText(),
                 StringTable::text(6, MenuExit) + StringTable::text(6, LanguageNames + 47));
        w.dispatch(u"menuS201"_s);
        QCOMPARE(action(w, "menuF3")->text() + combo(w, "Combo1")->currentText(), u"&ExitSlovak"_s);
        QCOMPARE(rig->settings->language(), u"1"_s);
    }

    void styleAndAutoCopyAreStored()
    {
        FormMian& w = open({{u"Style"_s, u"7"_s}});
        auto* pic1 = named<QWidget>(w, "Pic1");
        QCOMPARE(checked(w, kStyles), QString()); // 7 does nothing
        QCOMPARE(pic1->palette().color(pic1->backgroundRole()),
                 QApplication::palette().color(QPalette::Window));
        action(w, "STYLE:1")->trigger();
        QCOMPARE(rig->settings->style(), 1);
        QCOMPARE(pic1->palette().color(pic1->backgroundRole()), QColor(173, 209, 255));
        action(w, "menuS5")->trigger();
        QVERIFY(rig->settings->autoCopy());
    }

    // OK in the options dialog, here from the tray menu's item, applies the stored options at once.
    void optionsDialogOk()
    {
        FormMian& w = open(kFrench);
        int shown = 0;
        rig->dialogAnswer = [&](QDialog* dialog) {
            auto* form = qobject_cast<Form2*>(dialog);
            if (!form)
                return -1;
            ++shown;
            form->combo2()->setCurrentIndex(1);
            form->combo3()->setCurrentIndex(22);
            form->check(3)->setChecked(false);
            form->check(1)->setChecked(true);
            form->findChild<QAbstractButton*>(u"Command1"_s)->click();
            return form->result();
        };
        QApplication::clipboard()->setText(u"cat"_s);
        w.dispatch(u"menuSYS2"_s);
        QCOMPARE(shown, 1);
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
            FormMian& w = open(options(stored));
            for (const QString& text : {u"hello"_s, u"world"_s})
                QVERIFY(translate(w, text));
            w.jcbuttonClick(kBack);
            QCOMPARE(box(w, "sourceBox")->toPlainText(), cached);
            QVERIFY(!monitor(w)->monitoring());
        }
    }

    void openTranslatesAndSaveWrites()
    {
        FormMian& w = open(kFrench, true);
        rig->fileAnswer = rig->dir.filePath(u"blank.txt"_s);
        QVERIFY(writeFile(rig->fileAnswer, "    "));
        w.dispatch(u"menuF1"_s); // a blank file translates nothing
        QVERIFY(rig->service.requests().isEmpty());
        QVERIFY(writeFile(rig->fileAnswer, QByteArray("\xFE\xFF\0h\0e\0l\0l\0o", 12))); // UTF-16 BE
        QSignalSpy finished(&w, &FormMian::translationFinished);
        w.dispatch(u"menuF1"_s);
        QVERIFY(finished.wait(20000));
        QCOMPARE(boxes(w).section(u'|', 0, 1), u"hello|bonjour"_s);
        // Saving the results of that translation opens the file.
        rig->fileAnswer = rig->dir.filePath(u"results.txt"_s);
        w.dispatch(u"menuF2"_s);
        QCOMPARE(rig->opened, QStringList{QUrl::fromLocalFile(rig->fileAnswer).toString()});
        const QString saved = ReadTextFile(rig->fileAnswer);
        QVERIFY(saved.contains(u"bonjour"_s) && saved.contains(u"/bonjour/"_s));
        rig->fileAnswer = rig->dir.filePath(u"missing/results.txt"_s);
        w.dispatch(u"menuF2"_s);
        QCOMPARE(rig->notices.size(), 1);
        QCOMPARE(rig->notices.constFirst().text, u"Save failed! Reason: No such file or directory"_s);
        QCOMPARE(rig->opened.size(), 1);
    }

    // The desktop's keys for Open and Save; Ctrl and either Enter in the source box translate, adding
    // no line; Enter on a focused button presses it.
    void keyboardReachesTheCommands()
    {
        FormMian& w = open(kFrench, true);
        QVERIFY(shownOnScreen(w));
        w.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&w));
        QPlainTextEdit* source = box(w, "sourceBox");
        source->setFocus();
        QTest::keyClick(source, Qt::Key_O, Qt::ControlModifier);
        QTest::keyClick(source, Qt::Key_S, Qt::ControlModifier);
        QCOMPARE(rig->fileRequests.size(), 2);
        QCOMPARE(rig->fileRequests.at(0).mode + 2 * rig->fileRequests.at(1).mode,
                 2 * FileDialogRequest::Save);
        source->setPlainText(u"hello"_s);
        for (const Qt::KeyboardModifiers modifiers :
             {Qt::ControlModifier | Qt::NoModifier, Qt::ControlModifier | Qt::KeypadModifier}) {
            QSignalSpy finished(&w, &FormMian::translationFinished);
            QTest::keyClick(source, modifiers & Qt::KeypadModifier ? Qt::Key_Enter : Qt::Key_Return,
                            modifiers);
            QVERIFY(finished.wait(20000));
        }
        QCOMPARE(boxes(w).section(u'|', 0, 1), u"hello|bonjour"_s);
        QCOMPARE(rig->service.requests().size(), 2);
        button(w, kClear)->setFocus();
        QTest::keyClick(button(w, kClear), Qt::Key_Enter, Qt::KeypadModifier);
        QTRY_COMPARE(boxes(w), u"|||"_s);
    }

    // Buttons

    // The source box's text as it stands goes to the service; the answer fills the result panes.
    void translateFillsTheBoxes()
    {
        FormMian& w = open(kEnglishFrench, true);
        const QString untrimmed = u" hello\r\n "_s;
        setBoxText(box(w, "sourceBox"), untrimmed);
        w.dispatch(u"menuF0"_s); // the menu item presses Translate
        QSignalSpy finished(&w, &FormMian::translationFinished);
        QVERIFY(finished.wait(20000));
        QCOMPARE(lastForm(), "prev=hp&hl=de&ie=UTF-8&js=y&text=" + untrimmed.toUtf8() + "&file=&sl=en&tl=fr");
        QVERIFY(translate(w, u"hello"_s));
        QCOMPARE(boxes(w), u"hello|bonjour|/bonjour/|interjection:\n1. bonjour\n2. salut\n3. allô\n"_s);
        QVERIFY(w.statusMessage().isEmpty());
        // A blank source sends nothing and empties the results.
        box(w, "sourceBox")->setPlainText(u"   "_s);
        w.jcbuttonClick(0);
        QCOMPARE(boxes(w), u"   |||"_s);
        QCOMPARE(rig->service.requests().size(), 2);
    }

    void swapExchangesTheLanguages()
    {
        FormMian& w = open(kEnglishFrench, true);
        box(w, "sourceBox")->setPlainText(u"hello"_s);
        QSignalSpy finished(&w, &FormMian::translationFinished);
        w.jcbuttonClick(kSwap);
        QVERIFY(finished.wait(20000));
        QCOMPARE(rows(w), (QList{21, 15}));
        QVERIFY(lastForm().endsWith("&sl=fr&tl=en"));
        QCOMPARE(box(w, "resultBox")->toPlainText(), u"HELLO"_s);
        combo(w, "Combo2")->setCurrentIndex(1); // detection: Swap is disabled and does nothing
        QVERIFY(!button(w, kSwap)->isEnabled());
        w.jcbuttonClick(kSwap);
        QCOMPARE(rig->service.requests().size(), 1);
        QCOMPARE(rows(w), (QList{1, 15}));
    }

    // Back shows a slot of the ring in the boxes, the pickers and the speakers.
    void backShowsTheRing()
    {
        FormMian& w = open(kEnglishFrench, true);
        const QStringList texts{u"world"_s, QString(101, u'x'), u"thank you"_s};
        const QList<int> targets{22, 19, 49};
        for (int i = 0; i < texts.size(); ++i) {
            combo(w, "Combo1")->setCurrentIndex(targets.at(i));
            QVERIFY(translate(w, texts.at(i)));
            QCOMPARE(speaker(w, 1)->isHidden(), i == 1); // up to 100 characters
        }
        w.jcbuttonClick(kBack); // the one before the last
        QCOMPARE(boxes(w).section(u'|', 0, 1), texts.at(1) + u'|' + QString(101, u'X'));
        QVERIFY(speaker(w, 1)->isHidden());
        w.jcbuttonClick(kBack);
        QCOMPARE(boxes(w).section(u'|', 0, 2), u"world|WORLD|/world/"_s);
        QCOMPARE(rows(w), (QList{17, 22}));
        QVERIFY(!speaker(w, 0)->isHidden() && !speaker(w, 1)->isHidden());
        QVERIFY(translateNow(w)); // the pickers' codes follow the restored rows
        QVERIFY(lastForm().endsWith("&sl=en&tl=de"));
    }

    void copyPasteAndClear()
    {
        FormMian& w = open(kFrench, true);
        QSignalSpy copied(monitor(w), &ClipboardMonitor::textCopied);
        for (const QString& text : {u"world"_s, u"hello"_s})
            QVERIFY(translate(w, text));
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
        QCOMPARE(copied.count(), 0); // monitoring is off in this setup
    }

    void offlineNoticeAndRefusalInTheStatusLine()
    {
        FormMian& w = open(kFrench, true);
        rig->connectivity.setOnline(false);
        QVERIFY(translate(w, u"hello"_s));
        QCOMPARE(rig->notices.size(), 1);
        QCOMPARE(rig->notices.at(0).title + u'|' + rig->notices.at(0).text,
                 u"Notice|Is not connected to the Internet."_s);
        QVERIFY(rig->notices.at(0).icon == QMessageBox::Warning && rig->notices.at(0).owned);
        // A copied text: the ownerless OK/Cancel notice; the text still lands in the source box.
        QSignalSpy finished(&w, &FormMian::translationFinished);
        w.translateCopiedText(u"copied"_s);
        QVERIFY(finished.wait(20000));
        QCOMPARE(rig->notices.size(), 2);
        QCOMPARE(rig->notices.at(1).buttons, QMessageBox::Ok | QMessageBox::Cancel);
        QVERIFY(!rig->notices.at(1).owned);
        QCOMPARE(boxes(w), u"copied|||"_s);
        w.translateCopiedText(u"  "_s); // a blank copy too, at once
        QCOMPARE(rig->notices.size(), 3);
        rig->connectivity.setOnline(true);
        rig->service.setFormMode(StandinService::FormMode::Refused);
        box(w, "resultBox")->setPlainText(u"old"_s);
        rig->service.setRetryAfter("3600");
        // Said with the time of the next request.
        const auto said = [] {
            const QDateTime now = QDateTime::currentDateTime();
            return StringTable::text(1000 + MsgRefusedUntil).arg(localTimeText(now.addSecs(3600), now));
        };
        const QString before = said();
        QVERIFY(translate(w, u"hello"_s));
        const QString refused = w.statusMessage();
        QVERIFY2(refused == before || refused == said(), qPrintable(refused));
        QCOMPARE(boxes(w), u"hello|||"_s);
        QCOMPARE(rig->notices.size(), 3);
    }

    // While a translation runs the window paints and Escape cancels; what the user types and chooses
    // meanwhile is applied, in order, when it ends.
    void escapeCancelsAndInputWaits()
    {
        FormMian& w = open(kFrench, true);
        QVERIFY(shownOnScreen(w));
        rig->service.setDelayMs(60000);
        int dialogs = 0;
        rig->dialogAnswer = [&dialogs](QDialog*) { return ++dialogs, 0; };
        QPlainTextEdit* source = box(w, "sourceBox");
        source->setPlainText(u"hello"_s);
        source->moveCursor(QTextCursor::End);
        box(w, "resultBox")->setPlainText(u"old"_s);
        QSignalSpy finished(&w, &FormMian::translationFinished);
        w.jcbuttonClick(0);
        QVERIFY(w.isTranslating());
        QCOMPARE(w.statusMessage(), StringTable::text(1000 + MsgTranslating));
        QTest::keyClick(source, Qt::Key_X);
        action(w, "menuS5")->trigger(); // "Auto copy", then "Options": both run at the end
        w.systemMenu()->actions().at(1)->trigger();
        QCOMPARE(source->toPlainText() + QString::number(dialogs), u"hello0"_s);
        QVERIFY(!rig->settings->autoCopy());
        QTest::keyClick(source, Qt::Key_Escape);
        QVERIFY(finished.wait(20000));
        QCOMPARE(w.statusMessage(), u"Translation cancelled."_s);
        QCOMPARE(boxes(w), u"hellox|||"_s);
        QVERIFY(rig->settings->autoCopy() && action(w, "menuS5")->isChecked());
        QCOMPARE(dialogs, 1);
        QVERIFY(!w.isTranslating() && !QGuiApplication::overrideCursor());
    }

    void webPageTranslation()
    {
        FormMian& w = open(kEnglishFrench, true);
        named<QComboBox>(w, "ucComText")->setEditText(u"  example.org/a b?x=1&y=2#top "_s);
        named<QAbstractButton>(w, "jcbutton1")->click();
        QCOMPARE(rig->opened.constFirst(),
                 rig->service.baseUrl() +
                     u"/translate?js=n&prev=_t&hl=de&ie=UTF-8&layout=2&eotf=1&sl=en&tl=fr"
                     u"&u=example.org/a b?x=1&y=2#top"_s);
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
        QVERIFY(w.exitRequested() && !monitor(w)->monitoring());
        QCOMPARE(exiting.count(), 1);
    }
};

QTEST_MAIN(TestFormMian)
#include "test_formmian.moc"
