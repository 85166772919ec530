#include "PrivateMounts.h"
#include "TestSupport.h"
#include "app/Settings.h"
#include "app/StringTable.h"
#include "translate/LanguageCatalogue.h"

#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace quillora;
using namespace Qt::StringLiterals;

// The interface strings, the language catalogue and the settings file.
class TestStringTables : public QObject
{
    Q_OBJECT
    QTemporaryDir m_dir;

    // Everything a Settings object reads, in one comparable line.
    static QString summary(const Settings& s)
    {
        return QStringList{s.optionsText(), s.language(), QString::number(s.style()),
                           s.autoCopy() ? u"T"_s : u"F"_s, s.fontText()}
            .join(u';');
    }

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
            const QString text = StringTable::text(language, offset), english = StringTable::text(1, offset);
            // Stray blanks are editing slips in the translations (English 16 keeps its own); accelerators
            // and placeholders as in English.
            QVERIFY2(!text.trimmed().isEmpty() && !text.contains(QChar::ReplacementCharacter) &&
                         (language == 1 || text == text.trimmed()) &&
                         text.count(u'&') == english.count(u'&') && text.count(u'%') == english.count(u'%'),
                     qPrintable(u"%1: %2"_s.arg(offset).arg(text)));
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

    // The service's own spellings where they differ from the usual ones ("iw", not "he"), and the ends.
    void catalogue()
    {
        const QList<std::pair<int, QString>> rows{
            {-1, QString()}, {0, u"af"_s}, {25, u"iw"_s}, {58, u"yi"_s}, {59, QString()}};
        for (const auto& [index, code] : rows) {
            QCOMPARE(LanguageCode(index), code);
            QCOMPARE(languageIndexForCode(code), code.isEmpty() ? -1 : index);
        }
        QCOMPARE(languageIndexForCode(u"he"_s), -1);
        // Source rows are catalogue entries two rows down; the two rows above them mean detection.
        // Per row: source code, swap, right-to-left; the same row as a target: code, right-to-left.
        // The pickers show the names in the interface language.
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

    // Values are stored as plain strings and read back whole.
    void settingsFile()
    {
        const QString file = m_dir.filePath(u"written.conf"_s);
        Settings s(file);
        s.setOptions({-3, 7, 0, 0, 15, 0, 0});
        s.setLanguage(u"6"_s);
        s.setStyle(0);
        s.setAutoCopy(true);
        s.setFontText(u"微软雅黑|700|True|14|134|False|True|255"_s);
        QCOMPARE(test::readFile(file),
                 QByteArray("[Setup]\nAutoCopy=True\nFont=微软雅黑|700|True|14|134|False|True|255\n"
                            "Language=6\nOptions=-3|7|0|0|15|0|0\nStyle=0\n"));
        s.setAutoCopy(false);
        s.setFontText(u"Noto Sans, Bold|400|False|12|0|False|False|0"_s);
        QCOMPARE(summary(Settings(file)),
                 u"-3|7|0|0|15|0|0;6;0;F;Noto Sans, Bold|400|False|12|0|False|False|0"_s);
        // Hand-edited files never break reading. Null content: no file at all, which reading must not create.
        const QString defaults = u"0|15|1|1|15|1|1;1;2;F;"_s + kDefaultFont;
        const QList<std::pair<QByteArray, QString>> rows{
            {QByteArray(), defaults},
            {"[Setup]\nOptions=1|2|zz\nStyle=abc\nAutoCopy=yes\nLanguage=\nFont=A,B\n",
             u"1|2|zz;;-1;F;A,B"_s},
            {"[Setup]\nOptions=1, 2\nAutoCopy=1\nStyle= 3 \n", u"1,2;1;3;T;"_s + kDefaultFont},
            {"[Other]\nLanguage=\nStyle=0\n", defaults},
            {QByteArray("\xff\xfe\x00[Setup\n=\n\x01\x02Options", 20), defaults}};
        for (const auto& [content, read] : rows) {
            const QString edited = m_dir.filePath(u"edited%1.conf"_s.arg(rows.indexOf({content, read})));
            QVERIFY(content.isNull() || test::writeFile(edited, content));
            QCOMPARE(summary(Settings(edited)), read);
            QCOMPARE(QFile::exists(edited), !content.isNull());
        }
    }

    // A full disk: the stored file stays as it was and the failure is told once, until a write succeeds.
    void aFailedWriteIsToldOnce()
    {
        const QString folder = m_dir.filePath(u"small"_s), file = folder + u"/Quillora.conf"_s;
        if (!test::enterPrivateMounts() || !test::mountSmallDisk(folder))
            QSKIP("needs a mount namespace of its own (root)");
        QVERIFY(test::writeFile(file, "[Setup]\nLanguage=2\n"));
        Settings s(file);
        QStringList told;
        s.setWriteFailureHandler([&told](const QString& reason) { told << reason; });
        for (int style : {0, 1, -1, 2, 3}) {
            if (style < 0)
                QVERIFY(QFile::remove(folder + u"/filler"_s));
            else if (style % 2 == 0)
                test::fillUp(folder);
            s.setStyle(style);
        }
        QCOMPARE(told, QStringList(2, qt_error_string(ENOSPC)));
        QCOMPARE(test::readFile(file), QByteArray("[Setup]\nLanguage=2\nStyle=-1\n"));
    }

    // Fields 0-4 stop at the first that does not read, 5 and 6 read on their own. Written back, an
    // empty field takes its default.
    void optionAndFontFields()
    {
        const QList<std::tuple<QString, Options, QString>> rows{
            {u"3|7|x|0|15|0|0"_s, {3, 7, {}, {}, {}, false, false}, u"3|7|1|1|15|0|0"_s},
            {u"3||1"_s, {3, {}, {}, {}, {}, {}, {}}, u"3|15|1|1|15|1|1"_s},
            {u"1.5|2|1|1|1|zz|0"_s, {{}, {}, {}, {}, {}, {}, false}, u"0|15|1|1|15|1|0"_s},
            {u"99999999999"_s, {}, u"0|15|1|1|15|1|1"_s},
            {u" -4 | 5 |2|0|7"_s, {-4, 5, true, false, 7, {}, {}}, u"-4|5|1|0|7|1|1"_s},
            {u"1|2|3|4|5|6|7|8"_s, {1, 2, true, true, 5, true, true}, u"1|2|1|1|5|1|1"_s}};
        for (const auto& [text, read, written] : rows) {
            QVERIFY2(Options::fromText(text) == read, qPrintable(text));
            QCOMPARE(read.toText(), written);
        }
        // A bad font field keeps its default and ends the reading; blanks and any case are fine.
        for (const auto& [text, fieldsRead, font] :
             {std::tuple(u" Arial |700|true|0|134|TRUE|1|255"_s, 3, u"Arial|700|True|12|0|False|False|0"_s),
              std::tuple(u"Arial|400|FALSE|9|134|1|0|16777216"_s, 7, u"Arial|400|False|9|134|True|False|0"_s),
              std::tuple(u" |700"_s, 0, kDefaultFont)}) {
            const ParsedFont parsed = parseFont(text);
            QCOMPARE(std::pair(parsed.fieldsRead, formatFont(parsed.font)), std::pair(fieldsRead, font));
        }
    }
};

QTEST_GUILESS_MAIN(TestStringTables)
#include "test_string_tables.moc"
