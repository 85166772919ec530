#include "TestSupport.h"
#include "app/Settings.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

using namespace quillora;

namespace
{

QVector<int> ints(std::initializer_list<int> values)
{
    return QVector<int>(values);
}

} // namespace

class TestSettings : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString path(const QString& name) const { return m_dir.filePath(name); }

private Q_SLOTS:
    void fileLivesUnderTheConfigFolder()
    {
        const QString config = qEnvironmentVariableIsEmpty("XDG_CONFIG_HOME")
                                   ? QDir::homePath() + QStringLiteral("/.config")
                                   : qEnvironmentVariable("XDG_CONFIG_HOME");
        QCOMPARE(Settings::defaultFilePath(), config + QStringLiteral("/Quillora/Quillora.conf"));
    }

    void firstRunGivesTheDefaults()
    {
        const Settings s(path(QStringLiteral("first.conf")));
        QCOMPARE(s.optionsText(), QStringLiteral("0|15|1|1|15|1|1"));
        QCOMPARE(s.options().fields, ints({0, 15, 1, 1, 15, 1, 1}));
        QVERIFY(s.options().complete());
        QCOMPARE(s.language(), QStringLiteral("1"));
        QCOMPARE(s.style(), 2);
        QCOMPARE(s.autoCopy(), false);
        QCOMPARE(s.fontText(), QStringLiteral("Tahoma|400|False|12|0|False|False|0"));
        QCOMPARE(parseFont(s.fontText()).font, FontSetting());
        QVERIFY(!QFile::exists(s.filePath()));
    }

    void valuesAreStoredAsPlainStrings()
    {
        const QString file = path(QStringLiteral("written.conf"));
        {
            Settings s(file);
            s.setOptions({3, 7, 0, 0, 15, 0, 0});
            s.setLanguage(QStringLiteral("6"));
            s.setStyle(0);
            s.setAutoCopy(true);
            s.setFontText(QStringLiteral("DejaVu Sans|700|True|14|0|False|True|255"));
        }
        const QByteArray bytes = test::readFile(file);
        QVERIFY(bytes.startsWith("[Setup]\n"));
        for (const char* line : {"Options=3|7|0|0|15|0|0\n", "Language=6\n", "Style=0\n", "AutoCopy=True\n",
                                 "Font=DejaVu Sans|700|True|14|0|False|True|255\n"})
            QVERIFY2(bytes.contains(line), line);

        const Settings again(file);
        QCOMPARE(again.options().fields, ints({3, 7, 0, 0, 15, 0, 0}));
        QCOMPARE(again.language(), QStringLiteral("6"));
        QCOMPARE(again.style(), 0);
        QCOMPARE(again.autoCopy(), true);
        QCOMPARE(again.fontText(), QStringLiteral("DejaVu Sans|700|True|14|0|False|True|255"));

        Settings(file).setAutoCopy(false);
        QVERIFY(test::readFile(file).contains("AutoCopy=False\n"));
        QCOMPARE(Settings(file).autoCopy(), false);
    }

    void awkwardTextsSurviveTheRoundTrip()
    {
        const QString file = path(QStringLiteral("awkward.conf"));
        const QString face = QStringLiteral("Noto Sans CJK SC, Bold|400|False|12|0|False|False|0");
        const QString chinese = QStringLiteral("微软雅黑|400|False|12|134|False|False|0");
        Settings s(file);
        s.setFontText(face);
        QCOMPARE(Settings(file).fontText(), face);
        s.setFontText(chinese);
        QCOMPARE(Settings(file).fontText(), chinese);
        QVERIFY(test::readFile(file).contains(chinese.toUtf8()));
    }

    void optionFields_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QVector<int>>("fields");
        QTest::newRow("default") << kDefaultOptions << ints({0, 15, 1, 1, 15, 1, 1});
        QTest::newRow("hidden boxes") << QStringLiteral("3|7|0|0|15|0|0") << ints({3, 7, 0, 0, 15, 0, 0});
        QTest::newRow("short") << QStringLiteral("3|7") << ints({3, 7});
        QTest::newRow("non-numeric third") << QStringLiteral("3|7|x|0|15|0|0") << ints({3, 7});
        QTest::newRow("empty field") << QStringLiteral("3||1") << ints({3});
        QTest::newRow("fraction") << QStringLiteral("1.5|2") << ints({});
        QTest::newRow("overflow") << QStringLiteral("99999999999|2") << ints({});
        QTest::newRow("empty") << QString() << ints({});
        QTest::newRow("blanks around") << QStringLiteral(" 4 | 5 ") << ints({4, 5});
        QTest::newRow("negative") << QStringLiteral("-1|3") << ints({-1, 3});
        QTest::newRow("extra fields") << QStringLiteral("1|2|3|4|5|6|7|8|9") << ints({1, 2, 3, 4, 5, 6, 7});
        QTest::newRow("commas") << QStringLiteral("1,2,3") << ints({});
    }

    void optionFields()
    {
        QFETCH(QString, text);
        QFETCH(QVector<int>, fields);
        const ParsedOptions parsed = parseOptions(text);
        QCOMPARE(parsed.fields, fields);
        QCOMPARE(parsed.stoppedAt(), fields.size());
        QCOMPARE(parsed.complete(), fields.size() == OptionFieldCount);
        QCOMPARE(parsed.has(OptCaching), fields.size() == OptionFieldCount);
        QCOMPARE(parsed.has(OptSourceRow), !fields.isEmpty());
    }

    void formatOptionsJoinsWithoutTrailingBar()
    {
        QCOMPARE(formatOptions({0, 15, 1, 1, 15, 1, 1}), kDefaultOptions);
        QCOMPARE(formatOptions({-3, 60, 0, 0, 0, 0, 12}), QStringLiteral("-3|60|0|0|0|0|12"));
    }

    void handEditedFileNeverBreaksReading()
    {
        const QString file = path(QStringLiteral("hand.conf"));
        QVERIFY(test::writeFile(file, "[Setup]\nOptions=1|2|zz|4\nStyle=abc\nAutoCopy=yes\nLanguage=\n"
                                      "Font=Arial|heavy\n"));
        const Settings s(file);
        QCOMPARE(s.options().fields, ints({1, 2}));
        QCOMPARE(s.options().stoppedAt(), 2);
        QCOMPARE(s.style(), -1);
        QCOMPARE(s.autoCopy(), false);
        QCOMPARE(s.language(), QString());
        const ParsedFont font = parseFont(s.fontText());
        QCOMPARE(font.fieldsRead, 1);
        QCOMPARE(font.font.face, QStringLiteral("Arial"));
        QCOMPARE(font.font.weight, 400);

        const QString commas = path(QStringLiteral("commas.conf"));
        QVERIFY(test::writeFile(commas, "[Setup]\nOptions=1, 2, 3\nAutoCopy=1\nStyle= 3 \n"));
        const Settings c(commas);
        QCOMPARE(c.optionsText(), QStringLiteral("1,2,3"));
        QCOMPARE(c.options().fields, ints({}));
        QCOMPARE(c.autoCopy(), true);
        QCOMPARE(c.style(), 3);

        const QString garbage = path(QStringLiteral("garbage.conf"));
        QVERIFY(test::writeFile(garbage, QByteArray("\xff\xfe\x00[Setup\n=\n\x01\x02Options", 20)));
        const Settings g(garbage);
        QCOMPARE(g.optionsText(), kDefaultOptions);
        QCOMPARE(g.language(), QStringLiteral("1"));
        QCOMPARE(g.style(), 2);
    }

    void missingLanguageIsEnglishButEmptyIsLeftToTheLocale()
    {
        const QString missing = path(QStringLiteral("missing-lang.conf"));
        QVERIFY(test::writeFile(missing, "[Setup]\nStyle=1\n"));
        QCOMPARE(Settings(missing).language(), QStringLiteral("1"));

        const QString empty = path(QStringLiteral("empty-lang.conf"));
        QVERIFY(test::writeFile(empty, "[Setup]\nLanguage=\n"));
        QVERIFY(Settings(empty).language().isEmpty());

        const QString otherGroup = path(QStringLiteral("other-group.conf"));
        QVERIFY(test::writeFile(otherGroup, "[Other]\nLanguage=\n"));
        QCOMPARE(Settings(otherGroup).language(), QStringLiteral("1"));
    }

    void fontFields_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("fieldsRead");
        QTest::addColumn<QString>("face");
        QTest::addColumn<int>("weight");
        QTest::addColumn<bool>("italic");
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("charset");
        QTest::addColumn<bool>("underline");
        QTest::addColumn<bool>("strikeOut");
        QTest::addColumn<uint>("color");
        const QString tahoma = QStringLiteral("Tahoma");
        QTest::newRow("default") << kDefaultFont << 8 << tahoma << 400 << false << 12 << 0 << false << false
                                 << 0u;
        QTest::newRow("all set") << QStringLiteral("Arial|700|True|10|134|True|True|16711680") << 8
                                 << QStringLiteral("Arial") << 700 << true << 10 << 134 << true << true
                                 << 16711680u;
        QTest::newRow("lower-case booleans")
            << QStringLiteral("Arial|400|true|9|0|false|TRUE|255") << 8 << QStringLiteral("Arial") << 400
            << true << 9 << 0 << false << true << 255u;
        QTest::newRow("stops at bad size")
            << QStringLiteral("Arial|700|True|big|0|True|True|1") << 3 << QStringLiteral("Arial") << 700
            << true << 12 << 0 << false << false << 0u;
        QTest::newRow("colour out of range")
            << QStringLiteral("Arial|400|False|12|0|False|False|16777216") << 7 << QStringLiteral("Arial")
            << 400 << false << 12 << 0 << false << false << 0u;
        QTest::newRow("zero size") << QStringLiteral("Arial|400|False|0") << 3 << QStringLiteral("Arial")
                                   << 400 << false << 12 << 0 << false << false << 0u;
        QTest::newRow("empty") << QString() << 0 << tahoma << 400 << false << 12 << 0 << false << false << 0u;
        QTest::newRow("blank face") << QStringLiteral(" |700") << 0 << tahoma << 400 << false << 12 << 0
                                    << false << false << 0u;
    }

    void fontFields()
    {
        QFETCH(QString, text);
        QFETCH(int, fieldsRead);
        const ParsedFont parsed = parseFont(text);
        QCOMPARE(parsed.fieldsRead, fieldsRead);
        QTEST(parsed.font.face, "face");
        QTEST(parsed.font.weight, "weight");
        QTEST(parsed.font.italic, "italic");
        QTEST(parsed.font.pointSize, "size");
        QTEST(parsed.font.charset, "charset");
        QTEST(parsed.font.underline, "underline");
        QTEST(parsed.font.strikeOut, "strikeOut");
        QTEST(uint(parsed.font.colorBgr), "color");
    }

    void formatFontRoundTrips()
    {
        QCOMPARE(formatFont(FontSetting()), kDefaultFont);
        FontSetting f;
        f.face = QStringLiteral("Liberation Serif");
        f.weight = 700;
        f.italic = true;
        f.pointSize = 16;
        f.charset = 238;
        f.strikeOut = true;
        f.colorBgr = 0x00FF80;
        const QString text = formatFont(f);
        QCOMPARE(text, QStringLiteral("Liberation Serif|700|True|16|238|False|True|65408"));
        QCOMPARE(parseFont(text).font, f);
        FontSetting g = f;
        g.underline = true;
        QVERIFY(!(g == f));
    }
};

QTEST_GUILESS_MAIN(TestSettings)
#include "test_settings.moc"
