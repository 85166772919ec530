#include "TestSupport.h"
#include "app/DialogCommands.h"
#include "desktop/ResultsFile.h"

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLibraryInfo>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace quillora;
using namespace Qt::StringLiterals;

namespace
{

QDBusMessage call(const QString& service, const QString& interface, const QString& method,
                  const QVariantList& args)
{
    QDBusMessage message =
        QDBusMessage::createMethodCall(service, u"/org/freedesktop/portal/desktop"_s, interface, method);
    message.setArguments(args);
    return QDBusConnection::sessionBus().call(message);
}

QDBusMessage backend(const QString& method, const QVariantList& args = {})
{
    return call(u"org.freedesktop.impl.portal.desktop.test"_s, u"org.zelvan.quillora.ChooserBackend"_s,
                method, args);
}

// A filter of the last dialog as the back-end got it: its name, its patterns and the names it listed.
QJsonObject asked(int filter)
{
    const QJsonArray dialogs =
        QJsonDocument::fromJson(backend(u"Record"_s).arguments().value(0).toByteArray()).array();
    return dialogs.last()[u"filters"_s][filter].toObject();
}

} // namespace

// Open and Save Results through Qt's portal dialog, the real xdg-desktop-portal front-end and the tests'
// own back-end (tests/filechooser/backend.py), which lists a folder as GTK's chooser does: case by case.
class FileChoosersTest : public QObject
{
    Q_OBJECT
    const bool m_backendReady;
    QTemporaryDir m_dir;
    QWidget m_window;
    Settings m_settings{m_dir.filePath(u"Quillora.conf"_s)};
    FormMianDeps m_deps;
    QStringList m_opened;

public:
    explicit FileChoosersTest(bool backendReady) : m_backendReady(backendReady) {}

private Q_SLOTS:
    void initTestCase()
    {
        if (!QFile::exists(u"/usr/libexec/xdg-desktop-portal"_s))
            QSKIP("xdg-desktop-portal is not installed");
        if (!QFile::exists(QLibraryInfo::path(QLibraryInfo::PluginsPath) +
                           u"/platformthemes/libqxdgdesktopportal.so"_s))
            QSKIP("qt6-xdgdesktopportal-platformtheme is not installed");
        if (!m_backendReady)
            QSKIP("the stand-in back-end did not start (python3-gi missing?)");
        // Qt takes the portal's dialog once its start-up question is answered; this one comes after it.
        const QDBusMessage version =
            call(u"org.freedesktop.portal.Desktop"_s, u"org.freedesktop.DBus.Properties"_s, u"Get"_s,
                 {u"org.freedesktop.portal.FileChooser"_s, u"version"_s});
        QVERIFY(version.arguments().value(0).value<QDBusVariant>().variant().toUInt() >= 1);
        QCoreApplication::processEvents();
        m_deps.settings = &m_settings;
        m_deps.openUrl = [this](const QUrl& url) { return m_opened << url.toLocalFile(), true; };
        m_deps = withDefaults(m_deps);
        for (const char* name :
             {"notes.txt", "NOTES.TXT", "Notes.Txt", "setup.INI", "run.Log", "c.bin", "README"})
            QVERIFY(test::writeFile(m_dir.filePath(QLatin1String(name)), "hello"));
    }

    // Open's text filter shows its own text and lists every case of its four kinds, "All" every file;
    // Save lists the results files there are, whatever their case.
    void choosersListEveryCase()
    {
        backend(u"Choose"_s, {m_dir.path(), u"Notes.Txt"_s});
        QCOMPARE(DialogCommands(&m_window, m_deps).openTextFile(1).value_or(QString()), u"hello"_s);
        QCOMPARE(asked(0)[u"listed"_s].toArray(),
                 QJsonArray({u"NOTES.TXT"_s, u"Notes.Txt"_s, u"notes.txt"_s, u"run.Log"_s, u"setup.INI"_s}));
        QCOMPARE(asked(1)[u"listed"_s].toArray(),
                 QJsonArray({u"NOTES.TXT"_s, u"Notes.Txt"_s, u"README"_s, u"c.bin"_s, u"notes.txt"_s,
                             u"run.Log"_s, u"setup.INI"_s}));
        QCOMPARE(asked(0)[u"name"_s].toString().trimmed(), u"Text (*.TXT;*.ini;*.inf;*.log)"_s);

        backend(u"Choose"_s, {m_dir.path(), u"results.txt"_s});
        DialogCommands(&m_window, m_deps).saveResults(1, ResultTexts{u"a"_s, u"b"_s, {}, {}});
        QCOMPARE(m_opened, QStringList{m_dir.filePath(u"results.txt"_s)});
        QCOMPARE(asked(0)[u"listed"_s].toArray(),
                 QJsonArray({u"NOTES.TXT"_s, u"Notes.Txt"_s, u"notes.txt"_s}));
    }
};

// Qt's portal theme asks the front-end for its version as the application starts, and the front-end
// takes the back-ends it finds when it starts: the stand-in one is on the bus before either.
int main(int argc, char** argv)
{
    const QByteArray script = qgetenv("QUILLORA_SOURCE_DIR") + "/tests/filechooser/backend.py";
    int ready[2];
    if (::pipe(ready) != 0)
        return 1;
    const pid_t backend = ::fork();
    if (backend == 0) {
        ::dup2(ready[1], STDOUT_FILENO);
        ::execl("/usr/bin/python3", "python3", script.constData(), nullptr);
        ::_exit(127);
    }
    ::close(ready[1]);
    char line[8] = {};
    pollfd waiting{ready[0], POLLIN, 0};
    const bool started = ::poll(&waiting, 1, 20000) == 1 && ::read(ready[0], line, 5) == 5;
    QApplication app(argc, argv);
    FileChoosersTest test(started && qstrcmp(line, "ready") == 0);
    const int failed = QTest::qExec(&test, argc, argv);
    ::kill(backend, SIGTERM);
    ::waitpid(backend, nullptr, 0);
    return failed;
}

#include "test_file_choosers.moc"
