#include "TestSupport.h"
#include "app/StringTable.h"
#include "desktop/PipeTransfer.h"
#include "desktop/WaylandClipboard.h"
#include "x11/ClipboardDesk.h"

#include <QApplication>
#include <QClipboard>
#include <QRegularExpression>
#include <QSignalSpy>
#include <fcntl.h>
#include <unistd.h>

using namespace quillora;
using test::ClipboardDesk;

// The real main window on Qt's Wayland platform inside a private headless sway (tests/waylandsession.sh),
// with wl-copy and wl-paste as the other programs. No input device ever gives the window the focus:
// everything here happens from the background.
class DesktopWaylandTest : public QObject
{
    Q_OBJECT
    test::OtherPrograms m_wlCopy{/*wayland*/ true};

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
        QTRY_VERIFY(m_wlCopy.read().isEmpty());
    }

    void cleanup() { m_wlCopy.endAll(); }

    void autoCopyDoesNotFeedBack() { test::autoCopyDoesNotFeedBack(m_wlCopy); }
    void copiesDuringASlowTranslation() { test::copiesDuringASlowTranslation(m_wlCopy); }
    void offersFollowOneRule() { test::offersFollowOneRule(m_wlCopy); }
    void hostileOwnersLeaveTheWindowAnswering() { test::hostileOwnersLeaveTheWindowAnswering(m_wlCopy); }

    void withoutDataControlOnlyTheFocusedWindowWatches()
    {
        qputenv("QUILLORA_CLIPBOARD", "focus");
        ClipboardDesk desk;
        qunsetenv("QUILLORA_CLIPBOARD");
        QCOMPARE(desk.window().statusMessage(), uiText(desk.window().interfaceLanguage(), MsgClipboardFocus));
        m_wlCopy.copy("hello");
        QTRY_COMPARE(m_wlCopy.read(), "hello");
        QTest::qWait(800);
        QCOMPARE(desk.translationRequests(), 0);
    }

    // Only this connection's own copies are marked own; another running Quillora's are not.
    void ownCopiesAreTold()
    {
        const auto mine = WaylandClipboard::connectToSession();
        const auto other = WaylandClipboard::connectToSession();
        mine->setWatching(true);
        QSignalSpy seen(mine.get(), &WaylandClipboard::readDone);
        other->setText("salut");
        QTRY_COMPARE(seen.size(), 1);
        mine->setText("bonjour");
        QTRY_COMPARE(seen.size(), 2);
        QCOMPARE(seen[0].mid(2), QVariantList({"salut", false}));
        QCOMPARE(seen[1].mid(2), QVariantList({"bonjour", true}));
        QCOMPARE(m_wlCopy.read(), "bonjour");
    }

    // An offer whose writer stalls, or writes more than the cap, ends in failure within the limits; one
    // that closes its end is read by every copy here.
    void readsAreCappedInSizeAndTime()
    {
        for (const QByteArray& written : {QByteArray("bon"), QByteArray(65, 'x')}) {
            int fds[2];
            QVERIFY(::pipe2(fds, O_CLOEXEC) == 0);
            QVERIFY(::write(fds[1], written.constData(), size_t(written.size())) == written.size());
            PipeReader reader(fds[0], 64, 300);
            QSignalSpy finished(&reader, &PipeReader::finished);
            QVERIFY(finished.wait(2000));
            QCOMPARE(finished[0], (QVariantList{false, QByteArray()}));
            QCOMPARE(reader.overflowed(), written.size() > 64);
            ::close(fds[1]);
        }
    }

    // sway offers no global shortcuts and the session's portal has no back-end: F11 is off, and said.
    void withoutAPortalF11IsOff()
    {
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression("^Global key F11 unavailable: .*CreateSession"));
        ClipboardDesk desk(false, /*hotKey*/ true);
        QTRY_COMPARE(desk.window().statusMessage(), uiText(desk.window().interfaceLanguage(), MsgHotKeyOff));
    }
};

QTEST_MAIN(DesktopWaylandTest)
#include "test_desktop_wayland.moc"
