#include "app/StringTable.h"
#include "standin/StandinService.h"
#include "translate/TranslationEngine.h"

#include <QtTest>

using namespace quillora;
using quillora::test::StandinService;
using Form = StandinService::FormMode;
using Json = StandinService::JsonMode;
using Failure = TranslationFailure;

class TestEngine : public QObject
{
    Q_OBJECT
private:
    StandinService m_service;

    ServiceAddresses addresses() const { return {m_service.baseUrl(), m_service.baseUrl(), "gtx", {}}; }
    static TranslationRequest request(const QString& text, const QString& source = {})
    {
        return {text, source, "fr", "en"};
    }
    int posts() const { return m_service.count("POST", "/"); }
    int jsonGets() const { return m_service.count("GET", "/translate_a/single"); }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_service.listen()); }
    void init() { m_service.reset(); }

    void oldPageAndTheFormAsSent()
    {
        TranslationEngine engine(addresses());
        for (const char* blank : {"", "    "})
            QCOMPARE(engine.translate(request(blank)).failure, Failure::NothingToTranslate);
        QVERIFY(m_service.requests().isEmpty());
        // Only spaces count as blank: a tab or a line break is sent.
        for (const char* other : {"\t", " \r\n "})
            engine.translate(request(other));
        QCOMPARE(posts(), 2);
        m_service.clearRequests();
        const TranslationOutcome hello = engine.translate(request("hello"));
        QCOMPARE(hello.result, (TranslationResult{"bonjour", "/bonjour/",
                                                  "interjection:\r\n1. bonjour\r\n2. salut\r\n3. allô\r\n"}));
        QVERIFY(hello.response.contains(SpanMark));
        const TranslationResult lines = engine.translate(request("hello <world>\r\na&b a+b", "en")).result;
        QCOMPARE(lines.translation + '|' + lines.romanization,
                 "bonjour <monde>\r\nA&B A+B|/bonjour <monde>\r\na&b a+b/");
        const auto& sent = m_service.requests().constLast();
        QCOMPARE(sent.body, "prev=hp&hl=en&ie=UTF-8&js=y&text=hello <world>\r\na%26b a+b&file=&sl=en&tl=fr");
        QCOMPARE(sent.target + ' ' + sent.header("Content-Type"), "/ application/x-www-form-urlencoded");
        QVERIFY(!engine.formAbandoned() && jsonGets() == 0);
    }

    void changedPageFallsBackToJsonOnce()
    {
        m_service.setFormMode(Form::Changed);
        TranslationEngine engine(addresses());
        QCOMPARE(engine.translate(request("hello world")).result,
                 (TranslationResult{"bonjour monde", "/bonjour monde/", "phrase:\r\n1. bonjour monde\r\n"}));
        QVERIFY(engine.formAbandoned());
        const QUrlQuery query = m_service.requests().last().query();
        QCOMPARE(query.queryItemValue("q", QUrl::FullyDecoded) + '|' + query.queryItemValue("sl"),
                 "hello world|auto");
        // Even with the old page back, the form stays skipped for this engine; a new one tries it again.
        m_service.setFormMode(Form::Legacy);
        QCOMPARE(engine.translate(request("a&b", "en")).result.translation, QStringLiteral("A&B"));
        QCOMPARE(m_service.requests().last().query().queryItemValue("sl"), QStringLiteral("en"));
        QCOMPARE(std::pair(posts(), jsonGets()), std::pair(1, 2));
        QVERIFY(TranslationEngine(addresses()).translate(request("cat")).ok());
        QCOMPARE(posts(), 2);
    }

    void refusalsAndBadAnswers()
    {
        for (const auto& [form, json, failure] :
             {std::tuple(Form::Refused, Json::Ok, Failure::Refused),
              std::tuple(Form::Empty, Json::Ok, Failure::Empty),
              std::tuple(Form::Changed, Json::TooManyRequests, Failure::Refused),
              std::tuple(Form::Changed, Json::Unavailable, Failure::Refused),
              std::tuple(Form::Changed, Json::Html, Failure::BadAnswer)}) {
            m_service.reset();
            m_service.setFormMode(form);
            m_service.setJsonMode(json);
            TranslationEngine engine(addresses());
            const TranslationOutcome outcome = engine.translate(request("hello"));
            QCOMPARE(outcome.failure, failure);
            QCOMPARE(outcome.result, TranslationResult());
            // Only a changed page leads to JSON, and only then is the form left for good.
            QCOMPARE(jsonGets(), form == Form::Changed ? 1 : 0);
            m_service.reset();
            QCOMPARE(engine.translate(request("hello")).result.translation, QStringLiteral("bonjour"));
            QCOMPARE(posts(), form == Form::Changed ? 0 : 1); // counted since the reset
        }
    }

    void transportFailures()
    {
        TranslationEngine engine(addresses());
        m_service.setDelayMs(1000);
        QTimer::singleShot(100, &engine, [&engine] { engine.cancel(); });
        QCOMPARE(engine.translate(request("hello")).failure, Failure::Cancelled);
        engine.http().setTimeoutMs(100);
        QCOMPARE(engine.translate(request("hello")).failure, Failure::TimedOut);
        QVERIFY(!engine.busy() && !engine.formAbandoned() && jsonGets() == 0);
        const Failure offline = TranslationEngine({"http://127.0.0.1:1", "http://127.0.0.1:1", "gtx", {}})
                                    .translate(request("hello"))
                                    .failure;
        QCOMPARE(offline, Failure::Network);
        QCOMPARE(failureStatusOffset(offline), int(MsgNetworkFailed));
    }
};

QTEST_GUILESS_MAIN(TestEngine)
#include "test_engine.moc"
