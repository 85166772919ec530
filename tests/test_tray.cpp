#include "TestSupport.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QStyleHints>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <unistd.h>

using namespace quillora::test;

namespace
{

// The X server as another client sees it; windows by their decimal ids.
QString run(const QString& program, const QStringList& args)
{
    return QString::fromUtf8(runCommand(program, args, {}, 5000).out);
}

// Whether an xwininfo or xprop listing, in hexadecimal, names the window.
bool lists(const QString& listing, const QString& window)
{
    return !window.isEmpty() &&
           listing.contains(QRegularExpression(QString("0x%1\\b").arg(window.toUInt(), 0, 16)));
}

QStringList windowsOf(const QProcess& program, const char* filter = "--all")
{
    return run("xdotool", {"search", filter, "--pid", QString::number(program.processId())})
        .split('\n', Qt::SkipEmptyParts);
}

// The one at least 400 pixels wide; the icon, the balloon and Qt's helper windows are smaller.
QString mainWindow(const QProcess& program)
{
    static const QRegularExpression wide("Width: ([4-9]\\d\\d|\\d{4,})\\n");
    for (const QString& w : windowsOf(program))
        if (run("xwininfo", {"-id", w}).contains(wide))
            return w;
    return {};
}

bool shown(const QProcess& program)
{
    return run("xwininfo", {"-id", mainWindow(program)}).contains("IsViewable");
}

// Managed by the window manager, so in its task list.
bool reachable(const QString& window)
{
    return lists(run("xprop", {"-root", "_NET_CLIENT_LIST"}), window);
}

// Minimised and in the window manager's task list.
bool iconicInTaskList(const QProcess& program)
{
    const QString w = mainWindow(program);
    return reachable(w) && run("xprop", {"-id", w, "WM_STATE"}).contains("Iconic");
}

// The program's window embedded in the tray, empty when there is none.
QString iconOf(const QProcess& program)
{
    const QString panel = run("xdotool", {"search", "--classname", "^panel$"}).section('\n', 0, 0);
    for (const QString& w : windowsOf(program, "--onlyvisible"))
        if (lists(run("xwininfo", {"-tree", "-id", panel}), w))
            return w;
    return {};
}

// Two clicks closer than the double-click time would make a double click, which toggles nothing.
bool click(const QString& window)
{
    QTest::qWait(2 * QGuiApplication::styleHints()->mouseDoubleClickInterval());
    return runCommand("xdotool", {"mousemove", "--window", window, "8", "8", "click", "1"}).ok();
}

bool endsCleanlyOn(QProcess& program, int signal)
{
    ::kill(pid_t(program.processId()), signal);
    return program.waitForFinished(10000) && program.exitStatus() == QProcess::NormalExit &&
           program.exitCode() == 0;
}

bool copyProgramTo(const QString& folder)
{
    return QFile::copy(qEnvironmentVariable("QUILLORA_BUILD_DIR") + "/src/quillora", folder + "/quillora");
}

} // namespace

// The real program, run from a copy of its own, under a real XEmbed tray. Without a window manager a
// window shows exactly when the program maps it; the last cases add one for the task list.
class TrayTest : public QObject
{
    Q_OBJECT
    QTemporaryDir m_dir;
    QProcess m_tray;

    // Down means gone from the X server too, which learns of a killed client a moment after its end.
    bool trayUp(bool up = true)
    {
        if (!up) {
            m_tray.kill();
            m_tray.waitForFinished();
        } else if (m_tray.state() == QProcess::NotRunning) {
            m_tray.start("trayer",
                         {"--edge", "top", "--align", "right", "--widthtype", "request", "--height", "24"});
        }
        return QTest::qWaitFor(
            [up] {
                return run("xdotool", {"search", "--classname", "^panel$"}).isEmpty() != up;
            },
            10000);
    }
    bool start(QProcess& program, const QStringList& args, bool waitForIcon = true)
    {
        program.start(m_dir.filePath("quillora"), args);
        return !waitForIcon || QTest::qWaitFor([&] { return !iconOf(program).isEmpty(); }, 10000);
    }

private Q_SLOTS:
    void initTestCase()
    {
        // Nothing leaves the machine.
        for (const char* name : {"QUILLORA_SERVICE_URL", "QUILLORA_API_URL", "QUILLORA_SITE_URL"})
            qputenv(name, "http://127.0.0.1:9");
        QVERIFY(copyProgramTo(m_dir.path()));
        QVERIFY(trayUp());
    }

