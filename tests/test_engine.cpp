#include "TestSupport.h"
#include "app/StringTable.h"
#include "standin/StandinService.h"
#include "translate/TranslationEngine.h"

#include <QtTest>

using namespace quillora;
using quillora::test::StandinService;
using Form = StandinService::FormMode;
using Json = StandinService::JsonMode;
using Failure = TranslationFailure;

namespace
{

TranslationOutcome run(TranslationEngine& engine, const TranslationRequest& request)
{
    return test::awaitAnswer<TranslationOutcome>([&](auto done) { QVERIFY(engine.translate(request, done)); })
        .value_or(TranslationOutcome{});
}

} // namespace

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
    QDateTime m_now;
    int jsonGets() const { return m_service.count("GET", "/translate_a/single"); }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_service.listen()); }
    void init()
    {
        m_service.reset();
        m_now = QDateTime(QDate(2026, 11, 23), QTime(21, 0), QTimeZone::utc());
        QFile::remove(ServiceBackoff::defaultFilePath());
    }

    void oldPageAndTheFormAsSent()
    {
        TranslationEngine engine(addresses());
        for (const char* blank : {"", "    "})
            QCOMPARE(run(engine, request(blank)).failure, Failure::NothingToTranslate);
        QVERIFY(m_service.requests().isEmpty());
        // Only spaces count as blank: a tab or a line break is sent.
        for (const char* other : {"\t", " \r\n "})
            run(engine, request(other));
        QCOMPARE(posts(), 2);
        m_service.clearRequests();
        const TranslationOutcome hello = run(engine, request("hello"));
        QCOMPARE(hello.result, (TranslationResult{"bonjour", "/bonjour/",
                                                  "interjection:\r\n1. bonjour\r\n2. salut\r\n3. allô\r\n"}));
        QVERIFY(hello.response.contains(SpanMark));
        QVERIFY(run(engine, request("hello <world>\r\na&b a+b", "en")).ok());
        const auto& sent = m_service.requests().constLast();
        QCOMPARE(sent.body, "prev=hp&hl=en&ie=UTF-8&js=y&text=hello <world>\r\na%26b a+b&file=&sl=en&tl=fr");
        QCOMPARE(sent.target + ' ' + sent.header("Content-Type"), "/ application/x-www-form-urlencoded");
        QVERIFY(!engine.formSkipped() && jsonGets() == 0);
    }

    void changedPageFallsBackToJsonForAWhile()
    {
        m_service.setFormMode(Form::Changed);
        TranslationEngine engine(addresses());
        engine.backoff().setClock([this] { return m_now; });
        QCOMPARE(run(engine, request("hello world")).result,
                 (TranslationResult{"bonjour monde", "/bonjour monde/", "phrase:\r\n1. bonjour monde\r\n"}));
        QVERIFY(engine.formSkipped());
        // With the old page back, the form stays skipped for a number of requests or for some minutes.
        m_service.setFormMode(Form::Legacy);
        QCOMPARE(run(engine, request("a&b", "en")).result.translation, QStringLiteral("A&B"));
        QCOMPARE(m_service.requests().last().query().queryItemValue("sl"), QStringLiteral("en"));
        for (int i = 1; i < TranslationEngine::kFormRetryRequests; ++i)
            run(engine, request("cat"));
        QCOMPARE(std::pair(posts(), jsonGets()), std::pair(1, 1 + TranslationEngine::kFormRetryRequests));
        QVERIFY(!engine.formSkipped() && run(engine, request("cat")).ok());
        QCOMPARE(posts(), 2);
        m_service.setFormMode(Form::Changed);
        run(engine, request("cat"));
        m_now = m_now.addSecs(TranslationEngine::kFormRetryMinutes * 60);
        QVERIFY(!engine.formSkipped());
    }

    void refusalsAndBadAnswers()
    {
        for (const auto& [form, json, failure] :
             {std::tuple(Form::Refused, Json::Ok, Failure::Refused),
              std::tuple(Form::HumanCheck, Json::Ok, Failure::HumanCheck),
              std::tuple(Form::Sorry, Json::Ok, Failure::HumanCheck),
              std::tuple(Form::Empty, Json::Ok, Failure::Empty),
              std::tuple(Form::Changed, Json::TooManyRequests, Failure::Refused),
              std::tuple(Form::Changed, Json::Unavailable, Failure::Refused),
              std::tuple(Form::Changed, Json::Html, Failure::BadAnswer)}) {
            init();
            m_service.setFormMode(form);
            m_service.setJsonMode(json);
            TranslationEngine engine(addresses());
            engine.backoff().setClock([this] { return m_now; });
            const TranslationOutcome outcome = run(engine, request("hello"));
            QCOMPARE(outcome.failure, failure);
            QCOMPARE(outcome.result, TranslationResult());
            // Refusals and the person check hold the next request back; only a changed page leads to JSON.
            const bool refused = failure == Failure::Refused || failure == Failure::HumanCheck;
            QCOMPARE(outcome.retryAt, refused ? m_now.addSecs(30) : QDateTime());
            QCOMPARE(jsonGets(), form == Form::Changed ? 1 : 0);
            m_service.reset();
            m_now = m_now.addSecs(30);
            QCOMPARE(run(engine, request("hello")).result.translation, QStringLiteral("bonjour"));
            QCOMPARE(posts(), form == Form::Changed ? 0 : 1); // counted since the reset
        }
    }

    void refusedServiceIsNotAskedBeforeItsTime()
    {
        m_service.setFormMode(Form::Refused);
        m_service.setRetryAfter("3600");
        TranslationEngine engine(addresses());
        engine.backoff().setClock([this] { return m_now; });
        const QDateTime asked = m_now.addSecs(3600);
        QCOMPARE(run(engine, request("hello")).retryAt, asked);
        // A later click sends nothing; without a Retry-After the pause doubles up to ten minutes.
        m_now = asked.addSecs(-1);
        QCOMPARE(run(engine, request("hello")).retryAt, asked);
        m_service.setRetryAfter({});
        for (int pause : {60, 120, 240, 480, 600, 600}) {
            m_now = engine.backoff().notBefore();
            QCOMPARE(m_now.secsTo(run(engine, request("hello")).retryAt), pause);
        }
        QCOMPARE(posts(), 7);
        // An answer starts the pauses again from the shortest.
        m_now = engine.backoff().notBefore();
        m_service.setFormMode(Form::Legacy);
        QVERIFY(run(engine, request("hello")).ok());
        m_service.setFormMode(Form::Refused);
        QCOMPARE(m_now.secsTo(run(engine, request("hello")).retryAt), 30);
    }

    void retryAfterValues()
    {
        const QDateTime now(QDate(1994, 11, 6), QTime(8, 49, 0), QTimeZone::utc());
        const QList<std::pair<QByteArray, std::optional<qint64>>> rows{
            {"120", 120},
            {" 7 ", 7},
            {"Sun, 06 Nov 1994 08:49:37 GMT", 37},
            {"Sun, 06 Nov 1994 08:48:00 GMT", 0},
            {"99999999999999999999999", ServiceBackoff::kLongestWaitSecs},
            {"", std::nullopt},
            {"-5", std::nullopt},
            {"soon", std::nullopt},
            {"Sun, 06 Nov 1994 08:49:37", std::nullopt}};
        for (const auto& [value, seconds] : rows)
            QVERIFY2(parseRetryAfter(value, now) == seconds, value.constData());
    }

    // An unreachable service shows in the CLI's failures.
    void transportFailures()
    {
        TranslationEngine engine(addresses());
        m_service.setDelayMs(1000);
        QTimer::singleShot(100, &engine, [&engine] { engine.cancel(); });
        QCOMPARE(run(engine, request("hello")).failure, Failure::Cancelled);
        engine.http().setTimeoutMs(100);
        QCOMPARE(run(engine, request("hello")).failure, Failure::TimedOut);
        QVERIFY(!engine.busy() && !engine.formSkipped() && jsonGets() == 0);
    }
};

QTEST_GUILESS_MAIN(TestEngine)
#include "test_engine.moc"
