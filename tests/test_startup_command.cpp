#include "TestSupport.h"
#include "app/StartupCommand.h"
#include "desktop/AutoStart.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace quillora;
using namespace Qt::StringLiterals;

// The command line the program starts with, and the log-on entry that starts it with "mini".
class StartupCommandTest : public QObject
{
    Q_OBJECT
    QTemporaryDir m_dir;
    QString entryPath() const { return m_dir.filePath("autostart/Zelvan-Quilrun.desktop"); }

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_dir.path()));
        QCOMPARE(startupCommand("quillora"), QDir::currentPath() + "/quillora mini");
    }

    // The words given, the line they make, and whether it keeps the updater ("UP") or starts hidden.
    void joinsAndRecognises()
    {
        const QList<std::tuple<QStringList, QString, bool, bool>> rows{
            {{}, QString(), false, false},    {{"UP"}, "UP", true, false},
            {{"mini"}, "mini", false, true},  {{"mini "}, "mini ", false, false},
            {{"MINI"}, "MINI", false, false}, {{"", "mini"}, " mini", false, false}};
        for (const auto& [args, line, up, mini] : rows) {
            const StartupCommand command(args);
            QCOMPARE(command.line(), line);
            QCOMPARE(std::pair(command.keepsUpdater(), command.startsHidden()), std::pair(up, mini));
        }
    }

    // Whether it goes at all is seen with the real program; here, which file and where.
    void leftoverUpdater()
    {
        QVERIFY(test::writeFile(m_dir.filePath("Update.exe"), "MZ"));
        QVERIFY(test::writeFile(m_dir.filePath("update.exe"), "MZ"));
        QCOMPARE(removeLeftoverUpdater(m_dir.path() + "/", StartupCommand({})), QString());
        QVERIFY(!QFile::exists(m_dir.filePath("Update.exe")) && QFile::exists(m_dir.filePath("update.exe")));
        // A folder of that name is not the updater.
        QVERIFY(QDir(m_dir.path()).mkpath("Update.exe/in"));
        QCOMPARE(removeLeftoverUpdater(m_dir.path(), StartupCommand({})), QString());
        QVERIFY(QFile::exists(m_dir.filePath("Update.exe/in")));
    }

    // The written entry is valid and reads back as the same program, and only as it.
    void autostartEntry()
    {
        const QList<std::pair<QString, QString>> rows{
            {u"/usr/bin/quillora"_s, u"Exec=/usr/bin/quillora mini"_s},
            {u"/opt/My \"$H`x`\\/q"_s, u"Exec=\"/opt/My \\\\\"\\\\$H\\\\`x\\\\`\\\\\\\\/q\" mini"_s},
            {u"/opt/100%/q"_s, u"Exec=/opt/100%%/q mini"_s}};
        for (const auto& [path, execLine] : rows) {
            QVERIFY(SetAutoRun(true, path));
            QCOMPARE(autostartFilePath(), entryPath());
            QCOMPARE(QString::fromUtf8(test::readFile(entryPath())).split('\n').filter("Exec").join('|'),
                     execLine);
            // The entry is this very program's only when the line is exactly the same, case included.
            QVERIFY(isAutoRunRegistered(path) && !isAutoRunRegistered(path.toUpper()) &&
                    !isAutoRunRegistered(u"/usr/local/bin/quillora"_s));
            const test::CommandResult valid = test::runCommand("desktop-file-validate", {entryPath()});
            QVERIFY2(valid.ok() && valid.out.isEmpty(), valid.out.constData());
            QVERIFY(SetAutoRun(false, path) && SetAutoRun(false, path)); // removing twice is fine
            QVERIFY(!QFile::exists(entryPath()));
        }
    }
};

QTEST_GUILESS_MAIN(StartupCommandTest)
#include "test_startup_command.moc"
