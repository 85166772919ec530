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

class TestEngine : public QObject
{
    Q_OBJECT
private:
    StandinService m_service;
    QDateTime m_now;
    std::unique_ptr<TranslationEngine> m_engine;

    // `text` from `source` into French, to its end.
    TranslationOutcome run(const QString& text, const QString& source = {})
    {
        return test::awaitAnswer<TranslationOutcome>([&](auto done) {
                   QVERIFY(m_engine->translate({text, source, "fr", "en"}, done));
               })
            .value_or(TranslationOutcome{});
    }
    int posts() const { return m_service.count("POST", "/"); }
    int jsonGets() const { return m_service.count("GET", "/translate_a/single"); }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_service.listen()); }
    void init()
    {
        m_service.reset();
        m_now = QDateTime(QDate(2026, 11, 23), QTime(21, 0), QTimeZone::utc());
        QFile::remove(ServiceBackoff::defaultFilePath());
        m_engine = std::make_unique<TranslationEngine>(
            ServiceAddresses{m_service.baseUrl(), m_service.baseUrl(), "gtx", {}});
        m_engine->backoff().setClock([this] { return m_now; });
    }

    void oldPageAndTheFormAsSent()
    {
        for (const char* blank : {"", "    "})
            QCOMPARE(run(blank).failure, Failure::NothingToTranslate);
        QVERIFY(m_service.requests().isEmpty());
        // Only spaces count as blank: a tab or a line break is sent.
        for (const char* other : {"\t", " \r\n "})
            run(other);
        QCOMPARE(posts(), 2);
        m_service.clearRequests();
        const TranslationOutcome hello = run("hello");
        QCOMPARE(hello.result, (TranslationResult{"bonjour", "/bonjour/",
                                                  "interjection:\r\n1. bonjour\r\n2. salut\r\n3. allô\r\n"}));
        QVERIFY(hello.response.contains(SpanMark));
        QVERIFY(run("hello <world>\r\na&b a+b", "en").ok());
        const auto& sent = m_service.requests().constLast();
        QCOMPARE(sent.body, "prev=hp&hl=en&ie=UTF-8&js=y&text=hello <world>\r\na%26b a+b&file=&sl=en&tl=fr");
        QCOMPARE(sent.target + ' ' + sent.header("Content-Type"), "/ application/x-www-form-urlencoded");
        QVERIFY(!m_engine->formSkipped() && jsonGets() == 0);
    }

    void changedPageFallsBackToJsonForAWhile()
    {
        m_service.setFormMode(Form::Changed);
        QCOMPARE(run("hello world").result,
                 (TranslationResult{"bonjour monde", "/bonjour monde/", "phrase:\r\n1. bonjour monde\r\n"}));
        QVERIFY(m_engine->formSkipped());
        // With the old page back, the form stays skipped for a number of requests or for some minutes.
        m_service.setFormMode(Form::Legacy);
        QCOMPARE(run("a&b", "en").result.translation, QStringLiteral("A&B"));
        QCOMPARE(m_service.requests().last().query().queryItemValue("sl"), QStringLiteral("en"));
        for (int i = 1; i < TranslationEngine::kFormRetryRequests; ++i)
            run("cat");
        QCOMPARE(std::pair(posts(), jsonGets()), std::pair(1, 1 + TranslationEngine::kFormRetryRequests));
        QVERIFY(!m_engine->formSkipped() && run("cat").ok());
        QCOMPARE(posts(), 2);
        m_service.setFormMode(Form::Changed);
        run("cat");
        m_now = m_now.addSecs(TranslationEngine::kFormRetryMinutes * 60);
        QVERIFY(!m_engine->formSkipped());
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
            const TranslationOutcome outcome = run("hello");
            QCOMPARE(outcome.failure, failure);
            QCOMPARE(outcome.result, TranslationResult());
            // Refusals and the person check hold the next request back; only a changed page leads to JSON.
            const bool refused = failure == Failure::Refused || failure == Failure::HumanCheck;
            QCOMPARE(outcome.retryAt, refused ? m_now.addSecs(30) : QDateTime());
            QCOMPARE(jsonGets(), form == Form::Changed ? 1 : 0);
            m_service.reset();
            m_now = m_now.addSecs(30);
            QCOMPARE(run("hello").result.translation, QStringLiteral("bonjour"));
            QCOMPARE(posts(), form == Form::Changed ? 0 : 1);        // counted since the reset
            QVERIFY(!QFile::exists(m_engine->backoff().filePath())); // the answer ended the pauses
        }
    }

    // Whole seconds or an HTTP date. A refusal waits for it, or without one for a pause that doubles up
    // to ten minutes; an answer starts the pauses again from the shortest. Whether a later request waits
    // shows in the CLI's test.
    void backoff()
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
        QTemporaryDir dir;
        ServiceBackoff backoff(dir.filePath("wait"), [this] { return m_now; });
        backoff.refused("3600");
        QCOMPARE(backoff.notBefore(), m_now.addSecs(3600));
        for (int pause : {60, 120, 240, 480, 600, 600}) {
            m_now = backoff.notBefore();
            backoff.refused({});
            QCOMPARE(m_now.secsTo(backoff.notBefore()), pause);
        }
        backoff.answered();
        backoff.refused({});
        QCOMPARE(m_now.secsTo(backoff.notBefore()), 30);
    }

    // An unreachable service shows in the CLI's failures.
    void transportFailures()
    {
        m_service.setDelayMs(1000);
        QTimer::singleShot(100, m_engine.get(), [this] { m_engine->cancel(); });
        QCOMPARE(run("hello").failure, Failure::Cancelled);
        m_engine->http().setTimeoutMs(100);
        QCOMPARE(run("hello").failure, Failure::TimedOut);
        QVERIFY(!m_engine->busy() && !m_engine->formSkipped() && jsonGets() == 0);
    }
};

QTEST_GUILESS_MAIN(TestEngine)
#include "test_engine.moc"
