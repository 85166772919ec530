#include "TestSupport.h"
#include "app/LocaleChoice.h"
#include "net/Http.h"
#include "standin/StandinService.h"
#include "translate/ResponseParser.h"
#include "translate/ServiceAddresses.h"
#include "translate/WebPageAddress.h"

#include <QSslKey>
#include <QSslServer>
#include <QtTest>

using namespace quillora;

// The HTTP client, what is sent to the service and what is read from its answers.
class TestHttp : public QObject
{
    Q_OBJECT
private:
    test::StandinService m_service;
    QUrl url(const QString& path) const { return QUrl(m_service.baseUrl() + path); }
    static HttpReply fetch(HttpClient& client, const QUrl& url)
    {
        return test::awaitAnswer<HttpReply>([&](auto done) { QVERIFY(client.get(url, done)); })
            .value_or(HttpReply{});
    }
    static HttpReply okReply(const QByteArray& body, const QByteArray& contentType = "text/plain")
    {
        return {HttpReply::Ok, 200, body, contentType, {}, {}, {}};
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_service.listen()); }
    void init() { m_service.reset(); }

    // What a POST carries, and an unreachable server, show in the engine's and the CLI's tests.
    void answers()
    {
        HttpClient client;
        m_service.setFile("a.txt", "alpha\r\nbeta", "text/plain; charset=UTF-8");
        const HttpReply got = fetch(client, url("/files/a.txt"));
        QCOMPARE(got.contentType + '|' + got.body, "text/plain; charset=UTF-8|alpha\r\nbeta");
        // Every error status still delivers its page.
        for (int status : {400, 403, 404, 407, 418, 500, 503}) {
            const HttpReply page = fetch(client, url("/status/" + QString::number(status)));
            QCOMPARE(std::pair(page.outcome, page.status), std::pair(HttpReply::Ok, status));
            QVERIFY(page.body.contains("status " + QByteArray::number(status)));
        }
        QCOMPARE(m_service.requests().constFirst().header("User-Agent"), QByteArray("Quillora/2.1.91"));
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

    // The size, time and redirect limits, and one request at a time.
    void limits()
    {
        HttpClient client;
        m_service.setFile("big", QByteArray(1001, 'x'));
        m_service.setFile("cap", QByteArray(1000, 'x'));
        client.setMaxBytes(1000);
        QCOMPARE(fetch(client, url("/files/big")).outcome, HttpReply::TooLarge);
        QCOMPARE(fetch(client, url("/files/cap")).body.size(), 1000);
        m_service.clearRequests();
        // A request returns at once; a second one is refused meanwhile; a cancel ends the first.
        m_service.setDelayMs(3000);
        std::optional<HttpReply> got;
        QVERIFY(client.get(url("/files/cap"), [&got](const HttpReply& reply) { got = reply; }));
        QVERIFY(!got && client.busy() &&
                !client.get(url("/files/cap"), [](const HttpReply&) { QFAIL("called"); }));
        client.cancel();
        QCOMPARE(got.value_or(HttpReply{}).outcome, HttpReply::Cancelled);
        QVERIFY(!client.busy() && m_service.requests().size() <= 1);
        client.cancel(); // idle: nothing happens
        // The limit holds for the whole exchange, also while a byte comes every 50 ms.
        client.setTimeoutMs(300);
        for (const QUrl& slow : {url("/files/cap"), url("/trickle/100")}) {
            QElapsedTimer clock;
            clock.start();
            const HttpReply late = fetch(client, slow);
            QCOMPARE(late.outcome, HttpReply::TimedOut);
            QVERIFY2(clock.elapsed() < 2500 && late.body.isEmpty() && !client.busy(),
                     qPrintable(slow.path()));
        }
        client.setTimeoutMs(HttpClient::kDefaultTimeoutMs);
        const HttpReply five = fetch(client, url("/redirect/5"));
        QVERIFY(five.ok() && five.body.contains("arrived"));
        QCOMPARE(five.url.path(), "/redirect/0");
        m_service.clearRequests();
        QCOMPARE(fetch(client, url("/redirect/6")).outcome, HttpReply::TooManyRedirects);
        // Qt sends a request again now and then when the server closes a connection under it.
        const qsizetype sent = m_service.requests().size();
        QVERIFY(sent > HttpClient::kMaxRedirects && sent <= 2 * (HttpClient::kMaxRedirects + 1));
    }

    void unfinishedAnswersAreNeverOk()
    {
        // Headers and part of the body, then the connection drops.
        HttpClient client;
        const HttpReply cut = fetch(client, url("/cut/1000"));
        QCOMPARE(cut.outcome, HttpReply::NetworkError);
        QVERIFY(cut.body.isEmpty());
        // The program ends halfway through an answer: the client goes without calling back.
        bool called = false;
        auto* ending = new HttpClient;
        ending->get(url("/trickle/100"), [&called](const HttpReply&) { called = true; });
        QTRY_COMPARE(m_service.count("GET", "/trickle/100"), 1);
        QTest::qWait(200); // a few bytes of the body arrive
        delete ending;
        QVERIFY(!called);
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
        QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
        tls.setLocalCertificate(QSslCertificate(test::readFile(cert)));
        tls.setPrivateKey(QSslKey(test::readFile(key), QSsl::Rsa));
        QSslServer server;
        server.setSslConfiguration(tls);
        QVERIFY(server.listen(QHostAddress::LocalHost, 0));
        // A certificate nobody vouches for ends the handshake; a client that let it pass would time out.
        HttpClient client;
        client.setTimeoutMs(5000);
        const HttpReply refused =
            fetch(client, QUrl(QStringLiteral("https://127.0.0.1:%1/").arg(server.serverPort())));
        QCOMPARE(refused.outcome, HttpReply::NetworkError);
        QVERIFY2(refused.errorText.contains("certificate"), qPrintable(refused.errorText));
    }

    void formPage()
    {
        const QString end = "</span></div>", span = "<span title=\"t\" " + SpanMark;
        const QList<std::tuple<QString (*)(const QString&), QString, QString>> rows{
            {cutTranslation, SpanMark + "abc" + end, "abc"},
            {cutTranslation, span + "Hallo.</span> " + span + "Wie<br>dir" + end, "Hallo.Wie\r\ndir"},
            // A piece without the marker gives its characters from the 47th on.
            {cutTranslation, SpanMark + "a</span>" + QString(44, u'.') + "YZ" + end, "a"},
            {cutTranslation, SpanMark + "a</span>" + QString(45, u'.') + "YZ" + end, "aZ"},
            {cutTranslation, SpanMark + "a</span></span>" + SpanMark + "b" + end, "ab"},
            {cutTranslation, "x" + end + SpanMark + "late" + end, "late"},
            {cutTranslation, SpanMark + "text</span></p>", ""},
            {cutTranslation, "<span>text" + end, ""},
            {cutRomanization, "</div>" + TranslitMark + "Nǐ hǎo</div>", "Nǐ hǎo"},
            {cutRomanization, TranslitMark + "no end", ""},
            {cutDictionary, DictMark + "n<div><div>a&amp;b?</li></ol>", "n:\r\n1. a&amp;b?\r\n"},
            {cutDictionary, DictMark + "adj</li></li>adv<div><div>w</div><div></li></ol>",
             "adj:\r\nadv:\r\n1. w\r\n2. \r\n"},
            {cutDictionary, DictMark + "n<div><div>a<div><div>b</li></ol>", "n:\r\n1. a\r\n"},
            {cutDictionary, DictMark + "n<div><div>a</div></div>", ""}};
        for (const auto& [cut, page, expected] : rows)
            QCOMPARE(cut(page), expected);
        // Raw text, as a translation, as a romanization: where the two differ, where the order of the
        // replacements shows, and what is left alone.
        const QList<QStringList> entities{{"ni  hao   x", "ni  hao   x", "ni\r\nhao\r\n x"},
                                          {"a&lt;br&gt;b", "a\r\nb", "a<br>b"},
                                          {"&amp;amp;#39;", "'", "&#39;"},
                                          {"&quot;&#39;&amp;#39;&gt;&amp;gt;", "\"''>>", "\"''>>"},
                                          {"&amp;lt &LT;", "&lt &LT;", "&lt &LT;"}};
        for (const QStringList& row : entities) {
            QCOMPARE(cutTranslation(SpanMark + row[0] + end), row[1]);
            QCOMPARE(cutRomanization(TranslitMark + row[0] + "</div>"), row[2]);
        }
        // Written out as the service sent it, so a changed marker shows here.
        const QString page =
            "<div id=result_box dir=\"ltr\"><span title=\"x\" onmouseover=\"this.style.backgroundColor="
            "'#ebeff9'\" onmouseout=\"this.style.backgroundColor='#fff'\">Is it &amp;lt;ok&amp;gt;?"
            "</span></span></div><div id=res-translit class=translit dir=ltr style=\"text-align:\">"
            "shi  ma</div><h3>d</h3><ol><li>adj<div><div>fine</div></div></li></ol>";
        QCOMPARE(parseFormResponse(page),
                 (TranslationResult{"Is it <ok> ", "shi\r\nma", "adj:\r\n1. fine\r\n"}));
        for (const QString& marker : {SpanMark, TranslitMark, DictMark})
            QVERIFY(hasFormMarkers("x" + marker));
        QVERIFY(!hasFormMarkers("<html><body>[[[\"Hallo\"]]]</body></html>"));
    }

    void jsonAnswers()
    {
        // Body, then translation|romanization|dictionary.
        const QList<std::pair<QByteArray, QString>> rows{
            {R"([[["Hallo. ","Hello. ",null,null,3],["Wie?","How?"]],null,"en"])", "Hallo. Wie?||"},
            // The romanization of the translation, in an entry of its own or inside each sentence.
            {R"([[["\u4f60\u597d","Hello"],[null,null,"N\u01d0 h\u01ceo","hello"]],null,"en"])",
             "你好|Nǐ hǎo|"},
            {R"([[["你好。","Hello.","Nǐ hǎo.","Hello."],["再见","Bye",null,null],["谢","Thanks"," Xiè ",null]],null,"en"])",
             "你好。再见谢|Nǐ hǎo. Xiè|"},
            {R"([[["a","x","in sentence"],[null,null,"whole text"]]])", "a|whole text|"},
            {R"([[["Hallo","\u4f60\u597d"],[null,null,null,"Ni hao"],[null,null,"late"]]])", "Hallo||"},
            // The dictionary's layout; no entity rules.
            {R"([[["Why? &amp;quot;  x"]],[["noun",["house","a?"],[["house",["Haus"]]],"Haus",1],)"
             R"(["verb",["to house"],[],"hausen",2]],"de"])",
             "Why? &amp;quot;  x||noun:\r\n1. house\r\n2. a?\r\nverb:\r\n1. to house\r\n"},
            {R"([[1,"x",null,[],{"a":1},[5,"t"],[true],["ok"],[null,2,3,4]],)"
             R"([[1,["w"]],["n",7],["v",[1,"w",null,["z"]]],"s",null,[]],{}])",
             "ok||n:\r\nv:\r\n1. w\r\n"},
            {"[[]]", "||"},
            // Empty elements, and commas inside strings.
            {"[[[\"\u4f60\u597d\",\"Hello\",,,1],[,, \"N\u01d0\" ,\"hello\"],],,\"en\",]", "你好|Nǐ|"},
            {R"([,[["noun",["house",,"home"],,"Haus",],[,["x"]]],"de"])",
             "||noun:\r\n1. house\r\n2. home\r\n"},
            {"[[[\"a,,b\",\"[,]\",,],[\"say \\\",,\\\" \\\\\",,]],[]]", "a,,bsay \",,\" \\||"}};
        for (const auto& [body, parts] : rows) {
            TranslationResult r{"stale", "stale", "stale"};
            QVERIFY2(parseJsonResponse(body, &r), body.constData());
            QCOMPARE(r.translation + '|' + r.romanization + '|' + r.dictionary, parts);
        }
        const QByteArray garbage[] = {"",
                                      "<html><body><div id=result_box>x</div></body></html>",
                                      "[[[\"Hallo\",\"Hello\"]],null,\"e",
                                      R"({"sentences":[{"trans":"x"}]})",
                                      "[]",
                                      R"([,,"en",,,,0.8])",
                                      R"([[["x"]]] trailing)",
                                      QByteArray("\x00\xff[[\x01", 5),
                                      QByteArray(100000, '[')};
        // That a refused answer leaves the result alone shows in the replay of the fuzz corpus.
        for (const QByteArray& body : garbage)
            QVERIFY2(!parseJsonResponse(body, nullptr), body.left(60).constData());
    }

    void addresses()
    {
        QCOMPARE(
            jsonRequestUrl("http://127.0.0.1:8", "gtx", "a+b&c=d é\n中#?", "", "de", "en").toEncoded(),
            "http://127.0.0.1:8/translate_a/single?client=gtx&sl=auto&tl=de&hl=en&dt=t&dt=rm&dt=bd&ie=UTF-8"
            "&oe=UTF-8&q=a%2Bb%26c%3Dd%20%C3%A9%0A%E4%B8%AD%23%3F");
        // The page address goes in as typed, unescaped.
        QCOMPARE(webPageTranslationAddress("http://s", "th", "", "zh-CN",
                                           "en.wikipedia.org/w/index.php?a=1&b=2 #top"),
                 "http://s/"
                 "translate?js=n&prev=_t&hl=th&ie=UTF-8&layout=2&eotf=1&sl=&tl=zh-CN&u=en.wikipedia.org/w/"
                 "index.php?a=1&b=2 #top");
        // One trailing slash is dropped; an empty variable means the default.
        qunsetenv("QUILLORA_API_CLIENT");
        qputenv("QUILLORA_API_URL", "http://127.0.0.1:8081//");
        qputenv("QUILLORA_SITE_URL", "http://127.0.0.1:8082/site");
        qputenv("QUILLORA_SERVICE_URL", "");
        const ServiceAddresses a = ServiceAddresses::fromEnvironment();
        QCOMPARE(a.api + ' ' + a.apiClient + ' ' + a.formUrl().toString(),
                 "http://127.0.0.1:8081/ gtx https://translate.google.com/");
        QCOMPARE(a.onlineHelp(), QUrl("http://127.0.0.1:8082/site/help.html"));
    }
};

QTEST_GUILESS_MAIN(TestHttp)
#include "test_http.moc"
