#include "translate/LanguageCatalogue.h"

#include <QTest>
#include <algorithm>

using namespace quillora;
using namespace Qt::StringLiterals;

class TestLanguageCatalogue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The codes the service knows, in the pickers' order; "he" is not one.
    void codes()
    {
        const QStringList codes =
            u"af sq ar hy az eu be bg ca zh-CN zh-TW hr cs da nl en et tl fi fr gl ka de el ht iw hi hu is "
            u"id "
            u"ga it ja ko la lv lt mk ms mt no fa pl pt ro ru sr sk sl es sw sv th tr uk ur vi cy yi"_s.split(
                u' ');
        for (int index = 0; index < kLanguageCount; ++index)
            QCOMPARE(LanguageCode(index), codes.at(index));
        QCOMPARE(LanguageCode(-1) + LanguageCode(kLanguageCount), QString());
        QCOMPARE(std::pair(languageIndexForCode(u"zh-TW"_s), languageIndexForCode(u"he"_s)),
                 std::pair(10, -1));
    }

    // Source rows are catalogue entries two rows down; the two rows above them mean detection.
    // Per row: source code, swap, right-to-left; the same row as a target: code, right-to-left.
    // The pickers show the names in the interface language.
    void pickers()
    {
        QStringList seen;
        for (int row : {0, 1, 2, 4, 27, 60}) {
            const SourceRowEffect s = sourceRowEffect(row);
            const TargetRowEffect t = targetRowEffect(row);
            seen << u"%1 %2 %3 %4 %5"_s.arg(s.sourceCode, QString::number(s.swapEnabled),
                                            QString::number(s.rightToLeft), t.targetCode,
                                            QString::number(t.rightToLeft));
        }
        QCOMPARE(seen.join(u'|'), u" 0 0 af 0| 0 0 sq 0|af 1 0 ar 1|ar 1 1 az 0|iw 1 1 hu 0|yi 1 1  0"_s);
        const QStringList targets = targetPickerNames(1);
        QCOMPARE(targets.size(), kLanguageCount);
        QCOMPARE(targets.at(25), u"Hebrew"_s);
        QVERIFY(std::is_sorted(targets.begin(), targets.end()));
        QCOMPARE(sourcePickerNames(1), QStringList({u"Detect language"_s, u"-------------"_s}) + targets);
        QVERIFY(targetPickerNames(3) != targets);
    }
};

QTEST_GUILESS_MAIN(TestLanguageCatalogue)
#include "test_language_catalogue.moc"
