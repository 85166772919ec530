#include "TestSupport.h"
#include "WindowRig.h"
#include "app/FormMian.h"
#include "app/Settings.h"
#include "app/StringTable.h"
#include "app/UniTextBox.h"
#include "desktop/Form2.h"
#include "desktop/ModUniTxt.h"
#include "desktop/ModmonClip.h"
#include "net/Connectivity.h"
#include "standin/StandinService.h"
#include "translate/ServiceAddresses.h"
#include "translate/TranslationEngine.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QPlainTextEdit>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocument>
#include <QTimer>

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
constexpr int kTranslate = 0, kSwap = 1, kBack = 2, kCopy = 3, kPaste = 4, kClear = 5;

// A second window, for a look at how it loads.
std::unique_ptr<WindowRig> another(const Setup& setup)
{
    auto rig = std::make_unique<WindowRig>(setup);
    rig->open(rig->deps());
    return rig;
}

QString checked(FormMian& w, const QStringList& keys)
{
    QStringList on;
    for (const QString& key : keys) {
        if (w.action(key)->isChecked())
            on << key;
    }
    return on.join(u' ');
}
const QStringList kStyles{u"STYLE:0"_s, u"STYLE:1"_s, u"STYLE:2"_s, u"STYLE:3"_s};
const QStringList kLanguages{u"menuS201"_s, u"menuS202"_s, u"menuS209"_s, u"menuS213"_s, u"menuS214"_s};

QString keysOf(const QMenu* menu)
{
    QStringList keys;
    for (const QAction* item : menu->actions())
        keys << item->objectName();
    return keys.join(u' ');
}

QList<int> rows(FormMian& w)
{
    return {w.combo2()->currentIndex(), w.combo1()->currentIndex()};
}

QString boxes(FormMian& w)
{
    return QStringList{w.sourceBox()->toPlainText(), w.resultBox()->toPlainText(),
                       w.phoneticBox()->toPlainText(), w.dictionaryBox()->toPlainText()}
        .join(u'|');
}

// The panes shown fill the text area: the result on top, the others side by side across the width below.
bool panesTile(FormMian& w)
{
    const QRect area(0, 188, 710, 239), result = w.resultBox()->geometry();
    QRect lower;
    for (const QWidget* pane : {w.phoneticBox(), w.dictionaryBox()}) {
        if (!pane->isHidden())
            lower |= pane->geometry();
    }
    return (result | lower) == area && !result.intersects(lower) && (lower.isEmpty() || lower.width() == 710);
}

// The translation started last has ended.
void settle(FormMian& w)
{
    QTRY_VERIFY_WITH_TIMEOUT(!w.isTranslating(), 20000);
}

