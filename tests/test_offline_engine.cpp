#include "TestSupport.h"
#include "standin/StandinService.h"
#include "translate/LanguageCatalogue.h"
#include "translate/LanguageGuesser.h"
#include "translate/OfflineEngine.h"

#include <QtTest>

using namespace quillora;
using quillora::test::StandinService;
using namespace Qt::StringLiterals;

namespace
{

#define NEED_ENGLISH_SPANISH()                                                                               \
    if (!haveEnglishSpanish())                                                                               \
    QSKIP("apertium with apertium-eng-spa is not installed")

const QString kEnglish = "The weather is nice today and I want to go to the beach.";

QList<OfflinePair> listPairs(OfflineEngine& engine)
{
    return test::awaitAnswer<QList<OfflinePair>>([&](auto done) { engine.listPairs(done); })
        .value_or(QList<OfflinePair>{});
}

TranslationOutcome run(OfflineEngine& engine, const OfflinePair& pair, const QString& text)
{
    return test::awaitAnswer<TranslationOutcome>(
               [&](auto done) { QVERIFY(engine.translate(pair, text, done)); })
        .value_or(TranslationOutcome{});
}

} // namespace

class TestOfflineEngine : public QObject
{
    Q_OBJECT
private:
    StandinService m_service;
    QTemporaryDir m_config;
    OfflineEngine m_engine;

    bool haveEnglishSpanish()
    {
        listPairs(m_engine);
        return m_engine.pairFor({kEnglish, "en", "es", "en"}).has_value();
    }

    test::CommandResult cli(const QStringList& arguments)
    {
        return test::runCli(arguments, m_service.baseUrl());
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_service.listen());
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_config.path()));
        QFile::remove(ServiceBackoff::defaultFilePath()); // a wait left by an earlier run
    }

    void pairsFromModeNames()
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

    void unknownWordMarks()
    {
        // Output, source, shown.
        for (const QStringList& row :
             QList<QStringList>{{u"The #a lot of @house"_s, u"muchos casa"_s, u"The a lot of house"_s},
                                {u"#tag and #a lot"_s, u"#tag y muchos"_s, u"#tag and #a lot"_s},
                                {u"5 # 3, a@b.org"_s, u"5 # 3, a@b.org"_s, u"5 # 3, a@b.org"_s}})
            QCOMPARE(withoutUnknownMarks(row[0], row[1]), row[2]);
    }

    void translatesWithTheInstalledPair()
    {
        NEED_ENGLISH_SPANISH();
        const TranslationOutcome outcome =
            run(m_engine, *m_engine.pairFor({kEnglish, "en", "es", "en"}), kEnglish + " Zorblax!");
        QVERIFY2(outcome.ok(), qPrintable(failureReasonText(outcome.failure)));
        QVERIFY2(outcome.result.translation.contains("playa") &&
                     outcome.result.translation.contains("Zorblax") &&
                     !outcome.result.translation.contains('*'),
                 qPrintable(outcome.result.translation));
        QVERIFY(outcome.result.romanization.isEmpty() && outcome.result.dictionary.isEmpty());

        OfflineEngine missing("/nonexistent/apertium");
        QVERIFY(listPairs(missing).isEmpty() && missing.knownPairs());
        QCOMPARE(run(missing, {"eng-spa", "en", "es"}, kEnglish).failure, TranslationFailure::BadAnswer);
    }

    // Over time, then over size.
    void requestCaps()
    {
        NEED_ENGLISH_SPANISH();
        for (const auto& [timeoutMs, maxBytes, failure] :
             {std::tuple(1, 16 << 20, TranslationFailure::TimedOut),
              std::tuple(30000, 100, TranslationFailure::BadAnswer)}) {
            OfflineEngine engine;
            engine.setTimeoutMs(timeoutMs);
            engine.setMaxBytes(maxBytes);
            QCOMPARE(run(engine, {"eng-spa", "en", "es"}, kEnglish.repeated(20)).failure, failure);
        }
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
            QVERIFY2(m_engine.pairFor({row[0], "", row[1], "en"}).value_or(OfflinePair{}).mode == row[2],
                     qPrintable(row[0]));
    }

    void commandLine()
    {
        NEED_ENGLISH_SPANISH();
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
        QCOMPARE(m_service.requests().size(), 1); // the refusal held back the rest; offline sends nothing
        QVERIFY(cli({"--list-offline"}).out.contains("en-es\teng-spa\nes-en\tspa-eng\n"));
    }
};

QTEST_GUILESS_MAIN(TestOfflineEngine)
#include "test_offline_engine.moc"
