#include "TestSupport.h"
#include "app/StringTable.h"
#include "standin/StandinService.h"
#include "translate/LanguageCatalogue.h"
#include "translate/LanguageGuesser.h"
#include "translate/SpeechPage.h"
#include "translate/TranslationSession.h"

#include <QtTest>

using namespace quillora;
using quillora::test::StandinService;
using namespace Qt::StringLiterals;
using Form = StandinService::FormMode;
using Json = StandinService::JsonMode;
using Failure = TranslationFailure;

#define NEED_ENGLISH_SPANISH()                                                                               \
    if (!m_apertium.pairFor({kEnglish, "en", "es", "en"}))                                                   \
    QSKIP("apertium with apertium-eng-spa is not installed")

const QString kEnglish = "The weather is nice today and I want to go to the beach.";

// The service engine, the offline engine (the installed Apertium, and for the session one of the test's
// own), and the session that chooses between them for the window and the tool.
class TestEngine : public QObject
{
    Q_OBJECT
private:
    StandinService m_service;
    QDateTime m_now;
    QTemporaryDir m_dir;
    OfflineEngine m_apertium;
    std::unique_ptr<TranslationEngine> m_engine;
    std::unique_ptr<OfflineEngine> m_offline;
    std::unique_ptr<TranslationSession> m_session;

    // `text` from `source` into French, to its end.
    TranslationOutcome run(const QString& text, const QString& source = {})
    {
        return test::awaitAnswer<TranslationOutcome>([&](auto done) {
                   QVERIFY(m_engine->translate({text, source, "fr", "en"}, done));
               })
            .value_or(TranslationOutcome{});
    }
    static QList<OfflinePair> listPairs(OfflineEngine& engine)
    {
        return test::awaitAnswer<QList<OfflinePair>>([&](auto done) { engine.listPairs(done); })
            .value_or(QList<OfflinePair>{});
    }
    static TranslationOutcome runOffline(OfflineEngine& engine, const OfflinePair& pair, const QString& text)
    {
        return test::awaitAnswer<TranslationOutcome>(
                   [&](auto done) { QVERIFY(engine.translate(pair, text, done)); })
            .value_or(TranslationOutcome{});
    }
    int posts() const { return m_service.count("POST", "/"); }
    int jsonGets() const { return m_service.count("GET", "/translate_a/single"); }
    // The count-th finished(); an empty result when it did not come.
    static SessionResult finish(QSignalSpy& finished, int count = 1)
    {
        if (!QTest::qWaitFor([&] { return finished.count() >= count; }, 30000))
            return {};
        return finished.at(count - 1).at(0).value<SessionResult>();
    }

private Q_SLOTS:
    void initTestCase()
    {
        qRegisterMetaType<SessionResult>();
        QVERIFY(m_service.listen() && m_dir.isValid());
        // An `apertium` of the test's own: one installed pair, eng-spa, which upper-cases.
        QVERIFY(
            test::writeFile(m_dir.filePath("apertium"),
                            "#!/bin/sh\n[ \"$1\" = -l ] && { echo eng-spa; exit 0; }\nexec tr a-z A-Z\n"));
        QVERIFY(QFile::setPermissions(m_dir.filePath("apertium"), QFile::ReadOwner | QFile::ExeOwner));
        listPairs(m_apertium);
    }
    void init()
    {
        m_service.reset();
        m_now = QDateTime(QDate(2026, 11, 23), QTime(21, 0), QTimeZone::utc());
        QFile::remove(ServiceBackoff::defaultFilePath());
        m_session.reset();
        m_engine = std::make_unique<TranslationEngine>(
            ServiceAddresses{m_service.baseUrl(), m_service.baseUrl(), "gtx", {}});
        m_engine->backoff().setClock([this] { return m_now; });
        m_offline = std::make_unique<OfflineEngine>(m_dir.filePath("apertium"));
        m_session = std::make_unique<TranslationSession>(m_engine.get(), m_offline.get(), m_dir.path());
        m_session->setSourceRow(languageIndexForCode("en") + kSourcePickerOffset);
        m_session->setTargetRow(languageIndexForCode("fr"));
    }
    void cleanup() { m_session.reset(); }

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
        ServiceBackoff& backoff = m_engine->backoff();
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

