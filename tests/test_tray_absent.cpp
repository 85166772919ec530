#include "DesktopProbe.h"
#include "standin/StandinService.h"

#include <QTest>
#include <csignal>

using namespace quillora::test;

// The real program under a window manager, first with no tray at all.
class TrayAbsentTest : public QObject
{
    Q_OBJECT
    StandinService m_standin;

    static bool iconic(quint32 window)
    {
        return xwin::property(window, "WM_STATE").contains("window state: Iconic");
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_standin.listen()); }

    void miniWithoutTrayStaysInTaskBar()
    {
        QuilloraProcess q;
        q.setServiceUrl(m_standin.baseUrl());
        QVERIFY(q.start({"mini"}));
        QVERIFY(eventually([&] { return q.mainWindow() != 0; }));
        const quint32 w = q.mainWindow();
        QVERIFY(eventually([&] { return xwin::clientList().contains(w); }));
        QVERIFY(eventually([&] { return iconic(w); }));
        QVERIFY(q.stopWith(SIGTERM, 5000));
    }

    void trayComingAndGoing()
    {
        QuilloraProcess q;
        q.setServiceUrl(m_standin.baseUrl());
        QVERIFY(q.start({}));
        QVERIFY(eventually([&] { return q.mainViewable(); }));
        const quint32 w = q.mainWindow();

        Trayer tray;
        QVERIFY(tray.start());
        QVERIFY(eventually([&] { return q.iconIn(tray.panel()) != 0; }));
        QVERIFY(eventually([&] { return !q.balloons().isEmpty(); }));

        // Now there is a tray to hide in: minimising leaves the task bar.
        QVERIFY(runCommandOk({"windowminimize", QString::number(w)}));
        QVERIFY(eventually([&] { return !xwin::clientList().contains(w); }));
        QVERIFY(!xwin::viewable(w));

        // The tray goes away: the hidden window comes back to the task bar, minimised.
        tray.stop();
        QVERIFY(eventually([&] { return xwin::clientList().contains(w); }));
        QVERIFY(eventually([&] { return iconic(w); }));
        QVERIFY(q.stopWith(SIGTERM, 5000));
    }

private:
    static bool runCommandOk(const QStringList& xdotoolArgs)
    {
        QProcess p;
        p.start("xdotool", xdotoolArgs);
        return p.waitForFinished(5000) && p.exitCode() == 0;
    }
};

QTEST_MAIN(TrayAbsentTest)
#include "test_tray_absent.moc"
