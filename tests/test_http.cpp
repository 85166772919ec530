#include "TestSupport.h"
#include "app/LocaleChoice.h"
#include "net/Http.h"
#include "standin/StandinService.h"

#include <QSslKey>
#include <QSslServer>
#include <QtTest>

using namespace quillora;

namespace
{
const QUrl kNobody("http://127.0.0.1:1/"); // a port nothing listens on
}

class TestHttp : public QObject
{
    Q_OBJECT
private:
    test::StandinService m_service;
    QUrl file(const QString& name) const { return QUrl(m_service.baseUrl() + "/files/" + name); }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_service.listen()); }
    void init() { m_service.reset(); }

    void requestsAndAnswersAsSent()
    {
        HttpClient client;
        m_service.setFile("a.txt", "alpha\r\nbeta", "text/plain; charset=UTF-8");
        const HttpReply got = client.get(file("a.txt"));
        QCOMPARE(got.contentType + '|' + got.body, "text/plain; charset=UTF-8|alpha\r\nbeta");
        QVERIFY(
            client.post(QUrl(m_service.baseUrl()), "x=é&y=%26+z", "application/x-www-form-urlencoded").ok());
        const auto& post = m_service.requests().at(1);
        QCOMPARE(post.body + '|' + post.header("content-type"),
                 "x=é&y=%26+z|application/x-www-form-urlencoded");
        for (const auto& r : m_service.requests())
            QCOMPARE(r.header("User-Agent"), QByteArray("Quillora/2.1.91"));
        // Every error status still delivers its page; no server is a network error.
        for (int status : {400, 403, 404, 407, 418, 500, 503}) {
            const HttpReply got =
                client.get(QUrl(m_service.baseUrl() + "/status/" + QString::number(status)));
            QCOMPARE(std::pair(got.outcome, got.status), std::pair(HttpReply::Ok, status));
            QVERIFY(got.body.contains("status " + QByteArray::number(status)));
        }
        QCOMPARE(client.get(kNobody).outcome, HttpReply::NetworkError);
    }

    void limits()
    {
        HttpClient client;
        m_service.setFile("big", QByteArray(1001, 'x'));
        m_service.setFile("cap", QByteArray(1000, 'x'));
        client.setMaxBytes(1000);
        QCOMPARE(client.get(file("big")).outcome, HttpReply::TooLarge);
        QCOMPARE(client.get(file("cap")).body.size(), 1000);
        m_service.clearRequests();
        // Timers keep firing while a request waits: a second request is refused, a cancel ends the first.
        m_service.setDelayMs(3000);
        HttpReply nested;
        QTimer::singleShot(50, &client, [&] { nested = client.get(file("cap")); });
        QTimer::singleShot(100, &client, [&] { client.cancel(); });
        QCOMPARE(client.get(file("cap")).outcome, HttpReply::Cancelled);
        QVERIFY(!nested.errorText.isEmpty() && m_service.requests().size() == 1);
        client.cancel(); // idle: nothing happens
        // The limit holds for the whole exchange, also while a byte comes every 50 ms.
        client.setTimeoutMs(300);
        for (const QString& slow : {file("cap").toString(), m_service.baseUrl() + "/trickle/100"}) {
            QElapsedTimer clock;
            clock.start();
            const HttpReply got = client.get(QUrl(slow));
            QCOMPARE(got.outcome, HttpReply::TimedOut);
            QVERIFY2(clock.elapsed() < 2500 && got.body.isEmpty() && !client.busy(), qPrintable(slow));
        }
    }

    void redirectsAreFollowedFiveTimes()
    {
        HttpClient client;
        const HttpReply five = client.get(QUrl(m_service.baseUrl() + "/redirect/5"));
        QVERIFY(five.ok() && five.body.contains("arrived"));
        QCOMPARE(five.url.path(), "/redirect/0");
        // Qt sends a request again now and then when the server closes a connection under it.
        for (const char* tooMany : {"/redirect/6", "/redirect/loop"}) {
            m_service.clearRequests();
            QCOMPARE(client.get(QUrl(m_service.baseUrl() + tooMany)).outcome, HttpReply::TooManyRedirects);
            const qsizetype sent = m_service.requests().size();
            QVERIFY2(sent > HttpClient::kMaxRedirects && sent <= 2 * (HttpClient::kMaxRedirects + 1),
                     tooMany);
        }
    }

    void tlsCertificatesAreVerified()
    {
        QTemporaryDir dir;
        const QString key = dir.filePath("key.pem"), cert = dir.filePath("cert.pem");
        const auto made =
            test::runCommand("openssl", {"req", "-x509", "-newkey", "rsa:2048", "-nodes", "-days", "1",
                                         "-subj", "/CN=127.0.0.1", "-addext", "subjectAltName=IP:127.0.0.1",
                                         "-keyout", key, "-out", cert});
        QVERIFY2(made.ok(), made.err.constData());
        const QSslCertificate certificate(test::readFile(cert));
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        tls.setLocalCertificate(certificate);
        tls.setPrivateKey(QSslKey(test::readFile(key), QSsl::Rsa));
        QSslServer server;
        server.setSslConfiguration(tls);
        QVERIFY(server.listen(QHostAddress::LocalHost, 0));
        connect(&server, &QTcpServer::pendingConnectionAvailable, [&server] {
            QTcpSocket* socket = server.nextPendingConnection();
            connect(socket, &QTcpSocket::readyRead, socket, [socket] {
                socket->write("HTTP/1.1 200 OK\r\nContent-Length: 6\r\nConnection: close\r\n\r\nsecret");
                socket->disconnectFromHost();
            });
        });
        const QUrl url(QStringLiteral("https://127.0.0.1:%1/").arg(server.serverPort()));
        // A certificate nobody vouches for is refused; trusted, the same server answers.
        QCOMPARE(HttpClient().get(url).outcome, HttpReply::NetworkError);
        const QSslConfiguration saved = QSslConfiguration::defaultConfiguration();
        QSslConfiguration trusting = saved;
        trusting.addCaCertificate(certificate);
        QSslConfiguration::setDefaultConfiguration(trusting);
        const HttpReply trusted = HttpClient().get(url);
        QSslConfiguration::setDefaultConfiguration(saved);
        QCOMPARE(trusted.body, QByteArray("secret"));
    }

    void getUrlText()
    {
        // Only "404 Not Found" empties an answer; the declared charset decodes it, else UTF-8.
        const QList<QByteArrayList> files{
            {"ok\r\nsee 404 Not Found inside", "text/plain", ""},
            {"caf\xe9", "text/plain; charset=ISO-8859-1", "café"},
            {"caf\xc3\xa9", "text/plain", "café"},
            {"<h1>500 Server Error</h1>", "text/html", "<h1>500 Server Error</h1>"}};
        for (const QByteArrayList& f : files) {
            m_service.setFile("t", f[0], f[1]);
            QCOMPARE(GetUrlText(file("t")), QString::fromUtf8(f[2]));
        }
        QCOMPARE(GetUrlText(file("missing")) + GetUrlText(kNobody), QString());
    }

    void getUrlBytesTextNeedsUpdatesAndTheLegacyCodePage()
    {
        m_service.setFile("lower", "2.1.92|1|http://127.0.0.1/download|updates only\r\n");
        QCOMPARE(GetUrlBytesText(file("lower"), true) + GetUrlBytesText(kNobody, false), QString());
        QCOMPARE(GetUrlBytesText(file("lower"), false),
                 "2.1.92|1|http://127.0.0.1/download|updates only\r\n");
        const QByteArray bytes = "Updates \xb0\xa1 caf\xe9";
        m_service.setFile("cp", bytes, "text/plain; charset=UTF-8"); // the header is ignored
        const QString expected = test::iconvDecode(bytes, legacyCodecForLocale(systemLocaleName()));
        QVERIFY(!expected.isNull() && expected != QString::fromUtf8(bytes));
        QCOMPARE(GetUrlBytesText(file("cp"), true), expected);
    }
};

QTEST_GUILESS_MAIN(TestHttp)
#include "test_http.moc"
