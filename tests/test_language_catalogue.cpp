#include "translate/LanguageCatalogue.h"

#include <QTest>

using namespace quillora;
using namespace Qt::StringLiterals;

class TestLanguageCatalogue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The service's own spellings where they differ from the usual ones ("iw", not "he"), and the ends.
    void codes()
    {
        const QList<std::pair<int, QString>> rows{{-1, QString()},  {0, u"af"_s},   {9, u"zh-CN"_s},
                                                  {10, u"zh-TW"_s}, {17, u"tl"_s},  {25, u"iw"_s},
                                                  {58, u"yi"_s},    {59, QString()}};
        for (const auto& [index, code] : rows) {
            QCOMPARE(LanguageCode(index), code);
            QCOMPARE(languageIndexForCode(code), code.isEmpty() ? -1 : index);
        }
        QCOMPARE(languageIndexForCode(u"he"_s), -1);
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
        QCOMPARE(sourcePickerNames(1), QStringList({u"Detect language"_s, u"-------------"_s}) + targets);
        QVERIFY(targetPickerNames(3) != targets);
    }
};

QTEST_GUILESS_MAIN(TestLanguageCatalogue)
#include "test_language_catalogue.moc"
