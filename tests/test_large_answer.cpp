#include "TestSupport.h"
#include "x11/ClipboardDesk.h"
#include "x11/PingProbe.h"

#include <QPlainTextEdit>
#include <QtTest>

using namespace quillora;

// An answer of the cap's size is read, parsed and shown while the window keeps answering its window
// manager, within a bounded memory.
class TestLargeAnswer : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void capSizedAnswerKeepsTheWindowAnswering()
    {
        test::ClipboardDesk desk({});
        // Sentence spans up to the cap.
        const QByteArray span =
            "<span onmouseout=\"this.style.backgroundColor='#fff'\">Il fait beau aujourd'hui. </span>";
        desk.service().setFormPage("<div>" + span.repeated(HttpClient::kDefaultMaxBytes / span.size() - 1) +
                                   "</div>");
        FormMian& window = desk.window();
        QVERIFY(test::shownOnScreen(window));
        QSignalSpy finished(&window, &FormMian::translationFinished);
        test::PingProbe probe;
        QVERIFY(probe.start(window.winId()));
        test::box(window, "sourceBox")->setPlainText(QStringLiteral("The weather is nice today."));
        window.jcbuttonClick(0);
        QTRY_VERIFY_WITH_TIMEOUT(finished.count() == 1, 60000);
        QTest::qWait(200); // a paint of what was shown, answered too
        const test::PingProbe::Result pings = probe.stop();
        QVERIFY(test::box(window, "resultBox")
                    ->toPlainText()
                    .startsWith(QStringLiteral("Il fait beau aujourd'hui. Il")));
        if (pings.maxRoundTripMs < 0)
            QSKIP("the ping probe gave no result");
        const double peakMiB = test::peakResidentKiB() / 1024.0;
        qInfo("%d of %d pings answered, longest %.1f ms; peak memory %.0f MiB", pings.answered, pings.sent,
              pings.maxRoundTripMs, peakMiB);
        QVERIFY(pings.answered > 0 && pings.maxRoundTripMs < test::kAnswerLimitMs);
        QVERIFY(peakMiB > 0 && peakMiB < 300);
    }
};

QTEST_MAIN(TestLargeAnswer)
#include "test_large_answer.moc"
