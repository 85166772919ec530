#include "TestSupport.h"
#include "desktop/ModUniTxt.h"
#include "desktop/ResultsFile.h"

#include <QTemporaryDir>
#include <QTest>

using namespace quillora;

namespace
{

// Latin, CJK, Cyrillic, Hebrew and a character outside the basic plane.
const QString kSample = QStringLiteral("Grüße, 你好, Привет, שלום 😀\r\nline two");

QByteArray bytes(const char* data, int size)
{
    return QByteArray(data, size);
}

// The name iconv knows a legacy codec by.
QString iconvName(const QByteArray& codec)
{
    return codec == "windows-874" ? QStringLiteral("CP874") : QString::fromLatin1(codec).toUpper();
}

// A text every legacy codec of the system locale can hold, and whose bytes are not valid UTF-8.
QString legacySample(const QByteArray& codec)
{
    if (codec == "GBK")
        return QStringLiteral("你好，世界");
    if (codec == "Big5")
        return QStringLiteral("中文繁體");
    if (codec == "windows-874")
        return QStringLiteral("สวัสดี");
    if (codec == "windows-1250")
        return QStringLiteral("Žluťoučký kůň");
    return QStringLiteral("Café crème");
}

} // namespace

class TestTextFiles : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString path(const QString& name) const { return m_dir.filePath(name); }

