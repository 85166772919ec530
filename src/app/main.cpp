#include "Version.h"
#include "app/FormMian.h"
#include "app/LocaleChoice.h"
#include "app/Settings.h"
#include "app/StartupCommand.h"
#include "app/StringTable.h"
#include "desktop/PlatformChoice.h"
#include "desktop/SysTray.h"
#include "ui/FirstShowing.h"
#include "ui/FocusMarkStyle.h"
#include "ui/ShownReport.h"

#include <QApplication>
#include <QIcon>
#include <QMessageBox>
#include <QSessionManager>
#include <QSocketNotifier>
#include <csignal>
#include <cstdio>
#include <functional>
#include <optional>
#include <sys/socket.h>
#include <unistd.h>

using namespace quillora;

namespace
{

int signalPipe[2] = {-1, -1};

void onQuitSignal(int)
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t n = ::write(signalPipe[0], &byte, 1);
}

// SIGTERM, SIGINT and SIGHUP end the program the same way "Exit" does. The handler only
// writes a byte; the event loop reads it and does the real work.
class QuitOnSignals
{
public:
    explicit QuitOnSignals(std::function<void()> onSignal) : m_onSignal(std::move(onSignal))
    {
        if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, signalPipe) != 0)
            return;
        m_notifier = std::make_unique<QSocketNotifier>(signalPipe[1], QSocketNotifier::Read);
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this] {
            char byte;
            [[maybe_unused]] const ssize_t n = ::read(signalPipe[1], &byte, 1);
            m_onSignal();
        });
        struct sigaction action = {};
        action.sa_handler = onQuitSignal;
        sigemptyset(&action.sa_mask);
        action.sa_flags = SA_RESTART;
        for (const int sig : {SIGTERM, SIGINT, SIGHUP})
            ::sigaction(sig, &action, nullptr);
    }

private:
    std::function<void()> m_onSignal;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

// Set late: drawing it at all its sizes would hold up the window's first showing.
void setProgramIcon()
{
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/icons/quillora.svg")));
}

// Nothing else has started: the user learns why in a box, a terminal on the error stream, both in
// the interface language. The program ends when the box is answered.
int reportUpdaterKept(const QString& path, const QString& reason)
{
    const QString language = interfaceLanguageFor(Settings().language());
    setProgramIcon();
    const QString text =
        uiText(language, MsgWithReason).arg(uiText(language, MsgUpdaterKept).arg(path), reason);
    std::fprintf(stderr, "quillora: %s\n", qUtf8Printable(text));
    QMessageBox box(QMessageBox::Critical, uiText(language, NoticeTitle), text, QMessageBox::Ok);
    box.setObjectName(QStringLiteral("UpdaterKept"));
    QObject::connect(&box, &QDialog::finished, [] { QCoreApplication::exit(1); });
    box.show();
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char* argv[])
{
    const QString platformNote = preferXWaylandForClipboard(argc, argv);
    if (!platformNote.isEmpty())
        std::fprintf(stderr, "quillora: %s\n", qUtf8Printable(platformNote));
    // The command line as given: QApplication takes its own options (-name, -display, ...) out of argv.
    QStringList given;
    for (int i = 1; i < argc; ++i)
        given.append(QString::fromLocal8Bit(argv[i]));
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Quillora"));
    QApplication::setApplicationName(QStringLiteral("Quillora"));
    QApplication::setApplicationVersion(versionText());
    QGuiApplication::setDesktopFileName(QString::fromLatin1(kApplicationId));
    QApplication::setStyle(new FocusMarkStyle(QApplication::style()->name()));

    // The window spends most of its life hidden in the tray; only the exit commands end the program.
    QApplication::setQuitOnLastWindowClosed(false);

    const StartupCommand command(given);
    const QString folder = QCoreApplication::applicationDirPath();
    const QString reason = removeLeftoverUpdater(folder, command);
    if (!reason.isEmpty())
        return reportUpdaterKept(updaterPath(folder), reason);

    Settings settings;
    FormMianDeps deps;
    deps.settings = &settings;
    FormMian window(deps);
    // exit(), not quit(): quit() first asks every window to close, and the main window says no.
    QObject::connect(
        &window, &FormMian::exiting, &app, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
    QObject::connect(&app, &QGuiApplication::commitDataRequest, &window,
                     [&window](QSessionManager&) { window.requestExit(); });
    const QuitOnSignals quitOnSignals([&window] { window.requestExit(); });

    // Installed before anything shows: the window may be exposed while it is still being set up.
    ShownReport shownReport;
    if (ShownReport::wanted())
        app.installEventFilter(&shownReport);

    std::optional<SysTray> tray;
    const auto withIcons = [&tray, &window] {
        setProgramIcon();
        return &tray.emplace(&window);
    };
    if (!command.startsHidden()) {
        window.show();
        // The icons wait for the window's first showing, which drawing them would hold up.
        new FirstShowing(&window, [withIcons] { withIcons()->AddTrayIcon(); });
        return app.exec();
    }
    withIcons();
    if (window.trayPresent())
        window.setWindowState(Qt::WindowMinimized); // stays hidden: only the icon shows
    else {
        // No tray to hide in: minimised in the task bar it stays reachable. The state has to be set
        // on the shown window; set before, Qt maps it in the normal state.
        window.show();
        window.setWindowState(window.windowState() | Qt::WindowMinimized);
    }
    tray->AddTrayIcon();

    return app.exec();
}
