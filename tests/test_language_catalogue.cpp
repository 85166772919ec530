#include "app/StringTable.h"
#include "translate/LanguageCatalogue.h"

#include <QSet>
#include <QTest>
#include <algorithm>

using namespace quillora;

class TestLanguageCatalogue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void codes()
    {
        QCOMPARE(LanguageCode(0), QStringLiteral("af"));
        QCOMPARE(LanguageCode(9), QStringLiteral("zh-CN"));
        QCOMPARE(LanguageCode(10), QStringLiteral("zh-TW"));
        QCOMPARE(LanguageCode(15), QStringLiteral("en"));
        QCOMPARE(LanguageCode(17), QStringLiteral("tl"));
        QCOMPARE(LanguageCode(25), QStringLiteral("iw"));
        QCOMPARE(LanguageCode(47), QStringLiteral("sk"));
        QCOMPARE(LanguageCode(58), QStringLiteral("yi"));
        QCOMPARE(LanguageCode(59), QString());
        QCOMPARE(LanguageCode(-1), QString());

        QSet<QString> seen;
        for (int i = 0; i < kLanguageCount; ++i) {
            const QString code = LanguageCode(i);
            QVERIFY(!code.isEmpty());
            QVERIFY2(!seen.contains(code), qPrintable(code));
            seen.insert(code);
            QCOMPARE(languageIndexForCode(code), i);
        }
        QCOMPARE(languageIndexForCode(QStringLiteral("he")), -1);
        QCOMPARE(languageIndexForCode(QString()), -1);
    }

    void rightToLeftSet()
    {
        QList<int> rtl;
        for (int i = -2; i < kLanguageCount + 2; ++i) {
            if (isRightToLeftLanguage(i))
                rtl.append(i);
        }
        QCOMPARE(rtl, QList<int>({2, 21, 25, 41, 55, 58}));
    }

    void sourceRows()
    {
        for (int row : {0, 1}) {
            const SourceRowEffect e = sourceRowEffect(row);
            QVERIFY(e.sourceCode.isEmpty());
            QVERIFY(!e.rightToLeft);
            QVERIFY(!e.swapEnabled);
        }
        QVERIFY(!sourceRowEffect(-1).swapEnabled);

        QList<int> rtlRows;
        for (int row = 2; row < kLanguageCount + kSourcePickerOffset; ++row) {
            const SourceRowEffect e = sourceRowEffect(row);
            QCOMPARE(e.sourceCode, LanguageCode(row - 2));
            QVERIFY(e.swapEnabled);
            if (e.rightToLeft)
                rtlRows.append(row);
        }
        QCOMPARE(rtlRows, QList<int>({4, 23, 27, 43, 57, 60}));
        QCOMPARE(sourceRowEffect(17).sourceCode, QStringLiteral("en"));
    }

    void targetRows()
    {
        const TargetRowEffect georgian = targetRowEffect(21);
        QCOMPARE(georgian.targetCode, QStringLiteral("ka"));
        QVERIFY(georgian.rightToLeft);
        QCOMPARE(targetRowEffect(2).rightToLeft, true);
        const TargetRowEffect english = targetRowEffect(15);
        QCOMPARE(english.targetCode, QStringLiteral("en"));
        QVERIFY(!english.rightToLeft);
        QCOMPARE(targetRowEffect(59).targetCode, QString());
    }

    void englishPickers()
    {
        const QStringList targets = targetPickerNames(1);
        QCOMPARE(targets.size(), kLanguageCount);
        QCOMPARE(targets.first(), QStringLiteral("Afrikaans"));
        QCOMPARE(targets.at(15), QStringLiteral("English"));
        QCOMPARE(targets.at(25), QStringLiteral("Hebrew"));
        QCOMPARE(targets.last(), QStringLiteral("Yiddish"));
        QVERIFY(std::is_sorted(targets.begin(), targets.end()));

        const QStringList sources = sourcePickerNames(1);
        QCOMPARE(sources.size(), kLanguageCount + 2);
        QCOMPARE(sources.at(0), QStringLiteral("Detect language"));
        QCOMPARE(sources.at(1), QStringLiteral("-------------"));
        QCOMPARE(sources.mid(2), targets);
    }

    void englishTableIsComplete()
    {
        for (int offset = 1; offset <= 128; ++offset) {
            const int id = 1000 + offset;
            const bool expected = offset != 97 && offset != 98;
            QVERIFY2(StringTable::contains(id) == expected, qPrintable(QString::number(id)));
            if (expected)
                QVERIFY2(!StringTable::text(id).trimmed().isEmpty(), qPrintable(QString::number(id)));
        }
        for (int offset = MsgServiceRefused; offset <= MsgTranslating; ++offset)
            QVERIFY(!StringTable::text(1, offset).isEmpty());
        QVERIFY(!StringTable::contains(1129));
        QVERIFY(!StringTable::contains(1200));
        QVERIFY(!StringTable::contains(8001));
    }

    void englishTexts()
    {
        QCOMPARE(StringTable::text(1001), QStringLiteral("&File"));
        QCOMPARE(StringTable::text(1016), QStringLiteral("Google Translate Home "));
        QCOMPARE(StringTable::text(1017), QStringLiteral("Quillora"));
        QCOMPARE(StringTable::text(1019), QStringLiteral("Quillora is running ..."));
        QCOMPARE(StringTable::text(1035), QStringLiteral("Automatic Cahing 3 Translation"));
        QCOMPARE(StringTable::text(1048), QStringLiteral("Chinese (Traditional)"));
        QCOMPARE(StringTable::text(1099), QStringLiteral("Detect language"));
        QCOMPARE(StringTable::text(1102), QStringLiteral("Is not connected to the Internet."));
        QCOMPARE(StringTable::text(1103),
                 QStringLiteral(
                     "This software is based on Google Translate, it supports 58 different languages."));
        QCOMPARE(StringTable::text(1106),
                 QStringLiteral("© 2026 The Quillora developers. All rights reserved."));
        QCOMPARE(StringTable::text(1107), QStringLiteral("Email: quillora@zelvan.org"));
        QCOMPARE(StringTable::text(1120), QStringLiteral("Website Translate(Url)"));
        QCOMPARE(StringTable::text(1, 128), QStringLiteral("Auto copy the translation"));
        QCOMPARE(StringTable::text(1, MsgTranslating), QStringLiteral("Translating…"));
        QCOMPARE(uiText(QStringLiteral("1"), 100), QStringLiteral("Notice"));
    }

    void missingIdIsEmptyWithAWarning()
    {
        QTest::ignoreMessage(QtWarningMsg, "No interface string 1097");
        QCOMPARE(StringTable::text(1097), QString());
        QTest::ignoreMessage(QtWarningMsg, "No interface string 9001");
        QCOMPARE(uiText(QStringLiteral("9"), 1), QString());
    }
};

QTEST_GUILESS_MAIN(TestLanguageCatalogue)
#include "test_language_catalogue.moc"
