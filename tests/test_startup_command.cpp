#include "TestSupport.h"
#include "app/StartupCommand.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <unistd.h>

using namespace quillora;

namespace
{

// File permissions do not bind root; act as "nobody" for the duration, the way a user would run.
class AsUnprivileged
{
public:
    AsUnprivileged() : m_wasRoot(geteuid() == 0)
    {
        if (m_wasRoot)
            m_ok = setegid(65534) == 0 && seteuid(65534) == 0;
    }
    ~AsUnprivileged()
    {
        if (m_wasRoot) {
            [[maybe_unused]] const int u = seteuid(0);
            [[maybe_unused]] const int g = setegid(0);
        }
    }
    bool ok() const { return m_ok; }

private:
    bool m_wasRoot;
    bool m_ok = true;
};

} // namespace

class StartupCommandTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void joinsAndRecognises_data()
    {
        QTest::addColumn<QStringList>("args");
        QTest::addColumn<QString>("line");
        QTest::addColumn<bool>("up");
        QTest::addColumn<bool>("mini");
        QTest::newRow("nothing") << QStringList() << QString() << false << false;
        QTest::newRow("UP") << QStringList{"UP"} << "UP" << true << false;
        QTest::newRow("mini") << QStringList{"mini"} << "mini" << false << true;
        QTest::newRow("mini trailing blank") << QStringList{"mini "} << "mini " << false << false;
        QTest::newRow("MINI") << QStringList{"MINI"} << "MINI" << false << false;
        QTest::newRow("up lower") << QStringList{"up"} << "up" << false << false;
        QTest::newRow("mini with a word") << QStringList{"mini", "x"} << "mini x" << false << false;
        QTest::newRow("UP with a word") << QStringList{"UP", "mini"} << "UP mini" << false << false;
        QTest::newRow("empty words kept") << QStringList{"", "mini"} << " mini" << false << false;
        QTest::newRow("file name") << QStringList{"/tmp/a b.txt"} << "/tmp/a b.txt" << false << false;
    }
    void joinsAndRecognises()
    {
        QFETCH(QStringList, args);
        QFETCH(QString, line);
        QFETCH(bool, up);
        QFETCH(bool, mini);
        const StartupCommand command(args);
        QCOMPARE(command.line(), line);
        QCOMPARE(command.keepsUpdater(), up);
        QCOMPARE(command.startsHidden(), mini);
    }

    void updaterPathHasOneSlash()
    {
        QCOMPARE(updaterPath("/opt/quillora"), QString("/opt/quillora/Update.exe"));
        QCOMPARE(updaterPath("/opt/quillora/"), QString("/opt/quillora/Update.exe"));
        QCOMPARE(updaterPath("/"), QString("/Update.exe"));
    }

    void removesLeftoverUnlessUp()
    {
        QTemporaryDir dir;
        const QString path = dir.path() + "/Update.exe";
        QVERIFY(test::writeFile(path, "MZ updater"));

        QCOMPARE(removeLeftoverUpdater(dir.path(), StartupCommand({"UP"})), QString());
        QVERIFY(QFile::exists(path));

        QCOMPARE(removeLeftoverUpdater(dir.path() + "/", StartupCommand({"mini"})), QString());
        QVERIFY(!QFile::exists(path));

        // Nothing there is the ordinary case.
        QCOMPARE(removeLeftoverUpdater(dir.path(), StartupCommand({})), QString());
    }

    void leavesOtherNamesAndFolders()
    {
        QTemporaryDir dir;
        QVERIFY(test::writeFile(dir.path() + "/update.exe", "x"));
        QVERIFY(QDir(dir.path()).mkpath("Update.exe/inner"));
        QCOMPARE(removeLeftoverUpdater(dir.path(), StartupCommand({})), QString());
        QVERIFY(QFile::exists(dir.path() + "/update.exe"));
        QVERIFY(QFileInfo(dir.path() + "/Update.exe/inner").isDir());
    }

    void removesDanglingLink()
    {
        QTemporaryDir dir;
        const QString path = dir.path() + "/Update.exe";
        QVERIFY(QFile::link(dir.path() + "/gone", path));
        QCOMPARE(removeLeftoverUpdater(dir.path(), StartupCommand({})), QString());
        QVERIFY(!QFileInfo(path).isSymLink());
    }

    void readOnlyFolderGivesReason()
    {
        QTemporaryDir dir;
        const QString folder = dir.path() + "/prog";
        const QString path = folder + "/Update.exe";
        QVERIFY(test::writeFile(path, "MZ"));
        QVERIFY(QFile::setPermissions(dir.path(), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner |
                                                      QFile::ReadOther | QFile::ExeOther));
        QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther |
                                                  QFile::ExeOther));
        QString reason;
        {
            AsUnprivileged guard;
            QVERIFY(guard.ok());
            reason = removeLeftoverUpdater(folder, StartupCommand({}));
        }
        QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        QVERIFY(QFile::exists(path));
        QVERIFY2(reason.contains(path), qPrintable(reason));
        QVERIFY2(reason.contains("ermission"), qPrintable(reason));
    }
};

QTEST_GUILESS_MAIN(StartupCommandTest)
#include "test_startup_command.moc"