    // The arguments as given: "mini" after a Qt option is not the first argument, so the window shows as on
    // a plain start; "UP" keeps the updater, which any other start removes.
    void startArguments()
    {
        for (const auto& [args, updaterKept] :
             QList<std::pair<QStringList, bool>>{{{"-name", "x", "mini"}, false}, {{"UP"}, true}}) {
            QVERIFY(writeFile(m_dir.filePath("Update.exe"), "MZ updater"));
            QProcess program;
            QVERIFY(start(program, args));
            QVERIFY2(QTest::qWaitFor([&] { return shown(program); }, 10000), qPrintable(args.join(' ')));
            QCOMPARE(QFile::remove(m_dir.filePath("Update.exe")), updaterKept);
            QVERIFY(endsCleanlyOn(program, SIGTERM));
        }
    }

    // "mini" starts in the tray, the updater removed; a click on the icon shows the window, another hides it.
    void miniStartsInTheTrayIconClickToggles()
    {
        QVERIFY(writeFile(m_dir.filePath("Update.exe"), "MZ updater"));
        QProcess program;
        QVERIFY(start(program, {"mini"}));
        QVERIFY(!shown(program) && !QFile::exists(m_dir.filePath("Update.exe")));
        const QString icon = iconOf(program);
        // The icon window exists a moment before the tray has embedded it; a click then goes nowhere.
        bool appeared = false;
        for (int attempt = 0; attempt < 4 && !appeared; ++attempt) {
            QVERIFY(click(icon));
            appeared = QTest::qWaitFor([&] { return shown(program); }, 6000);
        }
        QVERIFY(appeared);
        QVERIFY(click(icon));
        QTRY_VERIFY_WITH_TIMEOUT(!shown(program), 10000);
        QVERIFY(endsCleanlyOn(program, SIGHUP));
    }

    // Started hidden with no tray, the window waits minimised in the task list; a tray that comes up takes it
    // in, one that goes away gives it back, and one that comes back takes it again.
    void withoutTrayTheWindowStaysReachable()
    {
        QProcess wm;
        wm.start("openbox", {"--sm-disable"});
        QTRY_VERIFY_WITH_TIMEOUT(run("xprop", {"-root", "_NET_SUPPORTING_WM_CHECK"}).contains("window id"),
                                 10000);
        QVERIFY(trayUp(false));
        QProcess mini;
        QVERIFY(start(mini, {"mini"}, false));
        QTRY_VERIFY_WITH_TIMEOUT(iconicInTaskList(mini), 10000);
        QVERIFY(trayUp());
        QTRY_VERIFY_WITH_TIMEOUT(!reachable(mainWindow(mini)) && !iconOf(mini).isEmpty(), 10000);
        QVERIFY(trayUp(false));
        QTRY_VERIFY_WITH_TIMEOUT(iconicInTaskList(mini), 10000);
        QVERIFY(trayUp());
        QTRY_VERIFY_WITH_TIMEOUT(!iconOf(mini).isEmpty(), 10000);
        QVERIFY(endsCleanlyOn(mini, SIGTERM));
    }

    // The start ends in a box, and a line on the error stream, in the user's language (French).
    void undeletableUpdaterEndsStart()
    {
        QTemporaryDir dir;
        const QString folder = dir.path() + "/prog", config = dir.path() + "/config";
        QVERIFY(QDir().mkpath(folder) && copyProgramTo(folder) && writeFile(folder + "/Update.exe", "MZ"));
        QVERIFY(writeFile(config + "/Quillora/Quillora.conf", "[Setup]\nLanguage=7\n"));
        const auto open =
            QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther;
        QVERIFY(QFile::setPermissions(dir.path(), open) &&
                QFile::setPermissions(folder, open & ~QFile::WriteOwner));
        // Folder permissions bind everyone but root; run it as an ordinary user would.
        QStringList command{"env", "XDG_CONFIG_HOME=" + config, folder + "/quillora"};
        if (geteuid() == 0)
            command = QStringList{"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"} + command;
        QProcess program;
        program.start(command.takeFirst(), command);
        QString box;
        QTRY_VERIFY_WITH_TIMEOUT(!(box = windowsOf(program, "--onlyvisible").value(0)).isEmpty(), 10000);
        QCOMPARE(run("xdotool", {"getwindowname", box}).trimmed(), "Avis");
        QVERIFY(program.state() == QProcess::Running);
        // The box takes the press and is gone before the release, which xdotool then reports.
        runCommand("xdotool", {"key", "--window", box, "Return"});
        QTRY_VERIFY_WITH_TIMEOUT(program.state() == QProcess::NotRunning, 10000);
        const QString err = QString::fromUtf8(program.readAllStandardError());
        QFile::setPermissions(folder, open);
        QVERIFY2(program.exitStatus() == QProcess::NormalExit && program.exitCode() == 1, qPrintable(err));
        QVERIFY2(err.contains("l'ancien programme de mise à jour " + folder +
                              "/Update.exe n'a pas pu être supprimé. Raison : Permission denied"),
                 qPrintable(err));
        QVERIFY(QFile::exists(folder + "/Update.exe"));
    }
};

QTEST_MAIN(TrayTest)
#include "test_tray.moc"
