#include "DesktopProbe.h"
#include "TestSupport.h"
#include "standin/StandinService.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QGuiApplication>
#include <QStyleHints>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <unistd.h>

using namespace quillora::test;

// The real program under a real XEmbed tray, with no window manager: a window is shown exactly
// when the program maps it.
class TrayTest : public QObject
{
    Q_OBJECT
    StandinService m_standin;
    Trayer m_tray;

    void startAndWaitForIcon(QuilloraProcess& q, const QStringList& args, quint32* icon = nullptr)
    {
        quint32 found = 0;
        q.setServiceUrl(m_standin.baseUrl());
        QVERIFY(q.start(args));
        QVERIFY(eventually([&] { return (found = q.iconIn(m_tray.panel())) != 0; }));
        QVERIFY(eventually([&] { return !q.balloons().isEmpty(); }));
        if (icon)
            *icon = found;
    }

    // Two clicks closer than the double-click time make a double click, which is no toggle.
    bool clickApart(quint32 window)
    {
        const int apart = 2 * QGuiApplication::styleHints()->mouseDoubleClickInterval();
        if (m_lastClick.isValid() && m_lastClick.elapsed() < apart)
            QTest::qWait(int(apart - m_lastClick.elapsed()));
        m_lastClick.start();
        return xwin::click(window);
    }
    QElapsedTimer m_lastClick;

    // A copy of the program in a folder of its own, for the leftover-updater rules.
    static bool copyProgramTo(const QString& folder)
    {
        const QString copy = folder + "/quillora";
        return QFile::copy(QuilloraProcess::defaultProgram(), copy) &&
               QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                               QFile::ReadOther | QFile::ExeOther);
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_standin.listen());
        QVERIFY(m_tray.start());
    }

    void ordinaryStartShowsWindow_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::newRow("nothing") << QStringList();
        QTest::newRow("mini with a blank") << QStringList{"mini "};
        QTest::newRow("MINI") << QStringList{"MINI"};
        QTest::newRow("mini with a word") << QStringList{"mini", "x"};
    }
    void ordinaryStartShowsWindow()
    {
        QFETCH(QStringList, args);
        QuilloraProcess q;
        startAndWaitForIcon(q, args);
        if (QTest::currentTestFailed())
            return;
        QVERIFY(eventually([&] { return q.mainViewable(); }));
        QVERIFY(q.stopWith(SIGTERM));
    }

    void miniHidesInTrayAndClickToggles()
    {
        QuilloraProcess q;
        quint32 icon = 0;
        startAndWaitForIcon(q, {"mini"}, &icon);
        if (QTest::currentTestFailed())
            return;
        QVERIFY(!q.mainViewable());

        QSet<quint32> seen = q.balloons();
        QVERIFY(clickApart(icon));
        QVERIFY(eventually([&] { return q.mainViewable(); }));

        seen += q.balloons();
        QVERIFY(clickApart(icon));
        QVERIFY(eventually([&] { return !q.mainViewable(); }));
        // Every trip into the tray greets again.
        QVERIFY(eventually([&] { return !(q.balloons() - seen).isEmpty(); }));
        QVERIFY(q.running());
        QVERIFY(q.stopWith(SIGTERM));
    }

    void trayRestartBringsIconAndBalloonBack()
    {
        QuilloraProcess q;
        startAndWaitForIcon(q, {});
        if (QTest::currentTestFailed())
            return;
        const QSet<quint32> seen = q.balloons();

        m_tray.stop();
        QVERIFY(eventually([&] { return m_tray.panel() == 0u; }));
        QVERIFY(m_tray.start());
        QVERIFY(eventually([&] { return q.iconIn(m_tray.panel()) != 0; }));
        QVERIFY(eventually([&] { return !(q.balloons() - seen).isEmpty(); }));
        QVERIFY(q.mainViewable());
        QVERIFY(q.stopWith(SIGTERM));
    }

    void signalsEndCleanly_data()
    {
        QTest::addColumn<int>("signal");
        QTest::addColumn<QStringList>("args");
        QTest::newRow("TERM shown") << int(SIGTERM) << QStringList();
        QTest::newRow("TERM hidden") << int(SIGTERM) << QStringList{"mini"};
        QTest::newRow("INT") << int(SIGINT) << QStringList();
        QTest::newRow("HUP hidden") << int(SIGHUP) << QStringList{"mini"};
    }
    void signalsEndCleanly()
    {
        QFETCH(int, signal);
        QFETCH(QStringList, args);
        QuilloraProcess q;
        startAndWaitForIcon(q, args);
        if (QTest::currentTestFailed())
            return;
        QVERIFY(q.stopWith(signal, 5000));
    }

    void leftoverUpdater_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<bool>("survives");
        QTest::newRow("ordinary start") << QStringList() << false;
        QTest::newRow("UP") << QStringList{"UP"} << true;
        QTest::newRow("mini") << QStringList{"mini"} << false;
    }
    void leftoverUpdater()
    {
        QFETCH(QStringList, args);
        QFETCH(bool, survives);
        QTemporaryDir dir;
        QVERIFY(copyProgramTo(dir.path()));
        const QString updater = dir.path() + "/Update.exe";
        QVERIFY(writeFile(updater, "MZ updater"));

        QuilloraProcess q(dir.path() + "/quillora");
        startAndWaitForIcon(q, args);
        if (QTest::currentTestFailed())
            return;
        QCOMPARE(QFile::exists(updater), survives);
        QVERIFY(q.stopWith(SIGTERM));
    }

    void undeletableUpdaterEndsStart()
    {
        QTemporaryDir dir;
        const QString folder = dir.path() + "/prog";
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(copyProgramTo(folder));
        QVERIFY(writeFile(folder + "/Update.exe", "MZ updater"));
        const auto open =
            QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther;
        QVERIFY(QFile::setPermissions(dir.path(), open));
        QVERIFY(QFile::setPermissions(folder, open & ~QFile::WriteOwner));

        // Folder permissions bind everyone but root; run it as an ordinary user would.
        QStringList wrapper;
        if (geteuid() == 0)
            wrapper = QStringList{"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"};
        QuilloraProcess q(folder + "/quillora");
        q.setServiceUrl(m_standin.baseUrl());
        QVERIFY(q.start({}, wrapper));
        QVERIFY(q.process().waitForFinished(10000));
        const QString err = QString::fromUtf8(q.process().readAllStandardError());
        QCOMPARE(q.process().exitStatus(), QProcess::NormalExit);
        QVERIFY(q.process().exitCode() != 0);
        QVERIFY2(err.contains(folder + "/Update.exe"), qPrintable(err));
        QVERIFY(QFile::exists(folder + "/Update.exe"));
        QVERIFY(m_standin.requests().isEmpty());
        QFile::setPermissions(folder, open);
    }
};

QTEST_MAIN(TrayTest)
#include "test_tray.moc"