    // The session returns at once and finishes once; it speaks, learns the offline pairs first, cancels.
    void session()
    {
        QSignalSpy finished(m_session.get(), &TranslationSession::finished);
        QSignalSpy busy(m_session.get(), &TranslationSession::busyChanged);
        QVERIFY(m_session->translate("hello & a", EngineChoice::Service));
        QVERIFY(finished.isEmpty() && m_session->Translating() && busy.count() == 1);
        QVERIFY(!m_session->translate("cat", EngineChoice::Service)); // refused while busy
        SessionResult result = finish(finished);
        QCOMPARE(result.outcome.result.translation + '|' + result.source + '|' + result.sourceCode + '|' +
                     result.targetCode,
                 "bonjour & A|hello & a|en|fr");
        QCOMPARE(busy.count(), 2);
        QVERIFY(!busy.at(1).at(0).toBool() && !m_session->Translating());
        // The speech pages: the sent text with "&" escaped, the translation as it came.
        QVERIFY(result.SourceSpeechOk && result.TranslationSpeechOk);
        QVERIFY(test::readFile(speechPagePath(m_dir.path(), 1)).contains("%3Dhello %26 a%26tl%3Den") &&
                test::readFile(speechPagePath(m_dir.path(), 0)).contains("%3Dbonjour & A%26tl%3Dfr"));
        // A blank text still finishes once, later; a second run gives exactly one more.
        QVERIFY(m_session->translate("   ", EngineChoice::Service));
        QCOMPARE(finished.count(), 1);
        QCOMPARE(finish(finished, 2).outcome.failure, Failure::NothingToTranslate);
        // Up to 100 characters are spoken; a longer text leaves no page. What Back restores from the ring
        // shows through the window.
        for (const QString& text : {QString(100, 'x'), QString(101, 'x')}) {
            QVERIFY(m_session->translate(text, EngineChoice::Service));
            QCOMPARE(finish(finished, finished.count() + 1).SourceSpeechOk, text.size() == kSpeechTextLimit);
            QCOMPARE(QFile::exists(speechPagePath(m_dir.path(), 1)), text.size() == kSpeechTextLimit);
        }
        // Offline, the pairs are learnt first: a text no pair covers runs nothing and leaves the speakers.
        const qsizetype sent = m_service.requests().size();
        m_session->setTargetRow(languageIndexForCode("th"));
        QVERIFY(m_session->translate("hello", EngineChoice::Offline));
        result = finish(finished, 5);
        QVERIFY(result.uncovered && !result.outcome.ok() && !result.SourceSpeechOk);
        m_session->setTargetRow(languageIndexForCode("es"));
        QVERIFY(m_session->translate("hello", EngineChoice::Offline));
        result = finish(finished, 6);
        QCOMPARE(result.outcome.result.translation.trimmed() + ' ' + result.offlinePair.value().mode,
                 "HELLO eng-spa");
        QVERIFY(!result.uncovered && m_service.requests().size() == sent);
        // A cancel ends the running translation; idle, it does nothing.
        m_session->cancel();
        m_service.setDelayMs(5000);
        QVERIFY(m_session->translate("hello", EngineChoice::Auto));
        m_session->cancel();
        QCOMPARE(finish(finished, 7).outcome.failure, Failure::Cancelled);
        QVERIFY(!m_session->Translating() && finished.count() == 7);
    }

    // The pairs the installed modes' names make, and the marks Apertium puts on words it does not know.
    void apertiumTexts()
    {
        const QList<std::pair<QStringList, QString>> rows{
            {{"eng-spa", "spa-eng_US", "spa-eng"}, "en-es eng-spa, es-en spa-eng"}, // plain beats variant
            {{"spa-eng_US"}, "es-en spa-eng_US"},
            {{"fr-es", "es-pt"}, "es-pt es-pt, fr-es fr-es"},
            {{"hbs-eng", "eng-hbs_HR", "eng-hbs_SR"},
             "en-hr eng-hbs_HR, en-sr eng-hbs_SR, hr-en hbs-eng, sr-en hbs-eng"},
            {{"nno-nob", "dan-nno", "dan-nob"}, "da-no dan-nob"},
            {{"eng-spa-tagger", "arg-cat", "eng-eng_US", ""}, ""}};
        for (const auto& [modes, pairs] : rows) {
            QStringList listed;
            for (const OfflinePair& pair : offlinePairsFromModes(modes))
                listed << pair.source + '-' + pair.target + ' ' + pair.mode;
            QCOMPARE(listed.join(", "), pairs);
        }
        // Output, source, shown.
        for (const QStringList& row :
             QList<QStringList>{{u"The #a lot of @house"_s, u"muchos casa"_s, u"The a lot of house"_s},
                                {u"#tag and #a lot"_s, u"#tag y muchos"_s, u"#tag and #a lot"_s},
                                {u"5 # 3, a@b.org"_s, u"5 # 3, a@b.org"_s, u"5 # 3, a@b.org"_s}})
            QCOMPARE(withoutUnknownMarks(row[0], row[1]), row[2]);
    }

