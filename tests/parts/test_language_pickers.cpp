#include "app/StringTable.h"
#include "desktop/LanguagePickers.h"

#include <QComboBox>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>

using namespace quillora;
using namespace Qt::StringLiterals;

class TestLanguagePickers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The first filling starts at detection into English; a refill in another language keeps the rows.
    void refillKeepsTheRows()
    {
        QWidget pic1;
        LanguagePickers pickers(&pic1);
        auto* combo1 = pic1.findChild<QComboBox*>(u"Combo1"_s);
        auto* combo2 = pic1.findChild<QComboBox*>(u"Combo2"_s);
        pickers.applyCaptions(1);
        QCOMPARE(std::pair(pickers.sourceRow(), pickers.targetRow()), std::pair(0, 15));
        QCOMPARE(combo2->count(), 61);
        combo2->setCurrentIndex(21);
        combo1->setCurrentIndex(47);
        pickers.applyCaptions(6);
        QCOMPARE(std::pair(pickers.sourceRow(), pickers.targetRow()), std::pair(21, 47));
        // The arrow keys pass over the separator row, which the program may still set (below).
        combo2->setCurrentIndex(0);
        QTest::keyClick(combo2, Qt::Key_Down);
        QCOMPARE(pickers.sourceRow(), 2);
        QTest::keyClick(combo2, Qt::Key_Up);
        QCOMPARE(pickers.sourceRow(), 0);
        QCOMPARE(combo2->itemText(0) + combo1->itemText(47),
                 StringTable::text(6, DetectLanguage) + StringTable::text(6, LanguageNames + 47));
        QCOMPARE(pic1.findChild<QLabel*>(u"fromLabel"_s)->text(), StringTable::text(6, LabelFrom));
    }

    // Every row change says what it means; a row the picker lacks keeps the row and says it again.
    void rowsSayWhatTheyMean()
    {
        QWidget pic1;
        LanguagePickers pickers(&pic1);
        pickers.applyCaptions(1);
        QSignalSpy source(&pickers, &LanguagePickers::sourceChosen);
        QSignalSpy target(&pickers, &LanguagePickers::targetChosen);
        pickers.setSourceRow(4); // Arabic
        pickers.setTargetRow(25);
        const auto sourceEffect = source.last().at(1).value<SourceRowEffect>();
        QCOMPARE(sourceEffect.sourceCode + u' ' + target.last().at(1).value<TargetRowEffect>().targetCode,
                 u"ar iw"_s);
        QVERIFY(sourceEffect.rightToLeft && sourceEffect.swapEnabled);
        pickers.setSourceRow(99);
        pickers.setTargetRow(-4);
        QCOMPARE(std::pair(pickers.sourceRow(), pickers.targetRow()), std::pair(4, 25));
        QCOMPARE(std::pair(source.count(), target.count()), std::pair(qsizetype(2), qsizetype(2)));
        pickers.setSourceRow(1); // the separator means detection, as row 0 does
        QVERIFY(!source.last().at(1).value<SourceRowEffect>().swapEnabled);
    }
};

QTEST_MAIN(TestLanguagePickers)
#include "test_language_pickers.moc"
