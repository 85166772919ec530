#include "x11/ClipboardDesk.h"
#include "x11/PingProbe.h"

#include <QFile>
#include <QPlainTextEdit>
#include <QtTest>

using namespace quillora;

namespace
{

// Peak resident memory of this process, in MiB.
double peakMiB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').value(0).toDouble() / 1024;
    return -1;
}

// The old result page with sentence spans, romanization and dictionary, just under `size` bytes.
QByteArray formPage(qsizetype size)
{
    const QByteArray span =
        "<span title=\"The weather is nice today.\" onmouseover=\"this.style.backgroundColor="
        "'#ebeff9'\" onmouseout=\"this.style.backgroundColor='#fff'\">Il fait beau aujourd'hui. "
        "</span>";
    const QByteArray tail =
        "</span></div><div id=res-translit class=translit dir=ltr style=\"text-align:\">"
        "il fe bo</div><h3>Dictionary</h3><ol><li>phrase<div><div>beau</div></div></li></ol>"
        "</body></html>";
    QByteArray page = "<html><body><div id=result_box>";
    while (page.size() + span.size() + tail.size() < size)
        page += span;
    return page + tail;
}

} // namespace

// An answer of the cap's size is read, parsed and shown while the window keeps answering its window
// manager, within a bounded memory.
class TestLargeAnswer : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void capSizedAnswerKeepsTheWindowAnswering()
    {
        test::ClipboardDesk desk({});
        const QByteArray page = formPage(HttpClient::kDefaultMaxBytes);
        desk.service().setFormPage(page);
        FormMian& window = desk.window();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QSignalSpy finished(&window, &FormMian::translationFinished);
        test::PingProbe probe;
        QVERIFY(probe.start(window.winId()));
        window.sourceBox()->setPlainText(QStringLiteral("The weather is nice today."));
        window.jcbuttonClick(0);
        QTRY_VERIFY_WITH_TIMEOUT(finished.count() == 1, 60000);
        QTest::qWait(200); // a paint of what was shown, answered too
        const test::PingProbe::Result pings = probe.stop();
        QVERIFY(window.resultBox()->toPlainText().startsWith(QStringLiteral("Il fait beau aujourd'hui. Il")));
        if (pings.maxRoundTripMs < 0)
            QSKIP("the ping probe gave no result");
        qInfo("%d of %d pings answered, longest %.1f ms; peak memory %.0f MiB", pings.answered, pings.sent,
              pings.maxRoundTripMs, peakMiB());
        QVERIFY2(pings.answered > 0 && pings.maxRoundTripMs < 100,
                 qPrintable(QStringLiteral("%1 of %2 answered, longest %3 ms")
                                .arg(pings.answered)
                                .arg(pings.sent)
                                .arg(pings.maxRoundTripMs)));
        QVERIFY2(peakMiB() < 300, qPrintable(QString::number(peakMiB())));
    }
};

QTEST_MAIN(TestLargeAnswer)
#include "test_large_answer.moc"
