#include "translate/LanguageCatalogue.h"

#include <QTest>
#include <algorithm>

using namespace quillora;
using namespace Qt::StringLiterals;

class TestLanguageCatalogue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void codes()
    {
        QStringList codes;
        for (int index : {-1, 0, 9, 10, 17, 21, 25, 58, 59})
            codes.append(LanguageCode(index));
        QCOMPARE(codes.join(u' '), u" af zh-CN zh-TW tl ka iw yi "_s);
        for (int i = 0; i < kLanguageCount; ++i)
            QCOMPARE(languageIndexForCode(LanguageCode(i)), i);
        QCOMPARE(languageIndexForCode(u"he"_s), -1);
    }

    // Source rows are catalogue entries two rows down; the two rows above them mean detection.
    // The pickers show the names in the interface language.
    void pickers()
    {
        QList<int> rightToLeftSources, rightToLeftTargets;
        for (int row = -1; row <= kLanguageCount + kSourcePickerOffset; ++row) {
            const SourceRowEffect source = sourceRowEffect(row);
            QCOMPARE(source.sourceCode, row < 2 ? QString() : LanguageCode(row - 2));
            QCOMPARE(source.swapEnabled, row >= 2);
            if (source.rightToLeft)
                rightToLeftSources.append(row);
            const TargetRowEffect target = targetRowEffect(row);
            QCOMPARE(target.targetCode, LanguageCode(row));
            if (target.rightToLeft)
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
