#include "TestSupport.h"
#include "app/Settings.h"
#include "standin/StandinService.h"
#include "translate/TranslationEngine.h"

#include <QtTest>

using namespace quillora;
using quillora::test::CommandResult;
using quillora::test::StandinService;

class TestCli : public QObject
{
    Q_OBJECT
private:
    StandinService m_service;
    QTemporaryDir m_config;

    CommandResult cli(const QStringList& arguments, const QByteArray& input = {}, const QString& base = {})
    {
        return test::runCli(arguments, base.isEmpty() ? m_service.baseUrl() : base, input);
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_service.listen());
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_config.path())); // for this process and quillora-cli
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
            QString::fromUtf8(test::runCommand("jq", {"-c", filter}, json.out).out),
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
            {"   ", {}, 1, "Nothing to translate."},
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
};

QTEST_GUILESS_MAIN(TestCli)
#include "test_cli.moc"
