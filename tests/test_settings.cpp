#include "PrivateMounts.h"
#include "TestSupport.h"
#include "app/Settings.h"

#include <QTemporaryDir>
#include <QTest>

using namespace quillora;
using namespace Qt::StringLiterals;

class TestSettings : public QObject
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
    void valuesAreStoredAsPlainStrings()
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

    // Null content: no file at all, which reading must not create.
    void handEditedFilesNeverBreakReading()
    {
        const QString defaults = u"0|15|1|1|15|1|1;1;2;F;"_s + kDefaultFont;
        const QList<std::pair<QByteArray, QString>> rows{
            {QByteArray(), defaults},
            {"[Setup]\nOptions=1|2|zz\nStyle=abc\nAutoCopy=yes\nLanguage=\nFont=A,B\n",
             u"1|2|zz;;-1;F;A,B"_s},
            {"[Setup]\nOptions=1, 2\nAutoCopy=1\nStyle= 3 \n", u"1,2;1;3;T;"_s + kDefaultFont},
            {"[Other]\nLanguage=\nStyle=0\n", defaults},
            {QByteArray("\xff\xfe\x00[Setup\n=\n\x01\x02Options", 20), defaults}};
        for (const auto& [content, read] : rows) {
            const QString file = m_dir.filePath(u"edited%1.conf"_s.arg(rows.indexOf({content, read})));
            QVERIFY(content.isNull() || test::writeFile(file, content));
            QCOMPARE(summary(Settings(file)), read);
            QCOMPARE(QFile::exists(file), !content.isNull());
        }
    }

    // Fields 0-4 stop at the first that does not read, 5 and 6 read on their own. Written back, an
    // empty field takes its default.
    void optionFields()
    {
        const QString defaults = u"0|15|1|1|15|1|1"_s;
        const QList<std::tuple<QString, Options, QString>> rows{
            {defaults, {0, 15, true, true, 15, true, true}, defaults},
            {u"3|7|x|0|15|0|0"_s, {3, 7, {}, {}, {}, false, false}, u"3|7|1|1|15|0|0"_s},
            {u"3||1"_s, {3, {}, {}, {}, {}, {}, {}}, u"3|15|1|1|15|1|1"_s},
            {u"1.5|2|1|1|1|zz|0"_s, {{}, {}, {}, {}, {}, {}, false}, u"0|15|1|1|15|1|0"_s},
            {u"99999999999"_s, {}, defaults},
            {u" -4 | 5 |2|0|7"_s, {-4, 5, true, false, 7, {}, {}}, u"-4|5|1|0|7|1|1"_s},
            {u"1|2|3|4|5|6|7|8"_s, {1, 2, true, true, 5, true, true}, u"1|2|1|1|5|1|1"_s}};
        for (const auto& [text, read, written] : rows) {
            QVERIFY2(Options::fromText(text) == read, qPrintable(text));
            QCOMPARE(read.toText(), written);
        }
    }

    // A bad font field keeps its default and ends the reading; blanks and any case are fine.
    void badFontFieldsKeepTheirDefaults()
    {
        const ParsedFont cut = parseFont(u" Arial |700|true|0|134|TRUE|1|255"_s);
        QCOMPARE(cut.fieldsRead, 3);
        QCOMPARE(formatFont(cut.font), u"Arial|700|True|12|0|False|False|0"_s);
        const ParsedFont colour = parseFont(u"Arial|400|FALSE|9|134|1|0|16777216"_s);
        QCOMPARE(colour.fieldsRead, 7);
        QCOMPARE(formatFont(colour.font), u"Arial|400|False|9|134|True|False|0"_s);
        QCOMPARE(parseFont(u" |700"_s).fieldsRead, 0);
    }
};

QTEST_GUILESS_MAIN(TestSettings)
#include "test_settings.moc"
