#include "FormMianRig.h"
#include "app/StringTable.h"
#include "desktop/ModmonClip.h"
#include "translate/ServiceAddresses.h"

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QTest>
#include <QTextDocument>

using namespace quillora;
using quillora::test::FormMianRig;

namespace
{

QStringList checkedStyles(FormMian& w)
{
    QStringList keys;
    for (int s = 0; s < 4; ++s) {
        const QString key = QStringLiteral("STYLE:%1").arg(s);
        if (w.action(key)->isChecked())
            keys << key;
    }
    return keys;
}

QStringList checkedLanguages(FormMian& w)
{
    QStringList keys;
    for (int n = 201; n <= 214; ++n) {
        const QString key = QStringLiteral("menuS%1").arg(n);
        if (w.action(key)->isChecked())
            keys << key;
    }
    return keys;
}

} // namespace

class TestFormMianLoad : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void firstRun();
    void boxesAreUnicodeTextAreas();
    void optionsHidePanesAndStopMonitoring();
    void shortAndGarbledOptions_data();
    void shortAndGarbledOptions();
    void styleOutsideRangeChecksNothing();
    void storedLanguageAndFallback();
    void rightToLeftPickersAtLoad();
    void storedFontReachesTheBoxes();
    void missingGlobalKeyIsSaidOnce();
    void monitoringTakesTheClipboardAtLoad();
};

void TestFormMianLoad::firstRun()
{
    FormMianRig rig;
    FormMian& w = rig.window();

    QCOMPARE(w.interfaceLanguage(), QStringLiteral("1"));
    QCOMPARE(w.windowTitle(), QStringLiteral("Quillora"));
    QCOMPARE(checkedLanguages(w), QStringList{QStringLiteral("menuS201")});
    QCOMPARE(checkedStyles(w), QStringList{QStringLiteral("STYLE:2")});
    QVERIFY(!w.action(QStringLiteral("menuS5"))->isChecked());
    QVERIFY(!w.action(QStringLiteral("menuS0"))->isChecked());

    QVERIFY(w.check1()->isChecked());
    QVERIFY(w.check2()->isChecked());
    QCOMPARE(w.sourceBox()->geometry(), QRect(0, 0, 710, 135));
    QCOMPARE(w.resultBox()->geometry(), QRect(0, 188, 710, 135));
    QCOMPARE(w.phoneticBox()->geometry(), QRect(0, 325, 400, 102));
    QCOMPARE(w.dictionaryBox()->geometry(), QRect(403, 325, 307, 102));
    QVERIFY(!w.phoneticBox()->isHidden());
    QVERIFY(!w.dictionaryBox()->isHidden());
    QVERIFY(w.responseBox()->isHidden());

    QCOMPARE(w.combo2()->count(), 61);
    QCOMPARE(w.combo2()->currentIndex(), 0);
    QCOMPARE(w.combo2()->itemText(0), QStringLiteral("Detect language"));
    QCOMPARE(w.combo2()->itemText(1), QStringLiteral("-------------"));
    QCOMPARE(w.combo1()->count(), 59);
    QCOMPARE(w.combo1()->currentIndex(), 15);
    QCOMPARE(w.combo1()->currentText(), QStringLiteral("English"));
    QVERIFY(!w.jcbutton(1)->isEnabled());

    const QStringList captions{QStringLiteral("&Translate"), QStringLiteral("Swap"),
                               QStringLiteral("Back"),       QStringLiteral("Copy"),
                               QStringLiteral("Paste"),      QStringLiteral("Clear")};
    const QStringList tips{QStringLiteral("Translate"),
                           QStringLiteral("Swap Language"),
                           QStringLiteral("Return to translation"),
                           QStringLiteral("Copy translation of results"),
                           QStringLiteral("Paste to Original"),
                           QStringLiteral("Clear")};
    for (int i = 0; i < 6; ++i) {
        QCOMPARE(w.jcbutton(i)->text(), captions.at(i));
        QCOMPARE(w.jcbutton(i)->toolTip(), tips.at(i));
    }
    QCOMPARE(w.jcbutton(6), nullptr);
    QCOMPARE(w.check1()->text(), QStringLiteral("Show phonetically"));
    QCOMPARE(w.check2()->text(), QStringLiteral("Show dictionary"));

    QVERIFY(w.clipboardMonitor()->monitoring());
    QCOMPARE(w.ucComText()->currentText(), ServiceAddresses::fromEnvironment().webAddressBoxDefault());
    QVERIFY(w.speakerButton(0)->isHidden());
    QVERIFY(w.speakerButton(1)->isHidden());
    QVERIFY(w.statusMessage().isEmpty());
    QVERIFY(!w.isTranslating());
    QVERIFY(!w.exitRequested());
    // Loading reads; it stores nothing.
    QVERIFY(rig.settingsText().isEmpty());
}

