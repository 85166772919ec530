#include "PrivateMounts.h"
#include "TestSupport.h"
#include "app/LocaleChoice.h"
#include "app/StartupCommand.h"
#include "desktop/AutoStart.h"
#include "desktop/ModUniTxt.h"
#include "desktop/ResultsFile.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <array>
#include <csignal>
#include <sys/resource.h>

using namespace quillora;
using namespace Qt::StringLiterals;

// What the program starts with (its command line, the log-on entry that starts it with "mini", the interface
// language the system locale asks for) and the text files it reads and writes.
class TestStartupAndFiles : public QObject
{
    Q_OBJECT
    QTemporaryDir m_dir;
    QString entryPath() const { return m_dir.filePath("autostart/Zelvan-Quilrun.desktop"); }
    // Latin, CJK, Cyrillic, Hebrew, a character outside the basic plane and a CR LF.
    const QString m_sample = u"Grüße, 你好, Привет, שלום 😀\r\nline two"_s;
    QString path(const QString& name) const { return m_dir.filePath(name); }
    bool m_privateMounts = false;

private Q_SLOTS:
    void initTestCase()
    {
        m_privateMounts = test::enterPrivateMounts();
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_dir.path()));
        QCOMPARE(startupCommand("quillora"), QDir::currentPath() + "/quillora mini");
    }

    // The words given, the line they make, and whether it keeps the updater ("UP") or starts hidden.
    void joinsAndRecognises()
    {
        const QList<std::tuple<QStringList, QString, bool, bool>> rows{{{"UP"}, "UP", true, false},
                                                                       {{"mini"}, "mini", false, true},
                                                                       {{"MINI"}, "MINI", false, false},
                                                                       {{"", "mini"}, " mini", false, false}};
        for (const auto& [args, line, up, mini] : rows) {
            const StartupCommand command(args);
            QCOMPARE(std::tuple(command.line(), command.keepsUpdater(), command.startsHidden()),
                     std::tuple(line, up, mini));
        }
    }

    // A folder of that name is not the updater. That the file goes, or stays for "UP", shows with the real
    // program.
    void leftoverUpdaterIsAFile()
    {
        QVERIFY(QDir(m_dir.path()).mkpath("Update.exe/in"));
        QCOMPARE(removeLeftoverUpdater(m_dir.path(), StartupCommand({})), QString());
        QVERIFY(QFile::exists(m_dir.filePath("Update.exe/in")));
    }

    // The written entry is valid and reads back as the same program, and only as it.
    void autostartEntry()
    {
        const QList<std::pair<QString, QString>> rows{
            {u"/usr/bin/quillora"_s, u"Exec=/usr/bin/quillora mini"_s},
            {u"/opt/My \"$H`x`\\/q"_s, u"Exec=\"/opt/My \\\\\"\\\\$H\\\\`x\\\\`\\\\\\\\/q\" mini"_s},
            {u"/opt/100%/q"_s, u"Exec=/opt/100%%/q mini"_s}};
        for (const auto& [path, execLine] : rows) {
            QVERIFY(SetAutoRun(true, path));
            QCOMPARE(autostartFilePath(), entryPath());
            QCOMPARE(QString::fromUtf8(test::readFile(entryPath())).split('\n').filter("Exec").join('|'),
                     execLine);
            // The entry is this very program's only when the line is exactly the same, case included.
            QVERIFY(isAutoRunRegistered(path) && !isAutoRunRegistered(path.toUpper()) &&
                    !isAutoRunRegistered(u"/usr/local/bin/quillora"_s));
            const test::CommandResult valid = test::runCommand("desktop-file-validate", {entryPath()});
            QVERIFY2(valid.ok() && valid.out.isEmpty(), valid.out.constData());
            QVERIFY(SetAutoRun(false, path) && SetAutoRun(false, path)); // removing twice is fine
            QVERIFY(!QFile::exists(entryPath()));
        }
    }

    // locale.conf, then default/locale (null: no such file), then the environment; what is chosen: the
    // locale, its language_TERRITORY and the interface language for it.
    void systemLocaleComesFromTheRightPlace()
    {
        const QString es = u"LANG=es_ES"_s, none;
        const QList<std::array<QString, 4>> rows{
            {u"LANG=fr_FR"_s, u"LANG=th_TH"_s, es, u"fr_FR fr_FR 7"_s},
            {none, u"LANG=th_TH.UTF-8"_s, es, u"th_TH.UTF-8 th_TH 4"_s},
            {u"#\nLC_TIME=de_DE"_s, u"# update-locale"_s, es, u"es_ES es_ES 5"_s},
            {none, none, u"LC_MESSAGES=sk LC_ALL=zh_SG@stroke LANG=fr"_s, u"zh_SG@stroke zh_SG 3"_s},
            {none, none, u"LC_MESSAGES=sk LC_ALL= LANG=fr"_s, u"sk sk 6"_s},
            {none, none, none, u"C C 1"_s},
            {u"LANG=\"sr_RS@latin\""_s, none, none, u"sr_RS@latin sr_RS 1"_s},
            {none, u"export LANG='es_MX.UTF-8'"_s, es, u"es_MX.UTF-8 es_MX 1"_s},
            {u"LANG=de\nLANG=ES_pr\nLANGUAGE=fr"_s, none, es, u"ES_pr es_PR 5"_s},
            {u"LANG="_s, u"LANG=th_TH"_s, es, u"th_TH th_TH 4"_s}};
        for (const auto& [conf, etcDefault, environment, chosen] : rows) {
            QTemporaryDir dir;
            LocaleSources s{dir.filePath(u"locale.conf"_s), dir.filePath(u"locale"_s), {}};
            QVERIFY(conf.isNull() || test::writeFile(s.localeConf, (conf + u'\n').toUtf8()));
            QVERIFY(etcDefault.isNull() || test::writeFile(s.defaultLocale, (etcDefault + u'\n').toUtf8()));
            for (const QString& pair : environment.split(u' ', Qt::SkipEmptyParts))
                s.environment.insert(pair.section(u'=', 0, 0), pair.section(u'=', 1));
            QCOMPARE(QStringList({systemLocaleSpec(s), systemLocaleName(s), interfaceLanguageFor({}, s)})
                         .join(u' '),
                     chosen);
            // A stored language is taken as it is when it is one of the seven, else it is English.
            QCOMPARE(interfaceLanguageFor(u"6"_s, s) + interfaceLanguageFor(u"9"_s, s) +
                         interfaceLanguageFor(u" 2"_s, s),
                     u"611"_s);
        }
    }
    // Files come from iconv, as another program writes them; what we write must be iconv's bytes.
    // UTF-32 is read but never written: such a file keeps only its mark.
    void everyEncodingBothWays()
    {
        // Mark and codec by encoding number.
        const QList<std::pair<const char*, QString>> rows{
            {"", u"UTF-8"_s},        {"efbbbf", u"UTF-8"_s},      {"fffe", u"UTF-16LE"_s},
            {"feff", u"UTF-16BE"_s}, {"fffe0000", u"UTF-32LE"_s}, {"0000feff", u"UTF-32BE"_s}};
        for (int encoding = EncAnsi; encoding <= EncUtf32BE; ++encoding) {
            const auto& [markHex, codec] = rows[encoding];
            const QByteArray mark = QByteArray::fromHex(markHex), body = test::iconvEncode(m_sample, codec);
            const QString file = path(codec + QString::number(encoding));
            const bool writable = encoding < EncUtf32LE;
            QVERIFY(test::writeFile(file, mark + body));
            int used = -7;
            QCOMPARE(ReadTextFile(file, &used), m_sample);
            QCOMPARE(used, encoding);
            used = encoding == EncUtf8 ? EncUtf16LE : EncUtf8; // appending keeps the file's own encoding
            QCOMPARE(WriteTextFile(file, m_sample, true, used), writable);
            QCOMPARE(used, encoding);
            QCOMPARE(test::readFile(file),
                     mark + (writable ? test::iconvEncode(m_sample + m_sample, codec) : body));
            QCOMPARE(WriteTextFile(file, m_sample, false, used), writable);
            QCOMPARE(test::readFile(file), writable ? mark + body : mark);
        }
    }

    // Per Windows code page a locale that uses it and a text whose bytes there are not valid UTF-8.
    void legacyCodePages()
    {
        const QList<std::tuple<QString, int, QString>> rows{
            {u"sr_RS.UTF-8@latin"_s, 1250, u"Žluťoučký kůň úpěl"_s},
            {u"fr_FR"_s, 1252, u"Grüße, café € “quoted”"_s},
            {u"zh_CN.UTF-8"_s, 936, u"你好，世界。简体中文"_s}};
        for (const auto& [locale, codePage, text] : rows) {
            const QByteArray encoded = test::iconvEncode(text, u"CP%1"_s.arg(codePage));
            const QByteArray codec = legacyCodecForLocale(locale);
            QCOMPARE(decodeFileBytes(encoded, nullptr, codec), text);
            QCOMPARE(decodeFileBytes(text.toUtf8(), nullptr, codec), text);
            if (codec != systemLegacyCodec())
                continue;
            // An unmarked file in the system code page is read in it and appended to in it.
            const QString file = path(u"legacy.txt"_s);
            QVERIFY(test::writeFile(file, encoded));
            QCOMPARE(ReadTextFile(file), text);
            int encoding = -1;
            QVERIFY(WriteTextFile(file, text, true, encoding));
            QCOMPARE(test::readFile(file), encoded + encoded);
        }
    }

    void malformedInputBecomesReplacementCharacters()
    {
        const QList<std::pair<const char*, QString>> rows{
            {"efbbbf61ff62", u"a\uFFFDb"_s},            // UTF-8, a bad byte
            {"efbbbf61e4bd", u"a\uFFFD\uFFFD"_s},       // UTF-8, a cut sequence
            {"fffe410042", u"A\uFFFD"_s},               // UTF-16, odd length
            {"fffe00d84100", u"\uFFFDA"_s},             // UTF-16, a lone high surrogate
            {"fffe00000000110041000000", u"\uFFFDA"_s}, // UTF-32, too big
            {"0000feff0000d80000000042", u"\uFFFDB"_s}, // UTF-32, a surrogate
            {"fffe00004100000042", u"A\uFFFD"_s},       // UTF-32, a cut unit
            {"812041", u"\uFFFD A"_s}};                 // legacy
        for (const auto& [hex, text] : rows)
            QVERIFY2(decodeFileBytes(QByteArray::fromHex(hex), nullptr, "GBK") == text, hex);
    }

    // Missing and empty files: reading gives "", appending starts with a mark.
    void missingEmptyAndRefusedFiles()
    {
        QCOMPARE(ReadTextFile(path(u"new.txt"_s)), QString());
        int encoding = -1;
        QVERIFY(WriteTextFile(path(u"new.txt"_s), u"é"_s, true, encoding));
        QCOMPARE(encoding, int(EncUtf16LE));
        QCOMPARE(test::readFile(path(u"new.txt"_s)), QByteArray::fromHex("fffee900"));
        QVERIFY(test::writeFile(path(u"empty.txt"_s), QByteArray()));
        encoding = EncUtf8;
        QVERIFY(WriteTextFile(path(u"empty.txt"_s), u"é"_s, true, encoding));
        QCOMPARE(test::readFile(path(u"empty.txt"_s)), QByteArray::fromHex("efbbbfc3a9"));
        QVERIFY(!WriteTextFile(path(u"missing-folder/x.txt"_s), m_sample, true, encoding));
        for (int bad : {6, -1})
            QVERIFY(!WriteTextFile(path(u"refused.txt"_s), m_sample, false, bad));
        QVERIFY(!QFile::exists(path(u"refused.txt"_s)));
    }

    // The file is UTF-16 BE with its mark, replacing whatever was there. Only spaces are blank: a tab gets
    // its section.
    void resultsLayout()
    {
        const QString stars = u"******************************************************************\r\n"_s;
        const QString original = u"--------------------------- Original --------------------------\r\n"_s;
        const QString translation =
            stars + u"--------------------- Translation  Results -----------------------\r\n"_s;
        const QString romanization =
            stars + u"-------------------------- Romanization --------------------------\r\n"_s;
        const QString dictionary =
            stars + u"--------------------------- Dictionary --------------------------\r\n"_s;
        const QString end = u"*****************************END*****************************\r\n"_s;
        const QList<std::pair<ResultTexts, QString>> rows{
            {{u"Hello\nworld"_s, u"Hallo\r\nWelt"_s, u"Ha-lo"_s, u"noun\rGruß"_s},
             original + u"Hello\r\nworld\r\n"_s + translation + u"Hallo\r\nWelt\r\n"_s + romanization +
                 u"Ha-lo\r\n"_s + dictionary + u"noun\r\nGruß\r\n"_s + end},
            {{u" "_s, QString(), u" \t"_s, u"  "_s},
             original + u" \r\n"_s + translation + u"\r\n"_s + romanization + u" \t\r\n"_s}};
        const QDateTime when(QDate(2026, 1, 2), QTime(9, 30));
        for (const auto& [results, body] : rows) {
            QCOMPARE(buildResultsText(results, when, QLocale(QLocale::German, QLocale::Germany)),
                     u"******************DATE:02.01.26 ;TIME: 09:30******************\r\n"_s + body);
            QVERIFY(test::writeFile(path(u"results.txt"_s), QByteArray(10000, 'z')));
            QVERIFY(saveResultsFile(path(u"results.txt"_s), results, when));
            QCOMPARE(test::readFile(path(u"results.txt"_s)),
                     QByteArray::fromHex("feff") +
                         test::iconvEncode(buildResultsText(results, when), u"UTF-16BE"_s));
        }
    }

    // The old file stays byte for byte, no temporary is left behind, and the system says why. Only the
    // size limit needs no mount of its own.
    void failedSaveKeepsTheOldFile()
    {
        for (const int error : {EFBIG, ENOSPC, EROFS}) {
            const QString folder = path(QString::number(error));
            if (error != EFBIG && !(m_privateMounts && test::mountSmallDisk(folder)))
                QSKIP("needs a mount namespace of its own (root)");
            const QString old = folder + u"/results.txt"_s;
            QVERIFY(test::writeFile(old, "22 bytes of old result"));
            const QStringList before = QDir(folder).entryList(QDir::Files | QDir::Hidden);
            rlimit limit{};
            getrlimit(RLIMIT_FSIZE, &limit);
            const rlimit small{4096, limit.rlim_max};
            if (error == ENOSPC)
                test::fillUp(folder);
            QVERIFY(error != EROFS || test::mountSmallDisk(folder, MS_REMOUNT | MS_RDONLY));
            signal(SIGXFSZ, SIG_IGN);
            setrlimit(RLIMIT_FSIZE, error == EFBIG ? &small : &limit);
            const ResultTexts big{QString(3000, u'a'), QString(3000, u'b'), {}, {}};
            const WriteOutcome replaced = saveResultsFile(old, big),
                               created = saveResultsFile(old + u'2', big);
            setrlimit(RLIMIT_FSIZE, &limit);
            QVERIFY(!replaced && !created);
            QCOMPARE(replaced.reason, qt_error_string(error));
            QCOMPARE(test::readFile(old), QByteArray("22 bytes of old result"));
            QFile::remove(folder + u"/filler"_s);
            QCOMPARE(QDir(folder).entryList(QDir::Files | QDir::Hidden), before);
        }
    }
};

QTEST_GUILESS_MAIN(TestStartupAndFiles)
#include "test_startup_and_files.moc"
