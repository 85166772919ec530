#include "TestSupport.h"
#include "Version.h"
#include "app/LocaleChoice.h"
#include "net/Connectivity.h"
#include "net/Http.h"
#include "standin/StandinService.h"

#include <QElapsedTimer>
#include <QSslKey>
#include <QSslServer>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

using namespace quillora;
using quillora::test::StandinService;

class TestHttp : public QObject
{
    Q_OBJECT
private:
    StandinService m_service;

    // A port that nothing listens on: bound once, then closed.
    static quint16 closedPort()
    {
        QTcpServer probe;
        probe.listen(QHostAddress::LocalHost, 0);
        const quint16 port = probe.serverPort();
        probe.close();
        return port;
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_service.listen()); }
    void init() { m_service.reset(); }

    void getAndPostCarryBodiesAndHeaders()
    {
        HttpClient client;
        m_service.setFile(QStringLiteral("a.txt"), QByteArrayLiteral("alpha\r\nbeta"),
                          "text/plain; charset=UTF-8");
        const HttpReply got = client.get(m_service.url(QStringLiteral("/files/a.txt")));
        QCOMPARE(got.outcome, HttpReply::Ok);
        QCOMPARE(got.status, 200);
        QCOMPARE(got.body, QByteArrayLiteral("alpha\r\nbeta"));
        QCOMPARE(got.contentType, QByteArrayLiteral("text/plain; charset=UTF-8"));

        const QByteArray body = QStringLiteral("x=é&y=%26+z").toUtf8();
        const HttpReply posted =
            client.post(m_service.url(QStringLiteral("/")), body, "application/x-www-form-urlencoded");
        QVERIFY(posted.ok());
        QCOMPARE(m_service.requests().size(), 2);
        const StandinService::Request& get = m_service.requests().at(0);
        const StandinService::Request& post = m_service.requests().at(1);
        QCOMPARE(get.method, QByteArrayLiteral("GET"));
        QCOMPARE(get.target, QByteArrayLiteral("/files/a.txt"));
        QCOMPARE(post.method, QByteArrayLiteral("POST"));
        QCOMPARE(post.body, body);
        QCOMPARE(post.header("content-type"), QByteArrayLiteral("application/x-www-form-urlencoded"));
        QCOMPARE(post.header("Content-Length").toInt(), body.size());
        for (const auto& r : m_service.requests())
            QCOMPARE(r.header("User-Agent"), (QStringLiteral("Quillora/") + versionText()).toUtf8());
        QCOMPARE(get.header("User-Agent"), QByteArrayLiteral("Quillora/2.1.91"));
    }

    void errorStatusStillDeliversThePage()
    {
        HttpClient client;
        const HttpReply reply = client.get(m_service.url(QStringLiteral("/files/missing")));
        QCOMPARE(reply.outcome, HttpReply::Ok);
        QCOMPARE(reply.status, 404);
        QVERIFY(reply.body.contains("404 Not Found"));
    }

    void slowAnswerTimesOut()
    {
        HttpClient client;
        client.setTimeoutMs(200);
        m_service.setDelayMs(1500);
        const HttpReply reply = client.get(m_service.url(QStringLiteral("/files/Update.txt")));
        QCOMPARE(reply.outcome, HttpReply::TimedOut);
        QVERIFY(reply.body.isEmpty());
        QVERIFY(!client.busy());
    }

    void answerOverTheCapIsTooLarge()
    {
        HttpClient client;
        client.setMaxBytes(1000);
        m_service.setFile(QStringLiteral("big.bin"), QByteArray(4000, 'x'));
        m_service.setFile(QStringLiteral("small.bin"), QByteArray(1000, 'x'));
        const HttpReply big = client.get(m_service.url(QStringLiteral("/files/big.bin")));
        QCOMPARE(big.outcome, HttpReply::TooLarge);
        QVERIFY(big.body.isEmpty());
        const HttpReply small = client.get(m_service.url(QStringLiteral("/files/small.bin")));
        QCOMPARE(small.outcome, HttpReply::Ok);
        QCOMPARE(small.body.size(), 1000);
    }

    void cancelFromATimerEndsTheRequest()
    {
        HttpClient client;
        m_service.setDelayMs(5000);
        bool busyWhileWaiting = false;
        QTimer::singleShot(100, &client, [&] {
            busyWhileWaiting = client.busy();
            client.cancel();
        });
        QElapsedTimer clock;
        clock.start();
        const HttpReply reply = client.get(m_service.url(QStringLiteral("/files/Update.txt")));
        QCOMPARE(reply.outcome, HttpReply::Cancelled);
        QVERIFY(busyWhileWaiting);
        QVERIFY(clock.elapsed() < 4000);
        client.cancel(); // idle: nothing happens
        m_service.setDelayMs(0);
        QCOMPARE(client.get(m_service.url(QStringLiteral("/files/Update.txt"))).outcome, HttpReply::Ok);
    }

    void refusedPortIsANetworkError()
    {
        HttpClient client;
        const HttpReply reply = client.get(QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(closedPort())));
        QCOMPARE(reply.outcome, HttpReply::NetworkError);
        QCOMPARE(reply.status, 0);
        QVERIFY(!reply.errorText.isEmpty());
    }

    void timersKeepFiringDuringARequest()
    {
        HttpClient client;
        m_service.setDelayMs(600);
        int ticks = 0;
        QTimer timer;
        connect(&timer, &QTimer::timeout, [&ticks] { ++ticks; });
        timer.start(50);
        QVERIFY(client.get(m_service.url(QStringLiteral("/files/Update.txt"))).ok());
        QVERIFY2(ticks >= 3, qPrintable(QString::number(ticks)));
    }

    void nestedRequestOnABusyClientIsRefused()
    {
        HttpClient client;
        m_service.setDelayMs(300);
        HttpReply nested;
        QTimer::singleShot(50, &client,
                           [&] { nested = client.get(m_service.url(QStringLiteral("/files/lower.txt"))); });
        QVERIFY(client.get(m_service.url(QStringLiteral("/files/Update.txt"))).ok());
        QCOMPARE(nested.outcome, HttpReply::NetworkError);
        QCOMPARE(m_service.count("GET", QStringLiteral("/files/lower.txt")), 0);
    }

    void tlsCertificatesAreVerified()
    {
        QTemporaryDir dir;
        const QString key = dir.filePath(QStringLiteral("key.pem"));
        const QString cert = dir.filePath(QStringLiteral("cert.pem"));
        const auto made = quillora::test::runCommand(
            QStringLiteral("openssl"),
            {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-newkey"),
             QStringLiteral("rsa:2048"), QStringLiteral("-nodes"), QStringLiteral("-days"),
             QStringLiteral("1"), QStringLiteral("-subj"), QStringLiteral("/CN=127.0.0.1"),
             QStringLiteral("-addext"), QStringLiteral("subjectAltName=IP:127.0.0.1"),
             QStringLiteral("-keyout"), key, QStringLiteral("-out"), cert});
        QVERIFY2(made.ok(), made.err.constData());
        const QSslCertificate certificate(quillora::test::readFile(cert));
        QSslConfiguration serverTls = QSslConfiguration::defaultConfiguration();
        serverTls.setLocalCertificate(certificate);
        serverTls.setPrivateKey(QSslKey(quillora::test::readFile(key), QSsl::Rsa));
        serverTls.setPeerVerifyMode(QSslSocket::VerifyNone);

        QSslServer server;
        server.setSslConfiguration(serverTls);
        QVERIFY(server.listen(QHostAddress::LocalHost, 0));
        int handshakes = 0;
        connect(&server, &QSslServer::startedEncryptionHandshake, [&handshakes] { ++handshakes; });
        connect(&server, &QTcpServer::pendingConnectionAvailable, [&server] {
            QTcpSocket* socket = server.nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [socket] {
                if (!socket->readAll().contains("\r\n\r\n"))
                    return;
                socket->write("HTTP/1.1 200 OK\r\nContent-Length: 6\r\nConnection: close\r\n\r\nsecret");
                socket->disconnectFromHost();
            });
        });
        const QUrl url(QStringLiteral("https://127.0.0.1:%1/").arg(server.serverPort()));

        // A certificate nobody vouches for is refused.
        HttpClient client;
        const HttpReply refused = client.get(url);
        QCOMPARE(refused.outcome, HttpReply::NetworkError);
        QVERIFY(refused.body.isEmpty());
        QCOMPARE(handshakes, 1);

        // Once its issuer is trusted, the same server answers (a new client: the old one keeps its channel).
        const QSslConfiguration saved = QSslConfiguration::defaultConfiguration();
        QSslConfiguration trusting = saved;
        trusting.addCaCertificate(certificate);
        QSslConfiguration::setDefaultConfiguration(trusting);
        HttpClient fresh;
        const HttpReply trusted = fresh.get(url);
        QSslConfiguration::setDefaultConfiguration(saved);
        QVERIFY2(trusted.ok(), qPrintable(trusted.errorText));
        QCOMPARE(trusted.body, QByteArrayLiteral("secret"));
    }

    void getUrlTextDropsNotFoundPages()
    {
        m_service.setFile(QStringLiteral("list.txt"), QByteArrayLiteral("site|http://a.example/\r\n"));
        m_service.setFile(QStringLiteral("quoted.txt"),
                          QByteArrayLiteral("ok\r\nsee 404 Not Found inside\r\n"));
        m_service.setFile(QStringLiteral("latin.txt"), QByteArrayLiteral("caf\xe9"),
                          "text/plain; charset=ISO-8859-1");
        m_service.setFile(QStringLiteral("utf8.txt"), QByteArrayLiteral("caf\xc3\xa9"), "text/plain");
        m_service.setFile(QStringLiteral("error.html"),
                          QByteArrayLiteral("<h1>500 Internal Server Error</h1>"));
        QCOMPARE(GetUrlText(m_service.url(QStringLiteral("/files/list.txt"))),
                 QStringLiteral("site|http://a.example/\r\n"));
        QCOMPARE(GetUrlText(m_service.url(QStringLiteral("/files/quoted.txt"))), QString());
        QCOMPARE(GetUrlText(m_service.url(QStringLiteral("/files/nothing-here"))), QString());
        QCOMPARE(GetUrlText(m_service.url(QStringLiteral("/files/latin.txt"))), QStringLiteral("café"));
        QCOMPARE(GetUrlText(m_service.url(QStringLiteral("/files/utf8.txt"))), QStringLiteral("café"));
        // Any other error page is content to this call.
        QCOMPARE(GetUrlText(m_service.url(QStringLiteral("/files/error.html"))),
                 QStringLiteral("<h1>500 Internal Server Error</h1>"));
        QCOMPARE(GetUrlText(QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(closedPort()))), QString());
    }

    void getUrlBytesTextNeedsTheExactMarker()
    {
        const QUrl update = m_service.url(QStringLiteral("/files/Update.txt"));
        const QUrl lower = m_service.url(QStringLiteral("/files/lower.txt"));
        QVERIFY(GetUrlBytesText(update, true).startsWith(QStringLiteral("2.1.92|1|")));
        QVERIFY(GetUrlBytesText(update, true).contains(QStringLiteral("Updates")));
        QCOMPARE(GetUrlBytesText(lower, true), QString());
        QCOMPARE(GetUrlBytesText(lower, false),
                 QStringLiteral("2.1.92|1|http://127.0.0.1/download|updates only\r\n"));
        QCOMPARE(GetUrlBytesText(QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(closedPort())), false),
                 QString());
    }

    void getUrlBytesTextIgnoresTheDeclaredCharset()
    {
        // The machine's legacy code page decides, never the header.
        const QByteArray bytes = QByteArrayLiteral("Updates \xb0\xa1 caf\xe9");
        const QString codec = QString::fromLatin1(legacyCodecForLocale(systemLocaleName()));
        m_service.setFile(QStringLiteral("cp.txt"), bytes, "text/plain; charset=UTF-8");
        const QString expected = quillora::test::iconvDecode(bytes, codec);
        QVERIFY(!expected.isNull());
        QVERIFY(expected != QString::fromUtf8(bytes));
        QCOMPARE(GetUrlBytesText(m_service.url(QStringLiteral("/files/cp.txt")), true), expected);
    }

    void connectivityRule()
    {
        using R = QNetworkInformation::Reachability;
        QVERIFY(connectivityVerdict(R::Online, false));
        QVERIFY(connectivityVerdict(R::Site, false));
        QVERIFY(!connectivityVerdict(R::Local, true));
        QVERIFY(!connectivityVerdict(R::Disconnected, true));
        QVERIFY(connectivityVerdict(R::Unknown, true));
        QVERIFY(!connectivityVerdict(R::Unknown, false));
        QVERIFY(connectivityVerdict(std::nullopt, true));
        QVERIFY(!connectivityVerdict(std::nullopt, false));
    }

    void connectivityAnswersWithoutBlocking()
    {
        QElapsedTimer clock;
        clock.start();
        const bool first = IsInternetConnected();
        // A generous bound: it catches a lookup or a time-out, not a slow machine.
        QVERIFY2(clock.elapsed() < 3000, qPrintable(QString::number(clock.elapsed())));
        clock.restart();
        for (int i = 0; i < 20; ++i)
            QCOMPARE(IsInternetConnected(), first);
        QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
        FixedConnectivity fixed(false);
        ConnectivityProbe& probe = fixed;
        QVERIFY(!probe.isOnline());
        fixed.setOnline(true);
        QVERIFY(probe.isOnline());
    }
};

QTEST_GUILESS_MAIN(TestHttp)
#include "test_http.moc"
