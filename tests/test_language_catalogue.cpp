#include "translate/LanguageCatalogue.h"

#include <QTest>
#include <algorithm>

using namespace quillora;
using namespace Qt::StringLiterals;

class TestLanguageCatalogue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The codes the service knows, in the pickers' order; out of range is empty, "he" is not one.
    void codes()
    {
        QStringList codes;
        for (int index = -1; index <= kLanguageCount; ++index)
            codes.append(LanguageCode(index));
        QCOMPARE(
            codes.join(u' '),
            u" af sq ar hy az eu be bg ca zh-CN zh-TW hr cs da nl en et tl fi fr gl ka de el ht iw hi hu is "
            u"id"
            u" ga it ja ko la lv lt mk ms mt no fa pl pt ro ru sr sk sl es sw sv th tr uk ur vi cy yi "_s);
        QCOMPARE(std::pair(languageIndexForCode(u"zh-TW"_s), languageIndexForCode(u"he"_s)),
                 std::pair(10, -1));
    }

    // Source rows are catalogue entries two rows down; the two rows above them mean detection.
    // The pickers show the names in the interface language.
    void pickers()
    {
        QList<int> rightToLeftSources, rightToLeftTargets;
        for (int row = -1; row <= kLanguageCount + kSourcePickerOffset; ++row) {
            const SourceRowEffect source = sourceRowEffect(row);
            QCOMPARE(source.sourceCode + u'/' + QString::number(source.swapEnabled),
                     row < 2 ? u"/0"_s : LanguageCode(row - 2) + u"/1"_s);
            if (source.rightToLeft)
                rightToLeftSources.append(row);
            if (targetRowEffect(row).rightToLeft)
                rightToLeftTargets.append(row);
        }
        QCOMPARE(rightToLeftTargets, QList<int>({2, 21, 25, 41, 55, 58}));
        QCOMPARE(rightToLeftSources, QList<int>({4, 23, 27, 43, 57, 60}));
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
