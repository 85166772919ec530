#include "TestSupport.h"
#include "app/Settings.h"
#include "standin/MakerSite.h"
#include "translate/TranslationEngine.h"

#include <QtTest>
#include <csignal>

using namespace quillora;
using namespace quillora::test;
using namespace Qt::StringLiterals;

namespace
{

// "pid arguments" of each process running the executable at `path`.
QStringList runningAt(const QString& path)
{
    QStringList found;
    for (const QString& pid : QDir(u"/proc"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        if (QFileInfo(u"/proc/"_s + pid + u"/exe"_s).symLinkTarget() == path)
            found << pid + u' ' +
                         QString::fromUtf8(readFile(u"/proc/"_s + pid + u"/cmdline"_s))
                             .section(QChar(0), 1, -2);
    return found;
}

} // namespace

// The built programs as they are run: the command-line tool, and the real updater, as the program writes
// it, handing over to a real program in a temporary folder.
class TestPrograms : public QObject
{
    Q_OBJECT
    StandinService m_service;
    QTemporaryDir m_config;
    QString m_build = qEnvironmentVariable("QUILLORA_BUILD_DIR");

    CommandResult cli(const QStringList& arguments, const QByteArray& input = {}, const QString& base = {})
    {
        return runCli(arguments, base.isEmpty() ? m_service.baseUrl() : base, input);
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_service.listen());
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_config.path())); // for this process and the programs
    }

    void init()
    {
        m_service.reset();
        QFile::remove(ServiceBackoff::defaultFilePath());
    }

    void plainAndJsonOutput()
    {
        const CommandResult plain = cli({"-t", "fr", "hello"});
        const CommandResult json = cli({"--json", "-s", "en", "-t", "fr", "hello"});
        QCOMPARE(std::pair(plain.exitCode, json.exitCode), std::pair(0, 0));
        QCOMPARE(QString::fromUtf8(plain.out + plain.err),
                 "bonjour\n\n/bonjour/\n\ninterjection:\n1. bonjour\n2. salut\n3. allô\n");
        QCOMPARE(json.out.count('\n'), 1);
        const QString filter =
            "[.translation, .romanization, .source, .sourceLanguage, .targetLanguage, .dictionary]";
        QCOMPARE(
            QString::fromUtf8(runCommand("jq", {"-c", filter}, json.out).out),
            R"(["bonjour","/bonjour/","hello","en","fr","interjection:\r\n1. bonjour\r\n2. salut\r\n3. allô\r\n"])"
            "\n");
    }

    // How the form's text is encoded shows in the engine's test; here what picks the text and languages.
    void inputAndStoredLanguages()
    {
        Settings settings;
        // Arguments, standard input, the stored options (source row 21 = fr, target de, hl fr; row 1, the
        // separator, means detection as in the window), then hl, text, sl and tl as sent. An option on the
        // line wins; codes in any case, "he" being the catalogue's "iw".
        const QList<std::tuple<QStringList, QByteArray, QString, QByteArray>> rows{
            {{"-t", "fr"}, "caf\xc3\xa9\r\ncat\n", {}, "en|caf\xc3\xa9\r\ncat\n||fr"},
            {{"-s", "auto", "-t", "de", "a", "b"}, {}, {}, "en|a b||de"},
            {{"-s", "He", "-t", "ZH-cn", "--hl", "EN", "shalom"}, {}, {}, "en|shalom|iw|zh-CN"},
            {{"hello"}, {}, "21|22|1|1|19|1|1", "fr|hello|fr|de"},
            {{"--hl", "de", "hello"}, {}, "1|19|1|1|15|1|1", "de|hello||fr"}};
        for (const auto& [arguments, input, options, sent] : rows) {
            if (!options.isEmpty())
                settings.setOptions(Options::fromText(options));
            QCOMPARE(cli(arguments, input).exitCode, 0);
            const QList<QByteArray> parts = sent.split('|');
            QCOMPARE(m_service.requests().constLast().body, "prev=hp&hl=" + parts[0] +
                                                                "&ie=UTF-8&js=y&text=" + parts[1] +
                                                                "&file=&sl=" + parts[2] + "&tl=" + parts[3]);
        }
        QVERIFY(QFile::remove(settings.filePath()));
    }

    void exitCodes()
    {
        // Usage errors exit with 2 and send nothing; failures exit with 1 and a reason.
        const QList<QStringList> cases{
            {"-t", "xx", "hi"}, {"-t", "auto", "hi"}, {"--bogus", "hi"}, {"-t"}, {"--timeout", "0", "hi"}};
        for (const QStringList& arguments : cases) {
            const CommandResult r = cli(arguments);
            QVERIFY2(r.exitCode == 2 && r.out.isEmpty() && r.err.contains("Usage: quillora-cli"),
                     qPrintable(arguments.join(' ') + ": " + r.err));
        }
        // Failures: a reason and a code of their own; more than the cap is not even read whole.
        const QByteArray cap(kMaxTextBytes, 'a');
        const QList<std::tuple<QByteArray, QString, int, QByteArray>> failures{
            {"hello", "http://127.0.0.1:1", 1, "Could not reach the translation service."},
            {cap + 'a', {}, 4, "The text is too long to send (more than 64 KiB); nothing was sent."}};
        for (const auto& [input, base, code, reason] : failures) {
            const CommandResult r = cli({"-t", "fr"}, input, base);
            QCOMPARE(std::pair(r.exitCode, r.out + r.err), std::pair(code, "quillora-cli: " + reason + '\n'));
        }
        QVERIFY(m_service.requests().isEmpty());
        QCOMPARE(cli({"-t", "fr"}, cap).exitCode, 0);
    }

    void refusedServiceIsNotAskedByTheNextRun()
    {
        m_service.setFormMode(StandinService::FormMode::Refused);
        m_service.setRetryAfter("3600");
        const QString until =
            localTimeText(QDateTime::currentDateTimeUtc().addSecs(3600), QDateTime::currentDateTime());
        for (int run = 0; run < 2; ++run) {
            const CommandResult refused = cli({"--engine", "service", "hello"});
            QVERIFY2(refused.exitCode == 3 &&
                         refused.err.contains("not be asked again before " + until.left(5).toUtf8()),
                     refused.err.constData());
        }
        QCOMPARE(m_service.requests().size(), 1);
    }
    void handoff_data()
    {
        QTest::addColumn<QString>("digest"); // "right", "wrong" or "" for none
        QTest::addColumn<bool>("replaced");
        QTest::newRow("digest matches") << u"right"_s << true;
        QTest::newRow("wrong digest") << u"wrong"_s << false;
        QTest::newRow("no digest") << QString() << false;
        QTest::newRow("download too slow") << u"right"_s << false;
    }
    void handoff()
    {
        QFETCH(QString, digest);
        QFETCH(bool, replaced);
        QTemporaryDir dir;
        const QString program = dir.filePath(u"quillora"_s);
        // The "browser" and the "new version" write down how they were started.
        const QByteArray recorder =
            "#!/bin/sh\necho \"$0 $*\" >> " + QFile::encodeName(dir.filePath(u"started"_s)) + "\n";
        QVERIFY(QFile::copy(m_build + u"/src/quillora"_s, program) &&
                QFile::copy(m_build + u"/src/quillora-updater"_s, dir.filePath(u"Update.exe"_s)) &&
                writeFile(dir.filePath(u"bin/xdg-open"_s), recorder) &&
                QFile::setPermissions(dir.filePath(u"bin/xdg-open"_s), QFile::ReadOwner | QFile::ExeOwner));

        MakerSite site(m_service);
        const QString download = site.setDownload(u"quillora-2.1.92"_s, recorder);
        site.setUpdate(u"2.1.92"_s, download,
                       digest.isEmpty() ? QByteArray()
                                        : MakerSite::sha256Hex(digest == u"right" ? recorder : "other"));

        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(u"QUILLORA_SERVICE_URL"_s, u"http://127.0.0.1:9"_s);
        env.insert(u"QUILLORA_API_URL"_s, u"http://127.0.0.1:9"_s);
        env.insert(u"PATH"_s, dir.filePath(u"bin"_s) + u':' + env.value(u"PATH"_s));
        // Every answer comes after 3 s; the whole download may take 1.
        const bool slow = QTest::currentDataTag() == QByteArray("download too slow");
        env.insert(u"QUILLORA_DOWNLOAD_MS"_s, slow ? u"1000"_s : u"30000"_s);
        m_service.setDelayMs(slow ? 3000 : 0);

        // The old program is still running when the updater starts: it waits for its end. The old
        // program's own update check goes elsewhere, so that only the updater's request is counted.
        QProcess running;
        env.insert(u"QUILLORA_SITE_URL"_s, m_service.baseUrl() + u"/old-program"_s);
        running.setProcessEnvironment(env);
        running.start(program, {u"mini"_s});
        QTRY_VERIFY_WITH_TIMEOUT(!runningAt(program).isEmpty(), 20000);
        QProcess updater;
        env.insert(u"QUILLORA_SITE_URL"_s, site.url());
        updater.setProcessEnvironment(env);
        // Files, not pipes: what the updater starts outlives it and must be able to write.
        updater.setStandardOutputFile(QProcess::nullDevice());
        updater.setStandardErrorFile(dir.filePath(u"updater.log"_s));
        updater.start(dir.filePath(u"Update.exe"_s), {u"quillora"_s});
        QVERIFY(updater.waitForStarted());
        QTest::qWait(1000);
        QVERIFY2(running.state() == QProcess::Running, running.readAllStandardError().constData());
        QCOMPARE(site.requests(u"Update.txt"_s), 0);
        running.terminate();
        QTRY_VERIFY_WITH_TIMEOUT(running.state() == QProcess::NotRunning, 10000);
        QTRY_VERIFY_WITH_TIMEOUT(updater.state() == QProcess::NotRunning, 20000);
        QVERIFY2(updater.exitCode() == 0, readFile(dir.filePath(u"updater.log"_s)).constData());
        QCOMPARE(site.requests(u"Update.txt"_s), 1);
        QCOMPARE(site.requests(u"quillora-2.1.92"_s), digest.isEmpty() ? 0 : 1);

        QCOMPARE(readFile(program), replaced ? recorder : readFile(m_build + u"/src/quillora"_s));
        QVERIFY(QFileInfo(program).isExecutable());
        QCOMPARE(QDir(dir.path()).entryList({u".*"_s}, QDir::Files | QDir::Hidden),
                 QStringList()); // no part left
        QTRY_COMPARE_WITH_TIMEOUT(
            QString::fromUtf8(readFile(dir.filePath(u"started"_s))),
            replaced ? program + u" UP\n"_s : dir.filePath(u"bin/xdg-open "_s) + download + u'\n', 20000);
        if (replaced)
            return;
        // The old program comes back with "UP".
        QStringList again;
        QTRY_VERIFY_WITH_TIMEOUT((again = runningAt(program)).size() == 1, 20000);
        QCOMPARE(again.constFirst().section(u' ', 1), u"UP"_s);
        ::kill(pid_t(again.constFirst().section(u' ', 0, 0).toLongLong()), SIGTERM);
        QTRY_VERIFY_WITH_TIMEOUT(runningAt(program).isEmpty(), 10000);
    }
};

QTEST_GUILESS_MAIN(TestPrograms)
#include "test_programs.moc"
