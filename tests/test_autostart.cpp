#include "TestSupport.h"
#include "desktop/AutoStart.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace quillora;

class AutoStartTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_config;
    QString entryPath() const { return m_config.path() + QLatin1String("/autostart/Zelvan-Quilrun.desktop"); }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_config.isValid());
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_config.path()));
        QCOMPARE(autostartFilePath(), entryPath());
    }

    void cleanup() { QFile::remove(entryPath()); }

    void entryText()
    {
        const QString text = autostartEntryText(QStringLiteral("/opt/quillora/bin/quillora"));
        QVERIFY(text.startsWith(QLatin1String("[Desktop Entry]\n")));
        const QStringList lines = text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QVERIFY(lines.contains(QLatin1String("Type=Application")));
        QVERIFY(lines.contains(QLatin1String("Name=Quillora")));
        QVERIFY(lines.contains(QLatin1String("Exec=/opt/quillora/bin/quillora mini")));
        QVERIFY(lines.contains(QLatin1String("Terminal=false")));
        QVERIFY(lines.contains(QLatin1String("X-GNOME-Autostart-enabled=true")));
        QVERIFY(!text.contains(QLatin1String("Icon=")));
        QCOMPARE(lines.filter(QLatin1String("Exec")).size(), 1);
    }

    void quoting_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("command");
        QTest::addColumn<QString>("execLine");
        QTest::newRow("plain") << "/usr/bin/quillora"
                               << "/usr/bin/quillora mini"
                               << "Exec=/usr/bin/quillora mini";
        QTest::newRow("blanks") << "/opt/My Apps/quillora"
                                << "\"/opt/My Apps/quillora\" mini"
                                << "Exec=\"/opt/My Apps/quillora\" mini";
        QTest::newRow("double quote") << "/opt/a\"b/quillora"
                                      << "\"/opt/a\\\"b/quillora\" mini"
                                      << "Exec=\"/opt/a\\\\\"b/quillora\" mini";
        QTest::newRow("dollar and backtick") << "/opt/$HOME`x`/q"
                                             << "\"/opt/\\$HOME\\`x\\`/q\" mini"
                                             << "Exec=\"/opt/\\\\$HOME\\\\`x\\\\`/q\" mini";
        QTest::newRow("backslash") << "/opt/a\\b/q"
                                   << "\"/opt/a\\\\b/q\" mini"
                                   << "Exec=\"/opt/a\\\\\\\\b/q\" mini";
        QTest::newRow("single quote only") << "/opt/it's/q"
                                           << "\"/opt/it's/q\" mini"
                                           << "Exec=\"/opt/it's/q\" mini";
        QTest::newRow("percent") << "/opt/100%/q"
                                 << "/opt/100%%/q mini"
                                 << "Exec=/opt/100%%/q mini";
    }

    void quoting()
    {
        QFETCH(QString, path);
        QFETCH(QString, command);
        QFETCH(QString, execLine);
        QCOMPARE(startupCommand(path), command);
        QVERIFY2(autostartEntryText(path).split(QLatin1Char('\n')).contains(execLine),
                 qPrintable(autostartEntryText(path)));
        // The written file reads back as the same command.
        QVERIFY(SetAutoRun(true, path));
        QVERIFY(isAutoRunRegistered(path));
    }

    void relativePathBecomesAbsolute()
    {
        const QString command = startupCommand(QStringLiteral("quillora"));
        QCOMPARE(command, QDir::currentPath() + QLatin1String("/quillora mini"));
    }

    void exactComparison()
    {
        const QString path = QStringLiteral("/opt/Quillora/quillora");
        QVERIFY(!isAutoRunRegistered(path));
        QVERIFY(SetAutoRun(true, path));
        QVERIFY(QFile::exists(entryPath()));
        QVERIFY(isAutoRunRegistered(path));
        QVERIFY(!isAutoRunRegistered(QStringLiteral("/opt/quillora/quillora")));
        QVERIFY(!isAutoRunRegistered(QStringLiteral("/usr/local/bin/quillora")));
        QVERIFY(!isAutoRunRegistered(QStringLiteral("/opt/Quillora/quillora2")));
    }

    void storedValueDifferingInCase()
    {
        const QString path = QStringLiteral("/opt/quillora/quillora");
        QVERIFY(SetAutoRun(true, path));
        QByteArray bytes = test::readFile(entryPath());
        bytes.replace("Exec=/opt/quillora/quillora mini", "Exec=/opt/quillora/quillora MINI");
        QVERIFY(test::writeFile(entryPath(), bytes));
        QVERIFY(!isAutoRunRegistered(path));
        // Blanks around '=' and an escaped blank are the same value to a desktop entry reader.
        bytes.replace("Exec=/opt/quillora/quillora MINI", "Exec = /opt/quillora/quillora\\smini");
        QVERIFY(test::writeFile(entryPath(), bytes));
        QVERIFY(isAutoRunRegistered(path));
    }

    void execOutsideTheEntryGroupIsIgnored()
    {
        const QString path = QStringLiteral("/usr/bin/quillora");
        QVERIFY(test::writeFile(entryPath(), "[Desktop Action x]\nExec=/usr/bin/quillora mini\n"
                                             "[Desktop Entry]\nType=Application\nName=Quillora\n"));
        QVERIFY(!isAutoRunRegistered(path));
    }

    void validatorAcceptsTheFile_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("plain") << "/usr/bin/quillora";
        QTest::newRow("reserved characters") << "/home/ann/My \"Tools\" $1 `x` \\ 50%/quillora";
    }

    void validatorAcceptsTheFile()
    {
        QFETCH(QString, path);
        QVERIFY(SetAutoRun(true, path));
        const test::CommandResult r =
            test::runCommand(QStringLiteral("desktop-file-validate"), {entryPath()});
        QVERIFY2(r.started, "desktop-file-validate is missing");
        QVERIFY2(r.exitCode == 0 && r.out.trimmed().isEmpty(), r.out.constData());
    }

    void switchingOff()
    {
        const QString path = QStringLiteral("/usr/bin/quillora");
        QVERIFY(SetAutoRun(false, path));
        QVERIFY(SetAutoRun(false, path));
        QVERIFY(!QFile::exists(entryPath()));
        QVERIFY(SetAutoRun(true, path));
        QVERIFY(SetAutoRun(true, path));
        QVERIFY(isAutoRunRegistered(path));
        QVERIFY(SetAutoRun(false, path));
        QVERIFY(!QFile::exists(entryPath()));
        QVERIFY(!isAutoRunRegistered(path));
    }

    void creatingTheFolder()
    {
        QDir(m_config.path()).removeRecursively();
        QVERIFY(!QDir(m_config.path()).exists());
        QVERIFY(SetAutoRun(true, QStringLiteral("/usr/bin/quillora")));
        QVERIFY(isAutoRunRegistered(QStringLiteral("/usr/bin/quillora")));
    }
};

QTEST_GUILESS_MAIN(AutoStartTest)
#include "test_autostart.moc"
