#include "app/StringTable.h"
#include "standin/StandinService.h"
#include "translate/TranslationEngine.h"

#include <QTcpServer>
#include <QTimer>
#include <QtTest>

using namespace quillora;
using quillora::test::StandinService;

Q_DECLARE_METATYPE(StandinService::JsonMode)
Q_DECLARE_METATYPE(quillora::TranslationFailure)

class TestEngine : public QObject
{
    Q_OBJECT
private:
    StandinService m_service;

    ServiceAddresses addresses() const
    {
        ServiceAddresses a;
        a.service = m_service.baseUrl();
        a.api = m_service.baseUrl();
        a.apiClient = QStringLiteral("gtx");
        return a;
    }

    static TranslationRequest request(const QString& text, const QString& source = {},
                                      const QString& target = QStringLiteral("fr"))
    {
        return {text, source, target, QStringLiteral("en")};
    }

    QList<StandinService::Request> posts() const
    {
        QList<StandinService::Request> out;
        for (const auto& r : m_service.requests()) {
            if (r.method == "POST")
                out.append(r);
        }
        return out;
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_service.listen()); }
    void init() { m_service.reset(); }

    void formBodyIsSentByteForByte()
    {
        TranslationEngine engine(addresses());
        QVERIFY(engine.translate(request(QStringLiteral("a&b"))).ok());
        QVERIFY(engine.translate(request(QStringLiteral("a+b"))).ok());
        const QString odd = QStringLiteral(" 50% = ½\r\nnext line ");
        QVERIFY(engine.translate(request(odd, QStringLiteral("en"), QStringLiteral("de"))).ok());

        const auto sent = posts();
        QCOMPARE(sent.size(), 3);
        QCOMPARE(sent[0].body, QByteArrayLiteral("prev=hp&hl=en&ie=UTF-8&js=y&text=a%26b&file=&sl=&tl=fr"));
        QCOMPARE(sent[1].body, QByteArrayLiteral("prev=hp&hl=en&ie=UTF-8&js=y&text=a+b&file=&sl=&tl=fr"));
        QCOMPARE(sent[2].body,
                 QByteArrayLiteral(
                     "prev=hp&hl=en&ie=UTF-8&js=y&text= 50% = \xc2\xbd\r\nnext line &file=&sl=en&tl=de"));
        for (const auto& r : sent) {
            QCOMPARE(r.target, QByteArrayLiteral("/"));
            QCOMPARE(r.header("Content-Type"), QByteArrayLiteral("application/x-www-form-urlencoded"));
        }
        QCOMPARE(m_service.count("GET", QStringLiteral("/translate_a/single")), 0);
    }

    void blankTextSendsNothing()
    {
        TranslationEngine engine(addresses());
        for (const QString& text : {QString(), QStringLiteral("    "), QStringLiteral(" \r\n\t ")}) {
            const TranslationOutcome outcome = engine.translate(request(text));
            QCOMPARE(outcome.failure, TranslationFailure::NothingToTranslate);
            QCOMPARE(outcome.result, TranslationResult());
        }
        QVERIFY(m_service.requests().isEmpty());
    }

    void legacyPageGivesAllThreeParts()
    {
        TranslationEngine engine(addresses());
        const TranslationOutcome outcome = engine.translate(request(QStringLiteral("hello")));
        QVERIFY(outcome.ok());
        QCOMPARE(outcome.result.translation, QStringLiteral("bonjour"));
        QCOMPARE(outcome.result.romanization, QStringLiteral("/bonjour/"));
        QCOMPARE(outcome.result.dictionary,
                 QStringLiteral("interjection:\r\n1. bonjour\r\n2. salut\r\n3. allô\r\n"));
        QVERIFY(outcome.response.contains(SpanMark));
        QVERIFY(!engine.formAbandoned());

        const TranslationOutcome lines =
            engine.translate(request(QStringLiteral("hello <world>\r\ncat & dog")));
        QVERIFY(lines.ok());
        QCOMPARE(lines.result.translation, QStringLiteral("bonjour <monde>\r\nchat & chien"));
    }

    void changedFormFallsBackToJsonForGood()
    {
        m_service.setFormMode(StandinService::FormMode::Changed);
        TranslationEngine engine(addresses());
        const TranslationOutcome first = engine.translate(request(QStringLiteral("hello world")));
        QVERIFY(first.ok());
        QVERIFY(engine.formAbandoned());
        QCOMPARE(first.result.translation, QStringLiteral("bonjour monde"));
        QCOMPARE(first.result.romanization, QStringLiteral("/bonjour monde/"));
        QVERIFY(first.result.dictionary.contains(QStringLiteral("bonjour monde")));
        QCOMPARE(m_service.count("POST", QStringLiteral("/")), 1);
        QCOMPARE(m_service.count("GET", QStringLiteral("/translate_a/single")), 1);

        const QUrlQuery query = m_service.requests().last().query();
        QCOMPARE(query.queryItemValue(QStringLiteral("q"), QUrl::FullyDecoded),
                 QStringLiteral("hello world"));
        QCOMPARE(query.queryItemValue(QStringLiteral("sl")), QStringLiteral("auto"));
        QCOMPARE(query.queryItemValue(QStringLiteral("tl")), QStringLiteral("fr"));
        QCOMPARE(query.queryItemValue(QStringLiteral("hl")), QStringLiteral("en"));
        QCOMPARE(query.queryItemValue(QStringLiteral("client")), QStringLiteral("gtx"));

        // Even with the old page back, the form stays skipped for this engine.
        m_service.setFormMode(StandinService::FormMode::Legacy);
        const TranslationOutcome second =
            engine.translate(request(QStringLiteral("a&b"), QStringLiteral("en")));
        QVERIFY(second.ok());
        QCOMPARE(second.result.translation, QStringLiteral("A&B"));
        QCOMPARE(m_service.count("POST", QStringLiteral("/")), 1);
        QCOMPARE(m_service.count("GET", QStringLiteral("/translate_a/single")), 2);
        QCOMPARE(m_service.requests().last().query().queryItemValue(QStringLiteral("sl")),
                 QStringLiteral("en"));

        // A new engine (a new run) tries the form again.
        TranslationEngine fresh(addresses());
        QVERIFY(fresh.translate(request(QStringLiteral("cat"))).ok());
        QVERIFY(!fresh.formAbandoned());
        QCOMPARE(m_service.count("POST", QStringLiteral("/")), 2);
    }

    void jsonRefusalsAndBadAnswers_data()
    {
        QTest::addColumn<StandinService::JsonMode>("mode");
        QTest::addColumn<TranslationFailure>("failure");
        QTest::newRow("429") << StandinService::JsonMode::TooManyRequests << TranslationFailure::Refused;
        QTest::newRow("503") << StandinService::JsonMode::Unavailable << TranslationFailure::Refused;
        QTest::newRow("html") << StandinService::JsonMode::Html << TranslationFailure::BadAnswer;
    }

    void jsonRefusalsAndBadAnswers()
    {
        QFETCH(StandinService::JsonMode, mode);
        QFETCH(TranslationFailure, failure);
        m_service.setFormMode(StandinService::FormMode::Changed);
        m_service.setJsonMode(mode);
        TranslationEngine engine(addresses());
        const TranslationOutcome outcome = engine.translate(request(QStringLiteral("hello")));
        QCOMPARE(outcome.failure, failure);
        QCOMPARE(outcome.result, TranslationResult());
        QVERIFY(!failureReasonText(outcome.failure).isEmpty());
        QCOMPARE(m_service.count("GET", QStringLiteral("/translate_a/single")), 1);

        // Once the service answers again, the same engine translates through JSON.
        m_service.setJsonMode(StandinService::JsonMode::Ok);
        QCOMPARE(engine.translate(request(QStringLiteral("hello"))).result.translation,
                 QStringLiteral("bonjour"));
        QCOMPARE(m_service.count("POST", QStringLiteral("/")), 1);
    }

    void emptyAndRefusedFormAnswers()
    {
        TranslationEngine engine(addresses());
        m_service.setFormMode(StandinService::FormMode::Empty);
        QCOMPARE(engine.translate(request(QStringLiteral("hello"))).failure, TranslationFailure::Empty);
        m_service.setFormMode(StandinService::FormMode::Refused);
        QCOMPARE(engine.translate(request(QStringLiteral("hello"))).failure, TranslationFailure::Refused);
        // Neither is a changed page: the form is kept and JSON never asked.
        QVERIFY(!engine.formAbandoned());
        QCOMPARE(m_service.count("GET", QStringLiteral("/translate_a/single")), 0);
    }

    void transportFailuresAreReportedWithoutFallback()
    {
        TranslationEngine engine(addresses());
        engine.http().setTimeoutMs(200);
        m_service.setDelayMs(1500);
        QCOMPARE(engine.translate(request(QStringLiteral("hello"))).failure, TranslationFailure::TimedOut);

        engine.http().setTimeoutMs(HttpClient::kDefaultTimeoutMs);
        QTimer::singleShot(100, &engine, [&engine] {
            QVERIFY(engine.busy());
            engine.cancel();
        });
        QCOMPARE(engine.translate(request(QStringLiteral("hello"))).failure, TranslationFailure::Cancelled);
        QVERIFY(!engine.busy());
        QVERIFY(!engine.formAbandoned());
        QCOMPARE(m_service.count("GET", QStringLiteral("/translate_a/single")), 0);

        QTcpServer probe;
        QVERIFY(probe.listen(QHostAddress::LocalHost, 0));
        ServiceAddresses down = addresses();
        down.service = down.api = QStringLiteral("http://127.0.0.1:%1").arg(probe.serverPort());
        probe.close();
        TranslationEngine offline(down);
        QCOMPARE(offline.translate(request(QStringLiteral("hello"))).failure, TranslationFailure::Network);
    }

    void failureTextsAndStatusOffsets()
    {
        QCOMPARE(failureReasonText(TranslationFailure::Refused),
                 QStringLiteral("The translation service is refusing requests for now (too many requests)."));
        QCOMPARE(failureReasonText(TranslationFailure::TimedOut),
                 QStringLiteral("The translation service did not answer in time."));
        QCOMPARE(failureReasonText(TranslationFailure::Network),
                 QStringLiteral("Could not reach the translation service."));
        QCOMPARE(failureReasonText(TranslationFailure::BadAnswer),
                 QStringLiteral("The translation service sent an answer that could not be read."));
        QCOMPARE(failureReasonText(TranslationFailure::Cancelled), QStringLiteral("Translation cancelled."));
        QCOMPARE(failureReasonText(TranslationFailure::Empty),
                 QStringLiteral("The translation service returned no translation."));
        QCOMPARE(failureReasonText(TranslationFailure::NothingToTranslate),
                 QStringLiteral("Nothing to translate."));
        QCOMPARE(failureReasonText(TranslationFailure::None), QString());

        QCOMPARE(failureStatusOffset(TranslationFailure::None), 0);
        QCOMPARE(failureStatusOffset(TranslationFailure::Refused), int(MsgServiceRefused));
        QCOMPARE(failureStatusOffset(TranslationFailure::TimedOut), int(MsgTimedOut));
        QCOMPARE(failureStatusOffset(TranslationFailure::Network), int(MsgNetworkFailed));
        QCOMPARE(failureStatusOffset(TranslationFailure::BadAnswer), int(MsgBadAnswer));
        QCOMPARE(failureStatusOffset(TranslationFailure::Cancelled), int(MsgCancelled));
        QCOMPARE(failureStatusOffset(TranslationFailure::Empty), int(MsgNoTranslation));
    }
};

QTEST_GUILESS_MAIN(TestEngine)
#include "test_engine.moc"
