#include "TestSupport.h"
#include "standin/StandinService.h"
#include "translate/LanguageCatalogue.h"
#include "translate/SpeechPage.h"
#include "translate/TranslationSession.h"

#include <QtTest>

using namespace quillora;
using quillora::test::StandinService;

namespace
{

// An `apertium` of the test's own: one installed pair, eng-spa, which upper-cases.
const QByteArray kApertium = "#!/bin/sh\n[ \"$1\" = -l ] && { echo eng-spa; exit 0; }\nexec tr a-z A-Z\n";

} // namespace

class TestTranslationSession : public QObject
{
    Q_OBJECT
private:
    StandinService m_service;
    QTemporaryDir m_dir;
    std::unique_ptr<TranslationEngine> m_engine;
    std::unique_ptr<OfflineEngine> m_offline;
    std::unique_ptr<TranslationSession> m_session;

    QString page(int slot) const
    {
        return QString::fromUtf8(test::readFile(speechPagePath(m_dir.path(), slot)));
    }
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
        QVERIFY(test::writeFile(m_dir.filePath("apertium"), kApertium));
        QVERIFY(QFile::setPermissions(m_dir.filePath("apertium"), QFile::ReadOwner | QFile::ExeOwner));
    }
    void init()
    {
        m_service.reset();
        QFile::remove(ServiceBackoff::defaultFilePath());
        m_engine = std::make_unique<TranslationEngine>(
            ServiceAddresses{m_service.baseUrl(), m_service.baseUrl(), "gtx", {}});
        m_offline = std::make_unique<OfflineEngine>(m_dir.filePath("apertium"));
        m_session = std::make_unique<TranslationSession>(m_engine.get(), m_offline.get(), m_dir.path());
        m_session->setSourceRow(languageIndexForCode("en") + kSourcePickerOffset);
        m_session->setTargetRow(languageIndexForCode("fr"));
    }
    void cleanup() { m_session.reset(); }

    void returnsAtOnceFinishesOnceAndCancels()
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
        QVERIFY(page(1).contains("%3Dhello %26 a%26tl%3Den") && page(0).contains("%3Dbonjour & A%26tl%3Dfr"));
        // A blank text still finishes once, later; a second run gives exactly one more.
        QVERIFY(m_session->translate("   ", EngineChoice::Service));
        QCOMPARE(finished.count(), 1);
        QCOMPARE(finish(finished, 2).outcome.failure, TranslationFailure::NothingToTranslate);
        QCOMPARE(m_service.requests().size(), 1);
        // A cancel ends the running translation; idle, it does nothing.
        m_session->cancel();
        m_service.setDelayMs(5000);
        QVERIFY(m_session->translate("hello", EngineChoice::Auto));
        m_session->cancel();
        QCOMPARE(finish(finished, 3).outcome.failure, TranslationFailure::Cancelled);
        QVERIFY(!m_session->Translating() && finished.count() == 3);
    }

    // Up to 100 characters are spoken; a longer text leaves no page. What Back restores from the ring
    // shows through the window.
    void speechLimit()
    {
        QSignalSpy finished(m_session.get(), &TranslationSession::finished);
        for (const QString& text : {QString(100, 'x'), QString(101, 'x')}) {
            QVERIFY(m_session->translate(text, EngineChoice::Service));
            const SessionResult result = finish(finished, finished.count() + 1);
            QCOMPARE(result.SourceSpeechOk, text.size() == kSpeechTextLimit);
            QCOMPARE(QFile::exists(speechPagePath(m_dir.path(), 1)), result.SourceSpeechOk);
        }
    }

    void offlineLearnsThePairsFirst()
    {
        QSignalSpy finished(m_session.get(), &TranslationSession::finished);
        m_session->setTargetRow(languageIndexForCode("th"));
        QVERIFY(m_session->translate("hello", EngineChoice::Offline));
        const SessionResult uncovered = finish(finished);
        QVERIFY(uncovered.uncovered && !uncovered.outcome.ok() && !uncovered.SourceSpeechOk);
        m_session->setTargetRow(languageIndexForCode("es"));
        QVERIFY(m_session->translate("hello", EngineChoice::Offline));
        const SessionResult covered = finish(finished, 2);
        QCOMPARE(covered.outcome.result.translation.trimmed() + ' ' + covered.offlinePair.value().mode,
                 "HELLO eng-spa");
        QVERIFY(!covered.uncovered && m_service.requests().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestTranslationSession)
#include "test_translation_session.moc"
