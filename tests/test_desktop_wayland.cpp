#include "TestSupport.h"
#include "app/StringTable.h"
#include "desktop/PipeTransfer.h"
#include "desktop/WaylandClipboard.h"
#include "wayland/WlCopy.h"
#include "x11/ClipboardDesk.h"

#include <QApplication>
#include <QClipboard>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTimer>
#include <fcntl.h>
#include <unistd.h>

using namespace quillora;
using test::ClipboardDesk;
using test::WlCopy;

namespace
{

QString french(const QString& text)
{
    return test::StandinService::translate(text, "fr");
}

} // namespace

// The real main window on Qt's Wayland platform inside a private headless sway (tests/waylandsession.sh),
// with wl-copy and wl-paste as the other programs. No input device ever gives the window the focus:
// everything here happens from the background.
class DesktopWaylandTest : public QObject
{
    Q_OBJECT
    WlCopy m_wlCopy;

private Q_SLOTS:
    void initTestCase()
    {
        if (QGuiApplication::platformName() != "wayland")
            QSKIP("needs a Wayland compositor (tests/waylandsession.sh)");
        QVERIFY(WaylandClipboard::sessionOffersDataControl());
    }

    void init()
    {
        // Nothing from the last case may be taken at load, not even what Qt's own clipboard still
        // holds from an auto-copy the compositor refused it.
        QGuiApplication::clipboard()->clear();
        QVERIFY(test::runCommand("wl-copy", {"--clear"}).ok());
        QTRY_VERIFY(WlCopy::read().isEmpty());
    }

    void cleanup() { m_wlCopy.endAll(); }

    void copyIsTranslatedOnce()
    {
        ClipboardDesk desk({});
        m_wlCopy.copy("hello world");
        QTRY_COMPARE(desk.window().resultBox()->toPlainText(), french("hello world"));
        QCOMPARE(desk.window().sourceBox()->toPlainText(), "hello world");
        QTest::qWait(800);
        QCOMPARE(desk.translationRequests(), 1);
    }

    void autoCopyReachesTheClipboardAndDoesNotFeedBack()
    {
        ClipboardDesk desk({/*autoCopy*/ true});
        m_wlCopy.copy("hello");
        QTRY_COMPARE(WlCopy::read(), french("hello"));
        QTest::qWait(1500);
        QCOMPARE(desk.translationRequests(), 1);
        // Another program copying the very same text is a new copy.
        m_wlCopy.copy(french("hello").toUtf8());
        QTRY_COMPARE(WlCopy::read(), french(french("hello")));
        QCOMPARE(desk.translationRequests(), 2);
        QCOMPARE(desk.lastRequestText(), french("hello"));
    }

    void pictureSendsNothing()
    {
        ClipboardDesk desk({});
        m_wlCopy.copy("\x89PNG\r\n\x1a\n", "image/png");
        QTRY_COMPARE(WlCopy::read(true).trimmed(), "image/png");
        QTest::qWait(800);
        QCOMPARE(desk.translationRequests(), 0);
        m_wlCopy.copy("hello");
        QTRY_COMPARE(desk.translationRequests(), 1);
    }

    void copiesDuringASlowTranslation()
    {
        ClipboardDesk desk({false, false, /*serviceDelayMs*/ 1500});
        QTimer series;
        int started = 0;
        int startedBeforeSecondRequest = -1;
        connect(&series, &QTimer::timeout, this, [&] {
            m_wlCopy.copy(QString("copy %1").arg(started++).toUtf8());
            if (started == 10)
                series.stop();
        });
        connect(&desk.service(), &test::StandinService::requestReceived, this, [&] {
            if (desk.translationRequests() == 1)
                series.start(60);
            else if (startedBeforeSecondRequest < 0)
                startedBeforeSecondRequest = started;
        });
        m_wlCopy.copy("first");
        QTRY_COMPARE_WITH_TIMEOUT(desk.translationRequests(), 2, 15000);
        QCOMPARE(startedBeforeSecondRequest, 10);
        QCOMPARE(desk.lastRequestText(), "copy 9");
        QTRY_COMPARE_WITH_TIMEOUT(desk.window().resultBox()->toPlainText(), french("copy 9"), 10000);
        QTest::qWait(2000);
        QCOMPARE(desk.translationRequests(), 2);
    }

    void withoutDataControlOnlyTheFocusedWindowWatches()
    {
        qputenv("QUILLORA_CLIPBOARD", "focus");
        ClipboardDesk desk({});
        qunsetenv("QUILLORA_CLIPBOARD");
        QCOMPARE(desk.window().statusMessage(), uiText(desk.window().interfaceLanguage(), MsgClipboardFocus));
        m_wlCopy.copy("hello");
        QTRY_COMPARE(WlCopy::read(), "hello");
        QTest::qWait(800);
        QCOMPARE(desk.translationRequests(), 0);
    }

    // Only this connection's own copies are marked own; another running Quillora's are not.
    void ownCopiesAreTold()
    {
        const auto mine = WaylandClipboard::connectToSession();
        const auto other = WaylandClipboard::connectToSession();
        mine->setWatching(true);
        QSignalSpy seen(mine.get(), &WaylandClipboard::selectionText);
        other->setText("salut");
        QTRY_COMPARE(seen.size(), 1);
        mine->setText("bonjour");
        QTRY_COMPARE(seen.size(), 2);
        QCOMPARE(seen[0], QVariantList({"salut", false}));
        QCOMPARE(seen[1], QVariantList({"bonjour", true}));
        QCOMPARE(WlCopy::read(), "bonjour");
    }

    // An offer whose writer stalls or never stops ends in failure within the limits.
    void readsAreCappedInSizeAndTime_data()
    {
        QTest::addColumn<QByteArray>("written");
        QTest::addColumn<bool>("closed");
        QTest::addColumn<bool>("ok");
        QTest::newRow("whole") << QByteArray("bonjour") << true << true;
        QTest::newRow("stalled") << QByteArray("bon") << false << false;
        QTest::newRow("over the cap") << QByteArray(65, 'x') << false << false;
    }
    void readsAreCappedInSizeAndTime()
    {
        QFETCH(QByteArray, written);
        QFETCH(bool, closed);
        QFETCH(bool, ok);
        int fds[2];
        QVERIFY(::pipe2(fds, O_CLOEXEC) == 0);
        QVERIFY(::write(fds[1], written.constData(), size_t(written.size())) == written.size());
        if (closed)
            ::close(fds[1]);
        PipeReader reader(fds[0], 64, 300);
        QSignalSpy finished(&reader, &PipeReader::finished);
        QVERIFY(finished.wait(2000));
        QCOMPARE(finished[0][0].toBool(), ok);
        QCOMPARE(finished[0][1].toByteArray(), ok ? written : QByteArray());
        if (!closed)
            ::close(fds[1]);
    }
};

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    DesktopWaylandTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_desktop_wayland.moc"