void TestFormMianLoad::boxesAreUnicodeTextAreas()
{
    FormMianRig rig;
    FormMian& w = rig.window();
    const QList<QPlainTextEdit*> boxes{w.sourceBox(), w.resultBox(), w.phoneticBox(), w.dictionaryBox()};
    const QStringList names{QStringLiteral("Source text"), QStringLiteral("Translation"),
                            QStringLiteral("Romanization"), QStringLiteral("Dictionary")};
    for (int i = 0; i < boxes.size(); ++i) {
        QPlainTextEdit* box = boxes.at(i);
        QCOMPARE(box->accessibleName(), names.at(i));
        QCOMPARE(box->lineWrapMode(), QPlainTextEdit::WidgetWidth);
        QCOMPARE(box->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOn);
        QCOMPARE(box->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
        QCOMPARE(box->layoutDirection(), Qt::LeftToRight);
        QVERIFY(box->toPlainText().isEmpty());
        const QString text = QStringLiteral("中文 ไทย Slovenčina עברית");
        box->setPlainText(text);
        QCOMPARE(box->toPlainText(), text);
    }
}

void TestFormMianLoad::optionsHidePanesAndStopMonitoring()
{
    FormMianRig rig({{QStringLiteral("Options"), QStringLiteral("3|7|0|0|15|0|0")}});
    FormMian& w = rig.window();
    QCOMPARE(w.combo2()->currentIndex(), 3);
    QCOMPARE(w.combo1()->currentIndex(), 7);
    QVERIFY(w.jcbutton(1)->isEnabled());
    QVERIFY(!w.check1()->isChecked());
    QVERIFY(!w.check2()->isChecked());
    QVERIFY(w.phoneticBox()->isHidden());
    QVERIFY(w.dictionaryBox()->isHidden());
    QCOMPARE(w.resultBox()->geometry(), QRect(0, 188, 710, 239));
    QVERIFY(!w.clipboardMonitor()->monitoring());
}

void TestFormMianLoad::shortAndGarbledOptions_data()
{
    QTest::addColumn<QString>("options");
    QTest::addColumn<int>("sourceRow");
    QTest::addColumn<int>("targetRow");
    QTest::addColumn<bool>("phonetic");
    QTest::addColumn<bool>("monitoring");

    QTest::newRow("two fields") << QStringLiteral("3|7") << 3 << 7 << true << false;
    QTest::newRow("text in field 1") << QStringLiteral("4|x|0|0|15|1|1") << 4 << 15 << true << false;
    QTest::newRow("nothing readable") << QStringLiteral("garbage") << 0 << 15 << true << false;
    QTest::newRow("six fields, phonetic off") << QStringLiteral("0|19|0|1|15|1") << 0 << 19 << false << false;
    QTest::newRow("rows out of range") << QStringLiteral("99|-4|1|1|15|1|1") << 0 << 15 << true << true;
}

void TestFormMianLoad::shortAndGarbledOptions()
{
    QFETCH(QString, options);
    FormMianRig rig({{QStringLiteral("Options"), options}});
    FormMian& w = rig.window();
    QTEST(w.combo2()->currentIndex(), "sourceRow");
    QTEST(w.combo1()->currentIndex(), "targetRow");
    QTEST(!w.phoneticBox()->isHidden(), "phonetic");
    QVERIFY(!w.dictionaryBox()->isHidden());
    QTEST(w.clipboardMonitor()->monitoring(), "monitoring");
    QCOMPARE(w.windowTitle(), QStringLiteral("Quillora"));
}

void TestFormMianLoad::styleOutsideRangeChecksNothing()
{
    FormMianRig seven({{QStringLiteral("Style"), QStringLiteral("7")}});
    QVERIFY(checkedStyles(seven.window()).isEmpty());

    FormMianRig zero({{QStringLiteral("Style"), QStringLiteral("0")}});
    QCOMPARE(checkedStyles(zero.window()), QStringList{QStringLiteral("STYLE:0")});

    FormMianRig word({{QStringLiteral("Style"), QStringLiteral("blue")}});
    QVERIFY(checkedStyles(word.window()).isEmpty());
}

void TestFormMianLoad::storedLanguageAndFallback()
{
    FormMianRig slovak({{QStringLiteral("Language"), QStringLiteral("6")},
                        {QStringLiteral("AutoCopy"), QStringLiteral("True")}});
    FormMian& w = slovak.window();
    QCOMPARE(w.interfaceLanguage(), QStringLiteral("6"));
    QCOMPARE(checkedLanguages(w), QStringList{QStringLiteral("menuS213")});
    QVERIFY(w.action(QStringLiteral("menuS5"))->isChecked());
    QCOMPARE(w.windowTitle(), StringTable::text(6017));
    QCOMPARE(w.jcbutton(0)->text(), StringTable::text(6025));
    QCOMPARE(w.jcbutton(1)->toolTip(), StringTable::text(6113));
    QCOMPARE(w.combo2()->itemText(0), StringTable::text(6099));
    QCOMPARE(w.combo1()->itemText(15), StringTable::text(6053));
    QVERIFY(w.jcbutton(0)->text() != QStringLiteral("&Translate"));

    for (const QString& stored :
         {QStringLiteral("9"), QStringLiteral("0"), QStringLiteral("1x"), QStringLiteral(" 2")}) {
        FormMianRig odd({{QStringLiteral("Language"), stored}});
        QCOMPARE(odd.window().interfaceLanguage(), QStringLiteral("1"));
        QCOMPARE(odd.window().jcbutton(0)->text(), QStringLiteral("&Translate"));
        QCOMPARE(checkedLanguages(odd.window()), QStringList{QStringLiteral("menuS201")});
    }

    // An empty value asks the system locale, which always names one of the seven.
    FormMianRig empty({{QStringLiteral("Language"), QString()}});
    const int chosen = empty.window().interfaceLanguage().toInt();
    QVERIFY(chosen >= 1 && chosen <= 7);
    QCOMPARE(checkedLanguages(empty.window()).size(), 1);
}

void TestFormMianLoad::rightToLeftPickersAtLoad()
{
    // Source Arabic (row 4), target Hebrew (catalogue 25).
    FormMianRig rig({{QStringLiteral("Options"), QStringLiteral("4|25|1|1|15|0|1")}});
    FormMian& w = rig.window();
    for (QPlainTextEdit* box : {w.sourceBox(), w.resultBox(), w.phoneticBox()}) {
        QCOMPARE(box->layoutDirection(), Qt::RightToLeft);
        QVERIFY(box->document()->defaultTextOption().alignment() & Qt::AlignRight);
        QVERIFY(box->document()->defaultTextOption().alignment() & Qt::AlignAbsolute);
    }
    QCOMPARE(w.dictionaryBox()->layoutDirection(), Qt::LeftToRight);

    // Back to detection and English: the boxes take the dictionary box's left-to-right layout.
    w.combo2()->setCurrentIndex(1);
    w.combo1()->setCurrentIndex(15);
    for (QPlainTextEdit* box : {w.sourceBox(), w.resultBox(), w.phoneticBox()}) {
        QCOMPARE(box->layoutDirection(), Qt::LeftToRight);
        QCOMPARE(box->document()->defaultTextOption().alignment(),
                 w.dictionaryBox()->document()->defaultTextOption().alignment());
    }
    QVERIFY(!w.jcbutton(1)->isEnabled());
    // Georgian stays in the right-to-left set.
    w.combo1()->setCurrentIndex(21);
    QCOMPARE(w.resultBox()->layoutDirection(), Qt::RightToLeft);
}

void TestFormMianLoad::storedFontReachesTheBoxes()
{
    FormMianRig plain;
    QCOMPARE(plain.window().resultBox()->font().family(), QStringLiteral("Tahoma"));
    QCOMPARE(plain.window().resultBox()->font().pointSize(), 12);

    FormMianRig rig({{QStringLiteral("Font"), QStringLiteral("DejaVu Serif|700|True|15|0|False|False|255")}});
    for (QPlainTextEdit* box : {rig.window().sourceBox(), rig.window().resultBox(),
                                rig.window().phoneticBox(), rig.window().dictionaryBox()}) {
        QCOMPARE(box->font().family(), QStringLiteral("DejaVu Serif"));
        QCOMPARE(box->font().pointSize(), 15);
        QVERIFY(box->font().bold());
        QVERIFY(box->font().italic());
    }
}

void TestFormMianLoad::missingGlobalKeyIsSaidOnce()
{
    // The offscreen platform has no global key at all.
    FormMianRig rig({{QStringLiteral("Language"), QStringLiteral("5")}}, false, true);
    QCOMPARE(rig.window().statusMessage(), StringTable::text(5000 + MsgHotKeyTaken));
    QVERIFY(!rig.window().statusMessage().isEmpty());

    FormMianRig without;
    QVERIFY(without.window().statusMessage().isEmpty());
}

void TestFormMianLoad::monitoringTakesTheClipboardAtLoad()
{
    QGuiApplication::clipboard()->setText(QStringLiteral("hello"));
    {
        FormMianRig rig({{QStringLiteral("Options"), QStringLiteral("0|19|1|1|15|1|1")}}, true);
        QCOMPARE(rig.window().sourceBox()->toPlainText(), QStringLiteral("hello"));
        QCOMPARE(rig.window().resultBox()->toPlainText(), QStringLiteral("bonjour"));
        QCOMPARE(rig.service().count("POST", QStringLiteral("/")), 1);
    }
    FormMianRig off({{QStringLiteral("Options"), QStringLiteral("0|19|1|1|15|0|1")}}, true);
    QVERIFY(off.window().sourceBox()->toPlainText().isEmpty());
    QVERIFY(off.service().requests().isEmpty());
    QGuiApplication::clipboard()->clear();
}

QTEST_MAIN(TestFormMianLoad)
#include "test_formmian_load.moc"
