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
HttpReply fetch(HttpClient& client, const QUrl& url)
{
    return test::awaitAnswer<HttpReply>([&](auto done) { QVERIFY(client.get(url, done)); })
        .value_or(HttpReply{});
}

HttpReply okReply(const QByteArray& body, const QByteArray& contentType = "text/plain")
{
    return {HttpReply::Ok, 200, body, contentType, {}, {}, {}};
}
} // namespace

class TestHttp : public QObject
{
    Q_OBJECT
private:
    test::StandinService m_service;
    QUrl file(const QString& name) const { return QUrl(m_service.baseUrl() + "/files/" + name); }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_service.listen()); }
    void init() { m_service.reset(); }

    // What a POST carries, and an unreachable server, show in the engine's and the CLI's tests.
    void answersAsSent()
    {
        HttpClient client;
        m_service.setFile("a.txt", "alpha\r\nbeta", "text/plain; charset=UTF-8");
        const HttpReply got = fetch(client, file("a.txt"));
        QCOMPARE(got.contentType + '|' + got.body, "text/plain; charset=UTF-8|alpha\r\nbeta");
        // Every error status still delivers its page.
        for (int status : {400, 403, 404, 407, 418, 500, 503}) {
            const HttpReply page =
                fetch(client, QUrl(m_service.baseUrl() + "/status/" + QString::number(status)));
            QCOMPARE(std::pair(page.outcome, page.status), std::pair(HttpReply::Ok, status));
            QVERIFY(page.body.contains("status " + QByteArray::number(status)));
        }
        QCOMPARE(m_service.requests().constFirst().header("User-Agent"), QByteArray("Quillora/2.1.91"));
    }

    void limits()
    {
        HttpClient client;
        m_service.setFile("big", QByteArray(1001, 'x'));
        m_service.setFile("cap", QByteArray(1000, 'x'));
        client.setMaxBytes(1000);
        QCOMPARE(fetch(client, file("big")).outcome, HttpReply::TooLarge);
        QCOMPARE(fetch(client, file("cap")).body.size(), 1000);
        m_service.clearRequests();
        // A request returns at once; a second one is refused meanwhile; a cancel ends the first.
        m_service.setDelayMs(3000);
        std::optional<HttpReply> got;
        QVERIFY(client.get(file("cap"), [&got](const HttpReply& reply) { got = reply; }));
        QVERIFY(!got && client.busy() && !client.get(file("cap"), [](const HttpReply&) { QFAIL("called"); }));
        client.cancel();
        QCOMPARE(got.value_or(HttpReply{}).outcome, HttpReply::Cancelled);
        QVERIFY(!client.busy() && m_service.requests().size() <= 1);
        client.cancel(); // idle: nothing happens
        // The limit holds for the whole exchange, also while a byte comes every 50 ms.
        client.setTimeoutMs(300);
        for (const QString& slow : {file("cap").toString(), m_service.baseUrl() + "/trickle/100"}) {
            QElapsedTimer clock;
            clock.start();
            const HttpReply late = fetch(client, QUrl(slow));
            QCOMPARE(late.outcome, HttpReply::TimedOut);
            QVERIFY2(clock.elapsed() < 2500 && late.body.isEmpty() && !client.busy(), qPrintable(slow));
        }
    }

    void unfinishedAnswersAreNeverOk()
    {
        // Headers and half the body, then the connection drops.
        HttpClient client;
        const HttpReply cut = fetch(client, QUrl(m_service.baseUrl() + "/cut/1000"));
        QCOMPARE(cut.outcome, HttpReply::NetworkError);
        QVERIFY(cut.body.isEmpty());
        // The program ends halfway through an answer: the client goes without calling back.
        bool called = false;
        auto* ending = new HttpClient;
        ending->get(QUrl(m_service.baseUrl() + "/trickle/100"),
                    [&called](const HttpReply&) { called = true; });
        QTRY_COMPARE(m_service.count("GET", "/trickle/100"), 1);
        QTest::qWait(200); // a few bytes of the body arrive
        delete ending;
        QVERIFY(!called);
    }

    void redirectsAreFollowedFiveTimes()
    {
        HttpClient client;
        const HttpReply five = fetch(client, QUrl(m_service.baseUrl() + "/redirect/5"));
        QVERIFY(five.ok() && five.body.contains("arrived"));
        QCOMPARE(five.url.path(), "/redirect/0");
        // Qt sends a request again now and then when the server closes a connection under it.
        for (const char* tooMany : {"/redirect/6", "/redirect/loop"}) {
            m_service.clearRequests();
            QCOMPARE(fetch(client, QUrl(m_service.baseUrl() + tooMany)).outcome, HttpReply::TooManyRedirects);
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
        HttpClient client;
        QCOMPARE(fetch(client, url).outcome, HttpReply::NetworkError);
        const QSslConfiguration saved = QSslConfiguration::defaultConfiguration();
        QSslConfiguration withCa = saved;
        withCa.addCaCertificate(certificate);
        QSslConfiguration::setDefaultConfiguration(withCa);
        HttpClient trusting;
        const HttpReply trusted = fetch(trusting, url);
        QSslConfiguration::setDefaultConfiguration(saved);
        QCOMPARE(trusted.body, QByteArray("secret"));
    }

    void answerTexts()
    {
        // Only "404 Not Found" empties an answer; the declared charset decodes it, else UTF-8.
        const QList<QByteArrayList> rows{
            {"ok\r\nsee 404 Not Found inside", "text/plain", ""},
            {"caf\xe9", "text/plain; charset=ISO-8859-1", "café"},
            {"caf\xc3\xa9", "text/plain", "café"},
            {"<h1>500 Server Error</h1>", "text/html", "<h1>500 Server Error</h1>"}};
        for (const QByteArrayList& row : rows)
            QCOMPARE(urlText(okReply(row[0], row[1])), QString::fromUtf8(row[2]));
        // The update list needs "Updates" and is read in the legacy code page, whatever the header says.
        const QByteArray lower = "2.1.92|1|http://127.0.0.1/download|updates only\r\n";
        QCOMPARE(urlBytesText(okReply(lower), true), QString());
        QCOMPARE(urlBytesText(okReply(lower), false), QString::fromLatin1(lower));
        const QByteArray bytes = "Updates \xb0\xa1 caf\xe9";
        const test::CommandResult iconv = test::runCommand(
            "iconv", {"-f", QString::fromLatin1(legacyCodecForLocale(systemLocaleName())), "-t", "UTF-8"},
            bytes);
        const QString expected = QString::fromUtf8(iconv.out);
        QVERIFY(iconv.ok() && expected != QString::fromUtf8(bytes));
        QCOMPARE(urlBytesText(okReply(bytes, "text/plain; charset=UTF-8"), true), expected);
        const HttpReply failed{HttpReply::NetworkError, 0, "Updates", "text/plain", {}, {}, {}};
        QCOMPARE(urlText(failed) + urlBytesText(failed, false), QString());
    }
};

QTEST_GUILESS_MAIN(TestHttp)
#include "test_http.moc"