void translate(FormMian& w, const QString& text)
{
    w.sourceBox()->setPlainText(text);
    w.jcbuttonClick(kTranslate);
    settle(w);
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
        QTest::addColumn<QString>("stored");    // null: a first run
        QTest::addColumn<QList<int>>("rows");   // source, target
        QTest::addColumn<QList<bool>>("shown"); // phonetic, dictionary, monitoring, Swap enabled
        QTest::newRow("first run") << QString() << QList{0, 15} << QList{true, true, true, false};
        QTest::newRow("panes off") << u"3|7|0|0|15|0|0"_s << QList{3, 7} << QList{false, false, false, true};
        QTest::newRow("phonetic only")
            << u"3|7|1|0|15|0|0"_s << QList{3, 7} << QList{true, false, false, true};
        QTest::newRow("text in field 1")
            << u"4|x|0|0|15|1|1"_s << QList{4, 15} << QList{true, true, false, true};
        QTest::newRow("rows out of range")
            << u"99|-4|1|1|15|1|1"_s << QList{0, 15} << QList{true, true, true, false};
    }
    void optionsAtLoad()
    {
        QFETCH(QString, stored);
        QFETCH(QList<bool>, shown);
        FormMian& w = open(stored.isNull() ? Setup() : options(stored));
        QTEST(rows(w), "rows");
        QCOMPARE((QList{!w.phoneticBox()->isHidden(), !w.dictionaryBox()->isHidden(),
                        w.clipboardMonitor()->monitoring(), w.jcbutton(kSwap)->isEnabled()}),
                 shown);
        QCOMPARE((QList{w.check1()->isChecked(), w.check2()->isChecked()}), shown.mid(0, 2));
        QVERIFY(panesTile(w));
        QCOMPARE(settingsText().isEmpty(), stored.isNull()); // read, not rewritten
        // Ticking a pane's box shows or hides it at once.
        w.check1()->toggle();
        QCOMPARE(w.phoneticBox()->isHidden(), shown[0]);
        QVERIFY(panesTile(w));
        w.check2()->toggle();
        QCOMPARE(w.dictionaryBox()->isHidden(), shown[1]);
        QVERIFY(panesTile(w));
    }

    void longWordsWrapAnywhere()
    {
        // Word wrapping is quadratic in a run without break opportunity: such a text wraps anywhere.
        QWidget parent;
        QPlainTextEdit* box = createTextBox(&parent, QRect(0, 0, 300, 100), u"box"_s);
        for (const QString& text : {u"a few words, 中文"_s.repeated(500), u"x "_s + QString(1001, u'y')}) {
            box->setPlainText(text);
            QCOMPARE(box->document()->defaultTextOption().wrapMode() == QTextOption::WrapAnywhere,
                     text.startsWith(u'x'));
            QCOMPARE(box->toPlainText(), text);
        }
        box->clear();
        QCOMPARE(box->document()->defaultTextOption().wrapMode(), QTextOption::WrapAtWordBoundaryOrAnywhere);
    }

    void storedAndFirstRunLanguageStyleAndMenus()
    {
        FormMian& w = open({{u"Language"_s, u"6"_s},
                            {u"AutoCopy"_s, u"True"_s},
                            {u"Font"_s, u"DejaVu Serif|700|True|15|0|False|False|255"_s}});
        QCOMPARE(checked(w, kLanguages + QStringList{u"menuS5"_s}), u"menuS213 menuS5"_s);
        QVERIFY(w.jcbutton(kTranslate)->text() != u"&Translate"_s);
        QCOMPARE(w.dictionaryBox()->font().family(), u"DejaVu Serif"_s);
        QVERIFY(w.resultBox()->font().bold() && w.sourceBox()->font().italic());
        QCOMPARE(w.phoneticBox()->font().pointSize(), 15);
        QCOMPARE(w.resultBox()->palette().color(QPalette::Text), QColor(Qt::red)); // colour 255 is red
        QCOMPARE(checked(*another({{u"Style"_s, u"0"_s}})->window, kStyles), u"STYLE:0"_s);
        const auto first = another({});
        FormMian& f = *first->window;
        QCOMPARE(checked(f, kLanguages + kStyles + QStringList{u"menuS5"_s}), u"menuS201 STYLE:2"_s);
        QVERIFY(f.speakerButton(0)->isHidden() && f.speakerButton(1)->isHidden());
        QVERIFY(f.action(u"menuH4"_s)->isVisible() && !f.action(u"menuH5"_s)->isVisible());
        QCOMPARE(keysOf(f.action(u"menuF"_s)->menu()),
                 u"menuF0 FILE1:SEPARATOR menuF1 menuF2 FILE2:SEPARATOR menuF3"_s);
        QVERIFY(f.action(u"FILE2:SEPARATOR"_s)->isSeparator());
        QCOMPARE(keysOf(f.systemMenu()), u"menuSYS1 menuSYS2 SYS:SEPARATOR menuSYS3"_s);
        for (const QString& stored : {u"9"_s, u"1x"_s, u" 2"_s})
            QCOMPARE(another({{u"Language"_s, stored}})->window->interfaceLanguage(), u"1"_s);
        // An empty value asks the system locale, which always names one of the seven.
        const int chosen = another({{u"Language"_s, QString()}})->window->interfaceLanguage().toInt();
        QVERIFY(chosen >= 1 && chosen <= 7);
    }

    void captionsFitInEveryLanguage()
    {
        for (int language = 1; language <= 7; ++language) {
            FormMian& w = open({{u"Language"_s, QString::number(language)}});
            QList<QWidget*> captioned;
            for (QLabel* label : w.findChildren<QLabel*>())
                captioned << label;
            captioned << w.check1() << w.check2();
            for (QWidget* c : captioned) {
                QVERIFY2(c->width() >= c->sizeHint().width(), qPrintable(c->property("text").toString()));
                QVERIFY(c->geometry().right() < 710);
            }
            QVERIFY(w.combo1()->width() >= 100 && w.combo2()->width() >= 100);
            QVERIFY(!w.combo2()->geometry().intersects(w.combo1()->geometry()));
        }
    }

    void rightToLeftPickers()
    {
        FormMian& w = open(options(u"4|25|1|1|15|0|1"_s)); // Arabic to Hebrew
        const auto directions = [&w] {
            return QList{w.sourceBox()->layoutDirection(), w.resultBox()->layoutDirection(),
                         w.phoneticBox()->layoutDirection(), w.dictionaryBox()->layoutDirection()};
        };
        QCOMPARE(directions(), (QList{Qt::RightToLeft, Qt::RightToLeft, Qt::RightToLeft, Qt::LeftToRight}));
        QVERIFY(w.resultBox()->document()->defaultTextOption().alignment() & Qt::AlignRight);
        w.combo2()->setCurrentIndex(1);
        w.combo1()->setCurrentIndex(21); // Georgian stays in the right-to-left set
        QCOMPARE(directions(), (QList{Qt::LeftToRight, Qt::RightToLeft, Qt::RightToLeft, Qt::LeftToRight}));
        w.combo1()->setCurrentIndex(15);
        QCOMPARE(w.resultBox()->document()->defaultTextOption().alignment(),
                 w.dictionaryBox()->document()->defaultTextOption().alignment());
        QCOMPARE(w.phoneticBox()->layoutDirection(), Qt::LeftToRight);
    }

    // Menus

    void switchToSlovakKeepsTheRows()
    {
        FormMian& w = open();
        QSignalSpy changed(&w, &FormMian::interfaceLanguageChanged);
        w.combo2()->setCurrentIndex(21);
        w.combo1()->setCurrentIndex(47);
        // Languages without a table of their own change nothing.
        const QString before = settingsText() + w.jcbutton(kTranslate)->text();
        for (int n = 205; n <= 211; ++n)
            w.action(u"menuS%1"_s.arg(n))->trigger();
        QCOMPARE(settingsText() + w.jcbutton(kTranslate)->text() + checked(w, kLanguages),
                 before + u"menuS201"_s);
        QCOMPARE(changed.count(), 0);
        w.dispatch(u"menuS213"_s);
        QCOMPARE(changed.count(), 1);
        QCOMPARE(rig->settings->language() + u' ' + checked(w, kLanguages), u"6 menuS213"_s);
        QVERIFY(w.action(u"menuF3"_s)->text() != u"Exit"_s);
        // The pickers are refilled in Slovak and keep their rows.
        QCOMPARE(w.combo2()->itemText(0) + w.combo1()->itemText(47),
                 StringTable::text(6099) + StringTable::text(6085));
        QCOMPARE(rows(w), (QList{21, 47}));
        w.dispatch(u"menuS201"_s);
        QCOMPARE(w.action(u"menuF3"_s)->text() + w.combo1()->currentText(), u"ExitSlovak"_s);
        QCOMPARE(rig->settings->language(), u"1"_s);
    }

    void visualStylesAndAutoCopy()
    {
        FormMian& w = open({{u"Style"_s, u"7"_s}});
        auto* pic1 = w.findChild<QWidget*>(u"Pic1"_s);
        const auto colours = [&] {
            return QList{pic1->palette().color(pic1->backgroundRole()),
                         w.check2()->palette().color(QPalette::Window),
                         w.jcbutton(kClear)->palette().color(QPalette::Button)};
        };
        const QPalette platform = QApplication::palette();
        const QColor window = platform.color(QPalette::Window), button = platform.color(QPalette::Button),
                     light = platform.color(QPalette::Light), blue(173, 209, 255);
        QCOMPARE(checked(w, kStyles), QString()); // 7 does nothing
        QCOMPARE(colours(), (QList{window, window, button}));
        // Styles 0 and 3 leave the buttons' colour as it was.
        for (const auto& [style, expected] :
             {qMakePair(1, QList{blue, blue, blue}), qMakePair(0, QList{button, button, blue}),
              qMakePair(3, QList{light, light, blue})}) {
            w.action(u"STYLE:%1"_s.arg(style))->trigger();
            QCOMPARE(rig->settings->style(), style);
            QCOMPARE(colours(), expected);
        }
        w.action(u"menuS5"_s)->trigger();
        QVERIFY(rig->settings->autoCopy());
    }

    void optionsDialogOkAndClose()
    {
        FormMian& w = open(kFrench);
        int shown = 0;
        QString button = u"Command2"_s;
        rig->dialogAnswer = [&](QDialog* dialog) {
            auto* form = qobject_cast<Form2*>(dialog);
            if (!form)
                return -1;
            ++shown;
            form->combo2()->setCurrentIndex(1);
            form->combo3()->setCurrentIndex(22);
            form->check(3)->setChecked(false);
            form->check(1)->setChecked(true);
            form->findChild<QAbstractButton*>(button)->click();
            return form->result();
        };
        QApplication::clipboard()->setText(u"cat"_s);
        const QString before = settingsText();
        w.dispatch(u"menuS1"_s);
        QCOMPARE(settingsText(), before);
        QCOMPARE(rows(w), (QList{0, 19}));
        // OK, here from the tray menu's item, stores the string and applies it at once.
        button = u"Command1"_s;
        w.dispatch(u"menuSYS2"_s);
        QCOMPARE(shown, 2);
        QCOMPARE(rig->settings->optionsText(), u"1|22|0|1|15|1|1"_s);
        QCOMPARE(rows(w), (QList{1, 22}));
        QVERIFY(!w.jcbutton(kSwap)->isEnabled() && w.phoneticBox()->isHidden());
        QVERIFY(panesTile(w));
        // OK restarts monitoring, which takes the clipboard's text again.
        QTRY_COMPARE(w.sourceBox()->toPlainText(), u"cat"_s);
        w.sourceBox()->setPlainText(u"typed"_s);
        w.dispatch(u"menuS1"_s);
        QTRY_COMPARE(w.sourceBox()->toPlainText(), u"cat"_s);
        QApplication::clipboard()->clear();
    }

    void cachingIsAppliedBeforeMonitoring()
    {
        for (const auto& [stored, cached] :
             {qMakePair(u"0|19|1|1|15|x|1"_s, u"hello"_s), qMakePair(u"0|19|1|1|15|1|x"_s, QString()),
              qMakePair(u"0|19|1|1|15|0|0"_s, QString())}) {
            FormMian& w = open(options(stored));
            for (const QString& text : {u"hello"_s, u"world"_s})
                translate(w, text);
            w.jcbuttonClick(kBack);
            QCOMPARE(w.sourceBox()->toPlainText(), cached);
            QVERIFY(!w.clipboardMonitor()->monitoring());
        }
    }

    void openTranslatesAndSaveWrites()
    {
        FormMian& w = open(kFrench, true);
        rig->fileAnswer = rig->dir.filePath(u"blank.txt"_s);
        QVERIFY(writeFile(rig->fileAnswer, "    "));
        w.dispatch(u"menuF1"_s);
        settle(w);
        QCOMPARE(rig->fileRequests.constFirst().nameFilters,
                 QStringList({u"Text (*.TXT *.ini *.inf *.log)"_s, u"All (*.*)"_s}));
        QVERIFY(rig->service.requests().isEmpty());
        QVERIFY(writeFile(rig->fileAnswer, QByteArray("\xFE\xFF\0h\0e\0l\0l\0o", 12))); // UTF-16 BE
        w.dispatch(u"menuF1"_s);
        settle(w);
        QCOMPARE(boxes(w).section(u'|', 0, 1), u"hello|bonjour"_s);
        // Saving the results of that translation.
        rig->fileAnswer = rig->dir.filePath(u"results.txt"_s);
        w.dispatch(u"menuF2"_s);
        QCOMPARE(rig->fileRequests.constLast().defaultSuffix, u"txt"_s);
        QCOMPARE(rig->opened, QStringList{QUrl::fromLocalFile(rig->fileAnswer).toString()});
        const QStringList lines = ReadTextFile(rig->fileAnswer).split(u"\r\n"_s);
        QCOMPARE((QStringList{lines.at(2), lines.at(5), lines.at(8), lines.at(11)}), // below their banners
                 QStringList({u"hello"_s, u"bonjour"_s, u"/bonjour/"_s, u"interjection:"_s}));
        rig->fileAnswer = rig->dir.filePath(u"missing/results.txt"_s);
        w.dispatch(u"menuF2"_s);
        QCOMPARE(rig->notices.size(), 1);
        QCOMPARE(rig->notices.constFirst().text, u"Save failed! Reason: No such file or directory"_s);
        QCOMPARE(rig->opened.size(), 1);
    }

    // Buttons

    void translateSendsTheFormAndFillsTheBoxes()
    {
        FormMian& w = open(kEnglishFrench, true);
        QSignalSpy finished(&w, &FormMian::translationFinished);
        // The box gives the text back exactly, untrimmed, to the request and to the history.
        const QString exact = u" a\u00a0b\u2028c\u2029d\r\ne\rf\ng "_s;
        setBoxText(w.sourceBox(), exact);
        w.jcbuttonClick(kTranslate);
        settle(w);
        QCOMPARE(lastForm(), "prev=hp&hl=de&ie=UTF-8&js=y&text=" + exact.toUtf8() + "&file=&sl=en&tl=fr");
        w.jcbuttonClick(kClear);
        for (int i = 0; i < 3; ++i)
            w.jcbuttonClick(kBack);
        QCOMPARE(boxText(w.sourceBox()), exact);
        w.sourceBox()->setPlainText(u"hello"_s);
        w.dispatch(u"menuF0"_s); // the menu item does the same
        settle(w);
        QCOMPARE(boxes(w), u"hello|bonjour|/bonjour/|interjection:\n1. bonjour\n2. salut\n3. allô\n"_s);
        QVERIFY(w.statusMessage().isEmpty());
        // A blank source sends nothing and empties the results.
        translate(w, u"   "_s);
        QCOMPARE(boxes(w), u"   |||"_s);
        QCOMPARE(rig->service.requests().size(), 2);
        QCOMPARE(finished.count(), 2);
    }

    void swapExchangesTheLanguages()
    {
        FormMian& w = open(kEnglishFrench, true);
        w.sourceBox()->setPlainText(u"hello"_s);
        w.jcbuttonClick(kSwap);
        settle(w);
        QCOMPARE(rows(w), (QList{21, 15}));
        QVERIFY(lastForm().endsWith("&sl=fr&tl=en"));
        QCOMPARE(w.resultBox()->toPlainText(), u"HELLO"_s);
        w.combo2()->setCurrentIndex(1); // detection: Swap is disabled and does nothing
        QVERIFY(!w.jcbutton(kSwap)->isEnabled());
        w.jcbuttonClick(kSwap);
        settle(w);
        QCOMPARE(rig->service.requests().size(), 1);
        QCOMPARE(rows(w), (QList{1, 15}));
    }

    void backWrapsAroundTheRing()
    {
        FormMian& w = open(kEnglishFrench, true);
        const QStringList texts{QString(100, u'a'), u"world"_s, QString(101, u'x'), u"thank you"_s};
        const QList<int> targets{19, 22, 19, 49};
        for (int i = 0; i < texts.size(); ++i) {
            w.combo1()->setCurrentIndex(targets.at(i));
            translate(w, texts.at(i));
            QCOMPARE(w.speakerButton(0)->isHidden() || w.speakerButton(1)->isHidden(), i == 2); // up to 100
        }
        // The fourth overwrote slot 0: Back shows the third, the second, then wraps to the fourth.
        w.jcbuttonClick(kBack);
        QCOMPARE(boxes(w).section(u'|', 0, 1), texts.at(2) + u'|' + QString(101, u'X'));
        QVERIFY(w.speakerButton(0)->isHidden());
        w.jcbuttonClick(kBack);
        QCOMPARE(boxes(w).section(u'|', 0, 2), u"world|WORLD|/world/"_s);
        QCOMPARE(rows(w), (QList{17, 22}));
        QVERIFY(!w.speakerButton(0)->isHidden());
        w.jcbuttonClick(kBack);
        QCOMPARE(w.sourceBox()->toPlainText(), texts.at(3));
        w.jcbuttonClick(kTranslate); // the pickers' codes follow the restored rows
        settle(w);
        QVERIFY(lastForm().endsWith("&sl=en&tl=es"));
    }

    void copyKeepsTheSpaces()
    {
        FormMian& w = open(options(u"0|19|1|1|15|1|1"_s));
        QSignalSpy copied(w.clipboardMonitor(), &ClipboardMonitor::textCopied);
        w.resultBox()->setPlainText(u"   leading and trailing  "_s);
        w.jcbuttonClick(kCopy);
        w.resultBox()->setPlainText(u"    "_s);
        w.jcbuttonClick(kCopy); // a blank result is not copied
        QCOMPARE(QGuiApplication::clipboard()->text(), u"   leading and trailing  "_s);
        QTest::qWait(50); // the program's own copy is not taken back as a new source
        QCOMPARE(copied.count(), 0);
        QVERIFY(w.sourceBox()->toPlainText().isEmpty());
    }

    void pasteAndClear()
    {
        FormMian& w = open(kFrench, true);
        for (const QString& text : {u"world"_s, u"hello"_s})
            translate(w, text);
        QGuiApplication::clipboard()->setText(u" pasted 中文"_s);
        w.sourceBox()->moveCursor(QTextCursor::End);
        w.jcbuttonClick(kPaste);
        QCOMPARE(w.sourceBox()->toPlainText(), u"hello pasted 中文"_s);
        QVERIFY(!w.speakerButton(0)->isHidden());
        w.jcbuttonClick(kClear);
        QCOMPARE(boxes(w), u"|||"_s);
        QVERIFY(w.speakerButton(0)->isHidden() && w.speakerButton(1)->isHidden());
        w.jcbuttonClick(kBack); // the ring is untouched
        QCOMPARE(boxes(w).section(u'|', 0, 1), u"world|monde"_s);
        QCOMPARE(rig->service.requests().size(), 2);
    }

    void offlineNoticeAndRefusalInTheStatusLine()
    {
        FormMian& w = open(kFrench, true);
        rig->connectivity.setOnline(false);
        translate(w, u"hello"_s);
        QCOMPARE(rig->notices.size(), 1);
        QCOMPARE(rig->notices.at(0).title + u'|' + rig->notices.at(0).text,
                 u"Notice|Is not connected to the Internet."_s);
        QVERIFY(rig->notices.at(0).icon == QMessageBox::Warning && rig->notices.at(0).owned);
        // A copied text: the ownerless OK/Cancel notice; the text still lands in the source box.
        w.translateCopiedText(u"copied"_s);
        settle(w);
        QCOMPARE(rig->notices.size(), 2);
        QCOMPARE(rig->notices.at(1).buttons, QMessageBox::Ok | QMessageBox::Cancel);
        QVERIFY(!rig->notices.at(1).owned);
        QCOMPARE(boxes(w), u"copied|||"_s);
        rig->connectivity.setOnline(true); // nothing was sent: one request below
        rig->service.setFormMode(StandinService::FormMode::Refused);
        w.sourceBox()->setPlainText(u"hello"_s);
        w.resultBox()->setPlainText(u"old"_s);
        rig->service.setRetryAfter("3600");
        // Said with the time of the next request; the service is not asked again before it.
        const auto said = [] {
            const QDateTime now = QDateTime::currentDateTime();
            return StringTable::text(1000 + MsgRefusedUntil).arg(localTimeText(now.addSecs(3600), now));
        };
        const QString before = said();
        w.jcbuttonClick(kTranslate);
        settle(w);
        const QString refused = w.statusMessage();
        QVERIFY2(refused == before || refused == said(), qPrintable(refused));
        QCOMPARE(boxes(w), u"hello|||"_s);
        QCOMPARE(rig->notices.size(), 2);
        rig->service.setFormMode(StandinService::FormMode::Legacy);
        w.jcbuttonClick(kTranslate);
        settle(w);
        QCOMPARE(std::pair(w.statusMessage(), rig->service.requests().size()),
                 std::pair(refused, qsizetype(1)));
        QVERIFY(QFile::remove(ServiceBackoff::defaultFilePath()));
        w.jcbuttonClick(kTranslate);
        settle(w);
        QVERIFY(w.statusMessage().isEmpty());
    }

    void escapeCancelsAndInputIsHeld()
    {
        FormMian& w = open(kFrench, true);
        QVERIFY(shownOnScreen(w));
        rig->service.setDelayMs(4000);
        int dialogs = 0;
        rig->dialogAnswer = [&dialogs](QDialog*) { return ++dialogs, 0; };
        w.sourceBox()->setPlainText(u"hello"_s);
        w.resultBox()->setPlainText(u"old"_s);
        QString whileRunning;
        QTimer::singleShot(200, &w, [&] {
            QTest::keyClick(w.sourceBox(), Qt::Key_X);
            QTest::mouseClick(w.jcbutton(kClear), Qt::LeftButton);
            whileRunning = w.statusMessage() + u'|' + w.sourceBox()->toPlainText();
            w.systemMenu()->actions().at(1)->trigger(); // "Options": runs when the translation ends
            whileRunning += u'|' + QString::number(dialogs);
            QTest::keyClick(w.sourceBox(), Qt::Key_Escape);
        });
        w.jcbuttonClick(kTranslate);
        settle(w);
        QCOMPARE(whileRunning, StringTable::text(1000 + MsgTranslating) + u"|hello|0"_s);
        QTRY_COMPARE(dialogs, 1);
        QCOMPARE(w.statusMessage(), u"Translation cancelled."_s);
        QCOMPARE(boxes(w), u"hello|||"_s);
        QVERIFY(!w.isTranslating() && !QGuiApplication::overrideCursor());
        w.sourceBox()->moveCursor(QTextCursor::End);
        QTest::keyClick(w.sourceBox(), Qt::Key_Y);
        QCOMPARE(w.sourceBox()->toPlainText(), u"helloy"_s);
    }

    void webPageTranslation()
    {
        FormMian& w = open(kEnglishFrench, true);
        auto* go = w.findChild<QAbstractButton*>(u"jcbutton1"_s);
        for (int i = 0; i <= 10; ++i) {
            w.ucComText()->setEditText(i ? u"site%1.example"_s.arg(i) : u"  example.org/a b?x=1&y=2#top "_s);
            go->click();
        }
        QCOMPARE(rig->opened.constFirst(),
                 rig->service.baseUrl() +
                     u"/translate?js=n&prev=_t&hl=de&ie=UTF-8&layout=2&eotf=1&sl=en&tl=fr"
                     u"&u=example.org/a b?x=1&y=2#top"_s);
        QCOMPARE(w.ucComText()->count(), 10); // the oldest address is dropped
        QCOMPARE(w.ucComText()->itemText(0), u"site1.example"_s);
        QVERIFY(rig->service.requests().isEmpty());
    }

    void closeHidesWhileExitQuits()
    {
        FormMian& w = open();
        QVERIFY(shownOnScreen(w));
        QSignalSpy hidden(&w, &FormMian::hiddenToTray);
        QSignalSpy exiting(&w, &FormMian::exiting);
        QVERIFY(!w.close()); // without a tray: minimised, still reachable
        QVERIFY(w.isMinimized() && w.isVisible());
        w.setTrayPresent(true); // a tray that comes up takes the minimised window in
        QVERIFY(w.isHidden());
        w.toggleShowHide();
        QVERIFY(!w.close());
        QTRY_VERIFY(w.isHidden());
        QCOMPARE(hidden.count() + exiting.count(), 2);
        w.dispatch(u"menuF3"_s);
        QVERIFY(w.exitRequested() && !w.clipboardMonitor()->monitoring());
        QCOMPARE(exiting.count(), 1);
    }
};

QTEST_MAIN(TestFormMian)
#include "test_formmian.moc"