private Q_SLOTS:
    void detectEncoding_data()
    {
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<int>("encoding");
        QTest::addColumn<int>("length");
        QTest::newRow("utf-32 le") << bytes("\xFF\xFE\x00\x00", 4) << int(EncUtf32LE) << 4;
        QTest::newRow("utf-32 be") << bytes("\x00\x00\xFE\xFF", 4) << int(EncUtf32BE) << 4;
        QTest::newRow("utf-16 le") << bytes("\xFF\xFE\x41\x00", 4) << int(EncUtf16LE) << 2;
        QTest::newRow("utf-16 be") << bytes("\xFE\xFF\x00\x41", 4) << int(EncUtf16BE) << 2;
        QTest::newRow("utf-8") << bytes("\xEF\xBB\xBF\x41", 4) << int(EncUtf8) << 3;
        QTest::newRow("utf-8 mark only") << bytes("\xEF\xBB\xBF", 3) << int(EncUtf8) << 3;
        QTest::newRow("plain") << QByteArray("abcd") << int(EncAnsi) << 0;
        QTest::newRow("cut utf-8 mark") << bytes("\xEF\xBB", 2) << int(EncAnsi) << 0;
        QTest::newRow("empty") << QByteArray() << int(EncAnsi) << 0;
    }

    void detectEncoding()
    {
        QFETCH(QByteArray, head);
        const ByteOrderMark mark = quillora::detectEncoding(head);
        QTEST(mark.encoding, "encoding");
        QTEST(mark.length, "length");
    }

    void readsFilesWrittenByIconv_data()
    {
        QTest::addColumn<QByteArray>("mark");
        QTest::addColumn<QString>("codec");
        QTest::addColumn<int>("encoding");
        QTest::newRow("utf-8 unmarked") << QByteArray() << QStringLiteral("UTF-8") << int(EncAnsi);
        QTest::newRow("utf-8") << bytes("\xEF\xBB\xBF", 3) << QStringLiteral("UTF-8") << int(EncUtf8);
        QTest::newRow("utf-16 le") << bytes("\xFF\xFE", 2) << QStringLiteral("UTF-16LE") << int(EncUtf16LE);
        QTest::newRow("utf-16 be") << bytes("\xFE\xFF", 2) << QStringLiteral("UTF-16BE") << int(EncUtf16BE);
        QTest::newRow("utf-32 le") << bytes("\xFF\xFE\x00\x00", 4) << QStringLiteral("UTF-32LE")
                                   << int(EncUtf32LE);
        QTest::newRow("utf-32 be") << bytes("\x00\x00\xFE\xFF", 4) << QStringLiteral("UTF-32BE")
                                   << int(EncUtf32BE);
    }

    void readsFilesWrittenByIconv()
    {
        QFETCH(QByteArray, mark);
        QFETCH(QString, codec);
        const QByteArray body = test::iconvEncode(kSample, codec);
        QVERIFY(!body.isEmpty());
        const QString file = path(QStringLiteral("iconv-%1.txt").arg(codec));
        QVERIFY(test::writeFile(file, mark + body));
        int encoding = -7;
        QCOMPARE(ReadTextFile(file, &encoding), kSample);
        QTEST(encoding, "encoding");
    }

    void readsLegacyCodePages_data()
    {
        QTest::addColumn<QByteArray>("codec");
        QTest::addColumn<QString>("text");
        QTest::newRow("windows-1252")
            << QByteArray("windows-1252") << QStringLiteral("Grüße, café € “quoted”");
        QTest::newRow("windows-1250") << QByteArray("windows-1250") << QStringLiteral("Žluťoučký kůň úpěl");
        QTest::newRow("GBK") << QByteArray("GBK") << QStringLiteral("你好，世界。简体中文");
        QTest::newRow("Big5") << QByteArray("Big5") << QStringLiteral("中文繁體字");
        QTest::newRow("windows-874") << QByteArray("windows-874") << QStringLiteral("ภาษาไทย สวัสดี");
    }

    void readsLegacyCodePages()
    {
        QFETCH(QByteArray, codec);
        QFETCH(QString, text);
        const QByteArray encoded = test::iconvEncode(text, iconvName(codec));
        QVERIFY(!encoded.isEmpty());
        int encoding = -7;
        QCOMPARE(decodeFileBytes(encoded, &encoding, codec), text);
        QCOMPARE(encoding, int(EncAnsi));
        // Valid UTF-8 wins over the legacy code page.
        QCOMPARE(decodeFileBytes(text.toUtf8(), &encoding, codec), text);
    }

    void readsTheSystemCodePage()
    {
        const QByteArray codec = systemLegacyCodec();
        const QString text = legacySample(codec);
        const QString file = path(QStringLiteral("system-legacy.txt"));
        QVERIFY(test::writeFile(file, test::iconvEncode(text, iconvName(codec))));
        QCOMPARE(ReadTextFile(file), text);
    }

    void malformedInputBecomesReplacementCharacters_data()
    {
        const QChar r = QChar::ReplacementCharacter;
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QString>("text");
        QTest::newRow("utf-8 bad byte") << bytes("\xEF\xBB\xBF"
                                                 "a\xFF"
                                                 "b",
                                                 6)
                                        << QStringLiteral("a%1b").arg(r);
        QTest::newRow("utf-8 cut sequence") << bytes("\xEF\xBB\xBF"
                                                     "a\xE4\xBD",
                                                     6)
                                            << QStringLiteral("a%1%1").arg(r);
        QTest::newRow("utf-16 odd length")
            << bytes("\xFF\xFE\x41\x00\x42", 5) << QStringLiteral("A%1").arg(r);
        QTest::newRow("utf-16 lone high")
            << bytes("\xFF\xFE\x00\xD8\x41\x00", 6) << QStringLiteral("%1A").arg(r);
        QTest::newRow("utf-16 lone low")
            << bytes("\xFE\xFF\xDC\x00\x00\x41", 6) << QStringLiteral("%1A").arg(r);
        QTest::newRow("utf-16 pair kept") << bytes("\xFF\xFE\x3D\xD8\x00\xDE", 6) << QStringLiteral("😀");
        QTest::newRow("utf-32 beyond range")
            << bytes("\xFF\xFE\x00\x00\x00\x00\x11\x00\x41\x00\x00\x00", 12) << QStringLiteral("%1A").arg(r);
        QTest::newRow("utf-32 surrogate")
            << bytes("\x00\x00\xFE\xFF\x00\x00\xD8\x00\x00\x00\x00\x42", 12) << QStringLiteral("%1B").arg(r);
        QTest::newRow("utf-32 cut unit")
            << bytes("\xFF\xFE\x00\x00\x41\x00\x00\x00\x42", 9) << QStringLiteral("A%1").arg(r);
        QTest::newRow("mark only") << bytes("\xFF\xFE\x00\x00", 4) << QString();
    }

    void malformedInputBecomesReplacementCharacters()
    {
        QFETCH(QByteArray, data);
        QTEST(decodeFileBytes(data, nullptr, "windows-1252"), "text");
    }

    void badLegacyInputIsReplacedToo()
    {
        const QString text = decodeFileBytes(bytes("\x81\x20"
                                                   "A",
                                                   3),
                                             nullptr, "GBK");
        QCOMPARE(text, QStringLiteral("%1 A").arg(QChar(QChar::ReplacementCharacter)));
    }

    void unreadableFilesReadAsEmpty()
    {
        int encoding = -7;
        QCOMPARE(ReadTextFile(path(QStringLiteral("no-such-file.txt")), &encoding), QString());
        QCOMPARE(encoding, int(EncAnsi));
        QCOMPARE(ReadTextFile(m_dir.path(), &encoding), QString());
        const QString empty = path(QStringLiteral("empty.txt"));
        QVERIFY(test::writeFile(empty, QByteArray()));
        QCOMPARE(ReadTextFile(empty, &encoding), QString());
    }

    void writesWhatOtherProgramsRead_data()
    {
        QTest::addColumn<int>("encoding");
        QTest::addColumn<QByteArray>("mark");
        QTest::addColumn<QString>("codec");
        QTest::newRow("0 as utf-8") << int(EncAnsi) << QByteArray() << QStringLiteral("UTF-8");
        QTest::newRow("1") << int(EncUtf8) << bytes("\xEF\xBB\xBF", 3) << QStringLiteral("UTF-8");
        QTest::newRow("2") << int(EncUtf16LE) << bytes("\xFF\xFE", 2) << QStringLiteral("UTF-16LE");
        QTest::newRow("3") << int(EncUtf16BE) << bytes("\xFE\xFF", 2) << QStringLiteral("UTF-16BE");
    }

    void writesWhatOtherProgramsRead()
    {
        QFETCH(int, encoding);
        QFETCH(QByteArray, mark);
        QFETCH(QString, codec);
        const QString file = path(QStringLiteral("written-%1.txt").arg(encoding));
        QVERIFY(test::writeFile(file, QByteArray(4096, 'x')));
        int enc = encoding;
        QVERIFY(WriteTextFile(file, kSample, false, enc));
        QCOMPARE(enc, encoding);
        const QByteArray written = test::readFile(file);
        QCOMPARE(written.left(mark.size()), mark);
        QCOMPARE(written.mid(mark.size()), test::iconvEncode(kSample, codec));
        QCOMPARE(test::iconvDecode(written.mid(mark.size()), codec), kSample);
        int readBack = -7;
        QCOMPARE(ReadTextFile(file, &readBack), kSample);
        QCOMPARE(readBack, encoding);
    }

    void utf32IsWrittenAsMarkOnly()
    {
        const QString le = path(QStringLiteral("utf32le.txt"));
        int enc = EncUtf32LE;
        QVERIFY(!WriteTextFile(le, kSample, false, enc));
        QCOMPARE(test::readFile(le), bytes("\xFF\xFE\x00\x00", 4));
        const QString be = path(QStringLiteral("utf32be.txt"));
        enc = EncUtf32BE;
        QVERIFY(!WriteTextFile(be, kSample, false, enc));
        QCOMPARE(test::readFile(be), bytes("\x00\x00\xFE\xFF", 4));
    }

    void refusedWrites()
    {
        const QString file = path(QStringLiteral("refused.txt"));
        int enc = 6;
        QVERIFY(!WriteTextFile(file, kSample, false, enc));
        enc = -1;
        QVERIFY(!WriteTextFile(file, kSample, false, enc));
        QVERIFY(!QFile::exists(file));
        enc = EncUtf8;
        QVERIFY(!WriteTextFile(path(QStringLiteral("missing-folder/x.txt")), kSample, false, enc));
        QVERIFY(!WriteTextFile(path(QStringLiteral("missing-folder/x.txt")), kSample, true, enc));
    }

    void appendKeepsTheFilesOwnEncoding()
    {
        const QString be = path(QStringLiteral("append-be.txt"));
        QVERIFY(
            test::writeFile(be, bytes("\xFE\xFF", 2) + test::iconvEncode(QStringLiteral("abc"), "UTF-16BE")));
        int enc = EncUtf8;
        QVERIFY(WriteTextFile(be, QStringLiteral("déf😀"), true, enc));
        QCOMPARE(enc, int(EncUtf16BE));
        QCOMPARE(test::readFile(be), bytes("\xFE\xFF", 2) + test::iconvEncode(QStringLiteral("abcdéf😀"),
                                                                              QStringLiteral("UTF-16BE")));

        const QString utf8 = path(QStringLiteral("append-utf8.txt"));
        QVERIFY(test::writeFile(utf8, "plain "));
        enc = -1;
        QVERIFY(WriteTextFile(utf8, QStringLiteral("grüße"), true, enc));
        QCOMPARE(enc, int(EncAnsi));
        QCOMPARE(test::readFile(utf8), QStringLiteral("plain grüße").toUtf8());

        const QString u32 = path(QStringLiteral("append-utf32.txt"));
        QVERIFY(test::writeFile(u32, bytes("\xFF\xFE\x00\x00\x41\x00\x00\x00", 8)));
        enc = -1;
        QVERIFY(!WriteTextFile(u32, QStringLiteral("B"), true, enc));
        QCOMPARE(enc, int(EncUtf32LE));
        QCOMPARE(test::readFile(u32).size(), 8);
    }

    void appendToANewOrEmptyFileWritesAMark()
    {
        const QString fresh = path(QStringLiteral("append-new.txt"));
        int enc = -1;
        QVERIFY(WriteTextFile(fresh, QStringLiteral("hi"), true, enc));
        QCOMPARE(enc, int(EncUtf16LE));
        QCOMPARE(test::readFile(fresh), bytes("\xFF\xFE"
                                              "h\0i\0",
                                              6));

        const QString empty = path(QStringLiteral("append-empty.txt"));
        QVERIFY(test::writeFile(empty, QByteArray()));
        enc = EncUtf8;
        QVERIFY(WriteTextFile(empty, QStringLiteral("ü"), true, enc));
        QCOMPARE(test::readFile(empty), bytes("\xEF\xBB\xBF\xC3\xBC", 5));

        const QString viaDefault = path(QStringLiteral("append-default.txt"));
        enc = -1;
        QVERIFY(WriteTextFile(viaDefault, QStringLiteral("x"), true, enc, EncUtf16BE));
        QCOMPARE(test::readFile(viaDefault), bytes("\xFE\xFF\x00x", 4));
    }

    void appendToALegacyFileStaysInItsCodePage()
    {
        const QByteArray codec = systemLegacyCodec();
        const QString text = legacySample(codec);
        const QByteArray encoded = test::iconvEncode(text, iconvName(codec));
        QVERIFY(!encoded.isEmpty());
        const QString file = path(QStringLiteral("append-legacy.txt"));
        QVERIFY(test::writeFile(file, encoded));
        int enc = -1;
        QVERIFY(WriteTextFile(file, text, true, enc));
        QCOMPARE(enc, int(EncAnsi));
        QCOMPARE(test::readFile(file), encoded + encoded);
        QCOMPARE(ReadTextFile(file), text + text);
    }

    void resultsLayoutWithEverySection()
    {
        const QDateTime when(QDate(2026, 3, 7), QTime(14, 5));
        const QLocale locale(QLocale::English, QLocale::UnitedStates);
        ResultTexts texts{QStringLiteral("Hello\nworld"), QStringLiteral("Hallo\r\nWelt"),
                          QStringLiteral("Ha-lo"), QStringLiteral("noun\rGruß")};
        const QString expected =
            QStringLiteral("******************DATE:") + locale.toString(when.date(), QLocale::ShortFormat) +
            QStringLiteral(" ;TIME: ") + locale.toString(when.time(), QLocale::ShortFormat) +
            QStringLiteral("******************\r\n"
                           "--------------------------- Original --------------------------\r\n"
                           "Hello\r\nworld\r\n"
                           "******************************************************************\r\n"
                           "--------------------- Translation  Results -----------------------\r\n"
                           "Hallo\r\nWelt\r\n"
                           "******************************************************************\r\n"
                           "-------------------------- Romanization --------------------------\r\n"
                           "Ha-lo\r\n"
                           "******************************************************************\r\n"
                           "--------------------------- Dictionary --------------------------\r\n"
                           "noun\r\nGruß\r\n"
                           "*****************************END*****************************\r\n");
        QCOMPARE(buildResultsText(texts, when, locale), expected);
        QVERIFY(expected.startsWith(QStringLiteral("******************DATE:3/7/26 ;TIME: 2:05")));
    }

    void resultsWithoutDictionaryHaveNoEndLine()
    {
        const QDateTime when(QDate(2026, 1, 2), QTime(9, 30));
        const QLocale locale(QLocale::German, QLocale::Germany);
        const QString banner =
            QStringLiteral("******************DATE:02.01.26 ;TIME: 09:30******************\r\n");
        const QString text = buildResultsText(
            {QStringLiteral(" src "), QStringLiteral("dst"), QStringLiteral("ro"), QStringLiteral(" \r\n\t")},
            when, locale);
        QVERIFY(text.startsWith(banner));
        QVERIFY(text.contains(QStringLiteral("\r\n src \r\n")));
        QVERIFY(text.contains(QStringLiteral(" Romanization ")));
        QVERIFY(!text.contains(QStringLiteral(" Dictionary ")));
        QVERIFY(!text.contains(QStringLiteral("END")));
        QVERIFY(text.endsWith(QStringLiteral("\r\nro\r\n")));

        const QString empty = buildResultsText({}, when, locale);
        QCOMPARE(empty, banner + QStringLiteral(
                                     "--------------------------- Original --------------------------\r\n"
                                     "\r\n"
                                     "******************************************************************\r\n"
                                     "--------------------- Translation  Results -----------------------\r\n"
                                     "\r\n"));

        const QString dictionaryOnly = buildResultsText(
            {QString(), QString(), QStringLiteral("  "), QStringLiteral("entry")}, when, locale);
        QVERIFY(!dictionaryOnly.contains(QStringLiteral("Romanization")));
        QVERIFY(dictionaryOnly.endsWith(
            QStringLiteral("entry\r\n*****************************END*****************************\r\n")));
        for (const QString& t : {text, empty, dictionaryOnly}) {
            for (qsizetype i = 0; i < t.size(); ++i) {
                if (t.at(i) == QLatin1Char('\n'))
                    QVERIFY(i > 0 && t.at(i - 1) == QLatin1Char('\r'));
                else if (t.at(i) == QLatin1Char('\r'))
                    QVERIFY(i + 1 < t.size() && t.at(i + 1) == QLatin1Char('\n'));
            }
        }
    }

    void resultsFileIsUtf16BigEndianWithItsMark()
    {
        const QString file = path(QStringLiteral("results.txt"));
        QVERIFY(test::writeFile(file, QByteArray(10000, 'z')));
        const QDateTime when(QDate(2026, 5, 1), QTime(23, 59));
        const ResultTexts texts{QStringLiteral("你好"), QStringLiteral("Hello"), QStringLiteral("nǐ hǎo"),
                                QStringLiteral("interjection\nhello")};
        QVERIFY(saveResultsFile(file, texts, when));
        const QByteArray written = test::readFile(file);
        QVERIFY(written.startsWith(bytes("\xFE\xFF", 2)));
        QCOMPARE(test::iconvDecode(written.mid(2), QStringLiteral("UTF-16BE")),
                 buildResultsText(texts, when));
        int enc = -7;
        QCOMPARE(ReadTextFile(file, &enc), buildResultsText(texts, when));
        QCOMPARE(enc, int(EncUtf16BE));

        QVERIFY(!saveResultsFile(path(QStringLiteral("missing-folder/results.txt")), texts, when));
    }
};

QTEST_GUILESS_MAIN(TestTextFiles)
#include "test_text_files.moc"
