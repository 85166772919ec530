#include "TestSupport.h"
#include "app/Settings.h"
#include "net/Http.h"
#include "standin/StandinService.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTimer>
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

    static QString buildPath(const QString& relative)
    {
        return qEnvironmentVariable("QUILLORA_BUILD_DIR") + relative;
    }

    QString settingsPath() const { return m_config.path() + QStringLiteral("/Quillora/Quillora.conf"); }

    // Runs quillora-cli while this process keeps serving the in-process stand-in.
    CommandResult cli(const QStringList& arguments, const QByteArray& input = {}, QString serviceUrl = {})
    {
        if (serviceUrl.isEmpty())
            serviceUrl = m_service.baseUrl();
        QProcess process;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QUILLORA_SERVICE_URL"), serviceUrl);
        env.insert(QStringLiteral("QUILLORA_API_URL"), serviceUrl);
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), m_config.path());
        process.setProcessEnvironment(env);
        QEventLoop loop;
        connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
        connect(&process, &QProcess::errorOccurred, &loop, &QEventLoop::quit);
        QTimer::singleShot(20000, &loop, &QEventLoop::quit);
        process.start(buildPath(QStringLiteral("/src/quillora-cli")), arguments);
        process.write(input);
        process.closeWriteChannel();
        loop.exec();
        CommandResult result;
        result.started = process.state() == QProcess::NotRunning &&
                         process.exitStatus() == QProcess::NormalExit &&
                         process.error() != QProcess::FailedToStart;
        if (process.state() != QProcess::NotRunning) {
            process.kill();
            process.waitForFinished();
        }
        result.exitCode = process.exitCode();
        result.out = process.readAllStandardOutput();
        result.err = process.readAllStandardError();
        return result;
    }

    static QString jq(const QByteArray& json, const QString& filter)
    {
        const CommandResult r =
            quillora::test::runCommand(QStringLiteral("jq"), {QStringLiteral("-r"), filter}, json);
        return r.ok() ? QString::fromUtf8(r.out)
                      : QStringLiteral("<jq failed: %1>").arg(QString::fromUtf8(r.err));
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_config.isValid());
        QVERIFY(m_service.listen());
        QVERIFY(QFileInfo::exists(buildPath(QStringLiteral("/src/quillora-cli"))));
    }

    void init()
    {
        m_service.reset();
        QFile::remove(settingsPath());
    }

    void translatesTheWordsGiven()
    {
        const CommandResult r = cli({QStringLiteral("-t"), QStringLiteral("fr"), QStringLiteral("hello")});
        QCOMPARE(r.exitCode, 0);
        QCOMPARE(QString::fromUtf8(r.out),
                 QStringLiteral("bonjour\n\n/bonjour/\n\ninterjection:\n1. bonjour\n2. salut\n3. allô\n"));
        QVERIFY(r.err.isEmpty());

        const CommandResult two = cli(
            {QStringLiteral("-t"), QStringLiteral("fr"), QStringLiteral("hello"), QStringLiteral("world")});
        QCOMPARE(two.exitCode, 0);
        QVERIFY(two.out.startsWith("bonjour monde\n\n/bonjour monde/\n\n"));
        QCOMPARE(m_service.count("POST", QStringLiteral("/")), 2);
        QCOMPARE(m_service.requests().last().body,
                 QByteArrayLiteral("prev=hp&hl=en&ie=UTF-8&js=y&text=hello world&file=&sl=&tl=fr"));
    }

    void jsonOutputReadsWithJq()
    {
        const CommandResult r = cli({QStringLiteral("--json"), QStringLiteral("-s"), QStringLiteral("en"),
                                     QStringLiteral("-t"), QStringLiteral("fr"), QStringLiteral("hello")});
        QCOMPARE(r.exitCode, 0);
        QVERIFY(r.out.endsWith('\n'));
        QCOMPARE(r.out.count('\n'), 1);
        QCOMPARE(
            jq(r.out, QStringLiteral("keys | join(\",\")")),
            QStringLiteral("dictionary,romanization,source,sourceLanguage,targetLanguage,translation\n"));
        QCOMPARE(jq(r.out,
                    QStringLiteral("[.translation, .romanization, .source, .sourceLanguage, .targetLanguage] "
                                   "| join(\"|\")")),
                 QStringLiteral("bonjour|/bonjour/|hello|en|fr\n"));
        // The dictionary keeps the line breaks the window's box holds.
        QCOMPARE(jq(r.out, QStringLiteral(".dictionary | @json")),
                 QStringLiteral("\"interjection:\\r\\n1. bonjour\\r\\n2. salut\\r\\n3. allô\\r\\n\"\n"));

        const CommandResult detect =
            cli({QStringLiteral("--json"), QStringLiteral("-t"), QStringLiteral("de"), QStringLiteral("-s"),
                 QStringLiteral("auto"), QStringLiteral("a"), QStringLiteral("b")});
        QCOMPARE(detect.exitCode, 0);
        QCOMPARE(jq(detect.out, QStringLiteral("[.translation, .source, .sourceLanguage] | join(\"|\")")),
                 QStringLiteral("A B|a b|auto\n"));
    }

    void readsStandardInputWhenNoTextIsGiven()
    {
        const QByteArray input = QStringLiteral("café\r\ncat & dog\n").toUtf8();
        const CommandResult r = cli({QStringLiteral("-t"), QStringLiteral("fr")}, input);
        QCOMPARE(r.exitCode, 0);
        QCOMPARE(m_service.requests().last().body,
                 QByteArrayLiteral(
                     "prev=hp&hl=en&ie=UTF-8&js=y&text=caf\xc3\xa9\r\ncat %26 dog\n&file=&sl=&tl=fr"));
        QVERIFY(r.out.startsWith(QStringLiteral("CAFÉ\nchat & chien\n\n").toUtf8()));
        QVERIFY(!r.out.contains('\r'));
    }

    void usageErrorsExitWithTwo_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("unknown target")
            << QStringList{QStringLiteral("-t"), QStringLiteral("xx"), QStringLiteral("hi")};
        QTest::newRow("auto target") << QStringList{QStringLiteral("-t"), QStringLiteral("auto"),
                                                    QStringLiteral("hi")};
        QTest::newRow("unknown source")
            << QStringList{QStringLiteral("-s"), QStringLiteral("he"), QStringLiteral("hi")};
        QTest::newRow("unknown hl") << QStringList{QStringLiteral("--hl"), QStringLiteral("EN"),
                                                   QStringLiteral("hi")};
        QTest::newRow("unknown option") << QStringList{QStringLiteral("--bogus"), QStringLiteral("hi")};
        QTest::newRow("missing value") << QStringList{QStringLiteral("-t")};
    }

    void usageErrorsExitWithTwo()
    {
        QFETCH(QStringList, arguments);
        const CommandResult r = cli(arguments);
        QCOMPARE(r.exitCode, 2);
        QVERIFY(r.out.isEmpty());
        QVERIFY2(r.err.contains("Usage: quillora-cli"), r.err.constData());
        QVERIFY(m_service.requests().isEmpty());
    }

    void failuresExitWithOneAndAReason()
    {
        QTcpServer probe;
        QVERIFY(probe.listen(QHostAddress::LocalHost, 0));
        const QString down = QStringLiteral("http://127.0.0.1:%1").arg(probe.serverPort());
        probe.close();
        const CommandResult offline =
            cli({QStringLiteral("-t"), QStringLiteral("fr"), QStringLiteral("hello")}, {}, down);
        QCOMPARE(offline.exitCode, 1);
        QVERIFY(offline.out.isEmpty());
        QCOMPARE(offline.err, QByteArrayLiteral("quillora-cli: Could not reach the translation service.\n"));

        const CommandResult blank = cli({QStringLiteral("-t"), QStringLiteral("fr")}, "   \n");
        QCOMPARE(blank.exitCode, 1);
        QCOMPARE(blank.err, QByteArrayLiteral("quillora-cli: Nothing to translate.\n"));
        QVERIFY(m_service.requests().isEmpty());

        m_service.setFormMode(StandinService::FormMode::Changed);
        m_service.setJsonMode(StandinService::JsonMode::TooManyRequests);
        const CommandResult refused = cli({QStringLiteral("hello")});
        QCOMPARE(refused.exitCode, 1);
        QVERIFY(refused.err.contains("refusing requests"));
    }

    void languagesDefaultToTheStoredOptions()
    {
        Settings settings(settingsPath());
        settings.setOptions({21, 22, 1, 1, 19, 1, 1}); // source row 21 = fr, target de, hl fr
        QCOMPARE(cli({QStringLiteral("hello")}).exitCode, 0);
        QCOMPARE(m_service.requests().last().body,
                 QByteArrayLiteral("prev=hp&hl=fr&ie=UTF-8&js=y&text=hello&file=&sl=fr&tl=de"));

        // The separator row means detection, as in the window; an option on the line wins.
        settings.setOptions({1, 19, 1, 1, 15, 1, 1});
        QCOMPARE(cli({QStringLiteral("--hl"), QStringLiteral("de"), QStringLiteral("hello")}).exitCode, 0);
        QCOMPARE(m_service.requests().last().body,
                 QByteArrayLiteral("prev=hp&hl=de&ie=UTF-8&js=y&text=hello&file=&sl=&tl=fr"));
    }

    void helpAndVersion()
    {
        const CommandResult version = cli({QStringLiteral("--version")});
        QCOMPARE(version.exitCode, 0);
        QCOMPARE(version.out, QByteArrayLiteral("quillora-cli 2.1.91\n"));
        const CommandResult help = cli({QStringLiteral("--help")});
        QCOMPARE(help.exitCode, 0);
        QVERIFY(help.out.contains("--json"));
        QVERIFY(m_service.requests().isEmpty());
    }

    void worksAgainstTheStandinProgram()
    {
        QProcess standin;
        standin.start(buildPath(QStringLiteral("/tests/quillora-standin")),
                      {QStringLiteral("--form"), QStringLiteral("changed")});
        QVERIFY(standin.waitForStarted());
        QTRY_VERIFY(standin.canReadLine());
        const QByteArray line = standin.readLine().trimmed();
        QVERIFY2(line.startsWith("PORT "), line.constData());
        const QString base = QStringLiteral("http://127.0.0.1:") + QString::fromLatin1(line.mid(5));

        const CommandResult r =
            cli({QStringLiteral("-t"), QStringLiteral("fr"), QStringLiteral("cat")}, {}, base);
        QCOMPARE(r.exitCode, 0);
        QVERIFY(r.out.startsWith("chat\n"));

        HttpClient http;
        const QJsonArray seen =
            QJsonDocument::fromJson(http.get(QUrl(base + QStringLiteral("/__requests"))).body).array();
        QCOMPARE(seen.size(), 2);
        QCOMPARE(seen[0][QStringLiteral("method")].toString(), QStringLiteral("POST"));
        QCOMPARE(seen[0][QStringLiteral("body")].toString(),
                 QStringLiteral("prev=hp&hl=en&ie=UTF-8&js=y&text=cat&file=&sl=&tl=fr"));
        QCOMPARE(seen[1][QStringLiteral("path")].toString(), QStringLiteral("/translate_a/single"));
        QCOMPARE(seen[1][QStringLiteral("headers")][QStringLiteral("User-Agent")].toString(),
                 QStringLiteral("Quillora/2.1.91"));

        QCOMPARE(http.get(QUrl(base + QStringLiteral("/__mode?json=503"))).status, 200);
        QCOMPARE(http.get(QUrl(base + QStringLiteral("/__mode?json=nonsense"))).status, 400);
        QCOMPARE(cli({QStringLiteral("cat")}, {}, base).exitCode, 1);
        const HttpReply reset = http.get(QUrl(base + QStringLiteral("/__reset")));
        QCOMPARE(QJsonDocument::fromJson(reset.body)[QStringLiteral("form")].toString(),
                 QStringLiteral("legacy"));
        QCOMPARE(
            QJsonDocument::fromJson(http.get(QUrl(base + QStringLiteral("/__requests"))).body).array().size(),
            0);
        standin.kill();
        standin.waitForFinished();
    }
};

QTEST_GUILESS_MAIN(TestCli)
#include "test_cli.moc"
