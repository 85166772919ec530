#include "app/StringTable.h"

#include <QRegularExpression>
#include <QSet>
#include <QTest>

using namespace quillora;
using namespace Qt::StringLiterals;

class TestStringTables : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // A line the loader cannot use (no tab, a bad offset) or a missing id is a warning.
    void init() { QTest::failOnWarning(QRegularExpression(u".*"_s)); }

    void everyTableIsComplete_data()
    {
        QTest::addColumn<int>("language");
        for (int language = 1; language <= kInterfaceLanguageCount; ++language)
            QTest::addRow("lang%d", language) << language;
    }

    // Offsets 1-128 but 97 and 98, then the status-line texts. Only names (the product, Office XP,
    // some languages) may read the same in two tables: none is a copy of another.
    void everyTableIsComplete()
    {
        QFETCH(int, language);
        int count = 0;
        QVector<int> sameAs(language);
        QSet<QString> languageNames;
        for (int offset = 0; offset < 1000; ++offset) {
            const bool exists = (offset >= 1 && offset <= 128 && offset != 97 && offset != 98) ||
                                (offset >= MsgServiceRefused && offset <= MsgPageNotOpened);
            QVERIFY2(StringTable::contains(language * 1000 + offset) == exists,
                     qPrintable(QString::number(offset)));
            if (!exists)
                continue;
            const QString text = StringTable::text(language, offset);
            QVERIFY2(!text.trimmed().isEmpty() && !text.contains(QChar::ReplacementCharacter),
                     qPrintable(QString::number(offset)));
            // Stray blanks are editing slips in the translations; English 16 keeps its own.
            QVERIFY2(language == 1 || text == text.trimmed(), qPrintable(text));
            // Accelerators and placeholders as in English.
            const QString english = StringTable::text(1, offset);
            QVERIFY2(text.count(u'&') == english.count(u'&') && text.count(u'%') == english.count(u'%'),
                     qPrintable(text));
            if (offset >= LanguageNames && offset < LanguageNames + 59)
                languageNames.insert(text);
            for (int other = 1; other < language; ++other)
                sameAs[other] += text == StringTable::text(other, offset);
            ++count;
        }
        QCOMPARE(languageNames.size(), 59); // equal names would make two picker rows alike
        for (int other = 1; other < language; ++other)
            QVERIFY2(sameAs[other] * 100 < count * 15, qPrintable(u"as lang%1"_s.arg(other)));
    }

    void missingIdsAreWarnedAbout()
    {
        QTest::ignoreMessage(QtWarningMsg, "No interface string 1097");
        QCOMPARE(StringTable::text(1097), QString());
        QTest::ignoreMessage(QtWarningMsg, "No interface string 9001");
        QCOMPARE(uiText(u"9"_s, 1), QString());
    }
};

QTEST_GUILESS_MAIN(TestStringTables)
#include "test_string_tables.moc"