    void everyCatalogueLanguageHasAFingerprint()
    {
        if (!QDir(LanguageGuesser::defaultFingerprintFolder()).exists())
            QSKIP("libexttextcat's fingerprints are not installed");
        for (int i = 0; i < kLanguageCount; ++i)
            QVERIFY2(QFile::exists(LanguageGuesser::defaultFingerprintFolder() + '/' +
                                   fingerprintName(LanguageCode(i)) + ".lm"),
                     qPrintable(LanguageCode(i)));
    }

    void translatesWithTheInstalledPair()
    {
        NEED_ENGLISH_SPANISH();
        const TranslationOutcome outcome =
            runOffline(m_apertium, *m_apertium.pairFor({kEnglish, "en", "es", "en"}), kEnglish + " Zorblax!");
        QVERIFY2(outcome.ok(), qPrintable(failureReasonText(outcome.failure)));
        QVERIFY2(outcome.result.translation.contains("playa") &&
                     outcome.result.translation.contains("Zorblax") &&
                     !outcome.result.translation.contains('*'),
                 qPrintable(outcome.result.translation));
        QVERIFY(outcome.result.romanization.isEmpty() && outcome.result.dictionary.isEmpty());

        OfflineEngine missing("/nonexistent/apertium");
        QVERIFY(listPairs(missing).isEmpty() && missing.knownPairs());
        QCOMPARE(runOffline(missing, {"eng-spa", "en", "es"}, kEnglish).failure,
                 TranslationFailure::BadAnswer);
        // An answer over the cap; over time shows in the command line's engine that never answers.
        OfflineEngine engine;
        engine.setMaxBytes(100);
        QCOMPARE(runOffline(engine, {"eng-spa", "en", "es"}, kEnglish.repeated(20)).failure,
                 TranslationFailure::BadAnswer);
    }

    void detectionAmongTheInstalledSources()
    {
        NEED_ENGLISH_SPANISH();
        // Text, target, the pair's mode or none.
        for (const QStringList& row :
             QList<QStringList>{{kEnglish, u"es"_s, u"eng-spa"_s},
                                {u"El tiempo es bueno hoy y quiero ir a la playa."_s, u"en"_s, u"spa-eng"_s},
                                {u"ok"_s, u"es"_s, QString()},
                                {u"วันนี้อากาศดีและฉันอยากไปทะเลมาก"_s, u"es"_s, QString()},
                                {kEnglish, u"th"_s, QString()}})
            QVERIFY2(m_apertium.pairFor({row[0], "", row[1], "en"}).value_or(OfflinePair{}).mode == row[2],
                     qPrintable(row[0]));
    }

    void commandLine()
    {
        NEED_ENGLISH_SPANISH();
        const auto cli = [this](const QStringList& arguments) {
            return test::runCli(arguments, m_service.baseUrl());
        };
        // The service refuses: auto turns to the pair and says so.
        m_service.setFormMode(StandinService::FormMode::Refused);
        const test::CommandResult fallback = cli({"-s", "en", "-t", "es", kEnglish});
        QCOMPARE(fallback.exitCode, 0);
        QVERIFY(fallback.out.contains("playa"));
        QCOMPARE(fallback.err, "quillora-cli: translated offline by Apertium eng-spa\n");
        const test::CommandResult json = cli({"--json", "-t", "es", kEnglish});
        QCOMPARE(QJsonDocument::fromJson(json.out).object().value("engine").toString(), "Apertium eng-spa");
        // An engine that never answers, first on the path: however fast the machine, the limit is met.
        QTemporaryDir stalled;
        QVERIFY(test::writeFile(stalled.filePath("apertium"),
                                "#!/bin/sh\n[ \"$1\" = -l ] && exec echo eng-spa\nexec sleep 60\n") &&
                QFile::setPermissions(stalled.filePath("apertium"), QFile::ReadOwner | QFile::ExeOwner));
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", stalled.path().toUtf8() + ':' + path);
        const test::CommandResult slow =
            cli({"--engine", "offline", "--timeout", "1", "-s", "en", "-t", "es", kEnglish});
        qputenv("PATH", path);
        QCOMPARE(slow.err, "quillora-cli: The offline engine (Apertium) did not answer in time.\n");

        const test::CommandResult uncovered = cli({"--engine", "offline", "-s", "en", "-t", "th", kEnglish});
        QCOMPARE(uncovered.exitCode, 1);
        QVERIFY(uncovered.err.contains("No installed Apertium pair"));
        QVERIFY(cli({"--list-offline"}).out.contains("en-es\teng-spa\nes-en\tspa-eng\n"));
    }
};

QTEST_GUILESS_MAIN(TestEngine)
#include "test_engine.moc"
