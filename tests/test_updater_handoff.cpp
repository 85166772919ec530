#include "TestSupport.h"
#include "standin/MakerSite.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>

using namespace quillora;
using namespace quillora::test;
using namespace Qt::StringLiterals;

namespace
{

// "pid arguments" of each process running the executable at `path`.
QStringList runningAt(const QString& path)
{
    QStringList found;
    for (const QString& pid : QDir(u"/proc"_s).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        if (QFileInfo(u"/proc/"_s + pid + u"/exe"_s).symLinkTarget() == path)
            found << pid + u' ' +
                         QString::fromUtf8(readFile(u"/proc/"_s + pid + u"/cmdline"_s))
                             .section(QChar(0), 1, -2);
    return found;
}

} // namespace

// The real updater, as the program writes it, hands over to a real program in a temporary folder.
class UpdaterHandoffTest : public QObject
{
    Q_OBJECT
    QString m_build = qEnvironmentVariable("QUILLORA_BUILD_DIR");

private Q_SLOTS:
    void handoff_data()
    {
        QTest::addColumn<QString>("digest"); // "right", "wrong" or "" for none
        QTest::addColumn<bool>("replaced");
        QTest::newRow("digest matches") << u"right"_s << true;
        QTest::newRow("wrong digest") << u"wrong"_s << false;
        QTest::newRow("no digest") << QString() << false;
        QTest::newRow("download too slow") << u"right"_s << false;
    }
    void handoff()
    {
        QFETCH(QString, digest);
        QFETCH(bool, replaced);
        QTemporaryDir dir;
        const QString program = dir.filePath(u"quillora"_s);
        const auto install = [](const QString& path, const QByteArray& bytes) {
            return writeFile(path, bytes) &&
                   QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        };
        const QByteArray old = readFile(m_build + u"/src/quillora"_s);
        // The "browser" and the "new version" write down how they were started.
        const QByteArray recorder =
            "#!/bin/sh\necho \"$0 $*\" >> " + QFile::encodeName(dir.filePath(u"started"_s)) + "\n";
        QVERIFY(!old.isEmpty() && install(program, old) &&
                install(dir.filePath(u"bin/xdg-open"_s), recorder) &&
                install(dir.filePath(u"Update.exe"_s), readFile(m_build + u"/src/quillora-updater"_s)));

        StandinService service;
        QVERIFY(service.listen());
        MakerSite site(service);
        const QString download = site.setDownload(u"quillora-2.1.92"_s, recorder);
        site.setUpdate(u"2.1.92"_s, download,
                       digest.isEmpty() ? QByteArray()
                                        : MakerSite::sha256Hex(digest == u"right" ? recorder : "other"));

        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(u"QUILLORA_SITE_URL"_s, site.url());
        env.insert(u"QUILLORA_SERVICE_URL"_s, u"http://127.0.0.1:9"_s);
        env.insert(u"QUILLORA_API_URL"_s, u"http://127.0.0.1:9"_s);
        env.insert(u"PATH"_s, dir.filePath(u"bin"_s) + u':' + env.value(u"PATH"_s));
        env.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        // Every answer comes after 3 s; the whole download may take 1.
        const bool slow = QTest::currentDataTag() == QByteArray("download too slow");
        env.insert(u"QUILLORA_DOWNLOAD_MS"_s, slow ? u"1000"_s : u"30000"_s);
        service.setDelayMs(slow ? 3000 : 0);

        // The old program is still running when the updater starts: it waits for its end. The old
        // program's own update check goes elsewhere, so that only the updater's request is counted.
        QProcess running;
        QProcessEnvironment oldEnv = env;
        oldEnv.insert(u"QUILLORA_SITE_URL"_s, service.baseUrl() + u"/old-program"_s);
        running.setProcessEnvironment(oldEnv);
        running.start(program, {u"mini"_s});
        QTRY_VERIFY_WITH_TIMEOUT(!runningAt(program).isEmpty(), 20000);
        QProcess updater;
        updater.setProcessEnvironment(env);
        // Files, not pipes: what the updater starts outlives it and must be able to write.
        updater.setStandardOutputFile(QProcess::nullDevice());
        updater.setStandardErrorFile(dir.filePath(u"updater.log"_s));
        updater.start(dir.filePath(u"Update.exe"_s), {u"quillora"_s});
        QVERIFY(updater.waitForStarted());
        QTest::qWait(1000);
        QVERIFY2(running.state() == QProcess::Running, running.readAllStandardError().constData());
        QCOMPARE(site.requests(u"Update.txt"_s), 0);
        running.terminate();
        QTRY_VERIFY_WITH_TIMEOUT(running.state() == QProcess::NotRunning, 10000);
        QTRY_VERIFY_WITH_TIMEOUT(updater.state() == QProcess::NotRunning, 20000);
        QVERIFY2(updater.exitCode() == 0, readFile(dir.filePath(u"updater.log"_s)).constData());
        QCOMPARE(site.requests(u"Update.txt"_s), 1);
        QCOMPARE(site.requests(u"quillora-2.1.92"_s), digest.isEmpty() ? 0 : 1);

        QCOMPARE(readFile(program), replaced ? recorder : old);
        QVERIFY(QFileInfo(program).isExecutable());
        QCOMPARE(QDir(dir.path()).entryList({u".*"_s}, QDir::Files | QDir::Hidden),
                 QStringList()); // no part left
        QTRY_COMPARE_WITH_TIMEOUT(
            QString::fromUtf8(readFile(dir.filePath(u"started"_s))),
            replaced ? program + u" UP\n"_s : dir.filePath(u"bin/xdg-open "_s) + download + u'\n', 20000);
        if (replaced)
            return;
        // The old program comes back with "UP".
        QStringList again;
        QTRY_VERIFY_WITH_TIMEOUT((again = runningAt(program)).size() == 1, 20000);
        QCOMPARE(again.constFirst().section(u' ', 1), u"UP"_s);
        ::kill(pid_t(again.constFirst().section(u' ', 0, 0).toLongLong()), SIGTERM);
        QTRY_VERIFY_WITH_TIMEOUT(runningAt(program).isEmpty(), 10000);
    }
};

QTEST_GUILESS_MAIN(UpdaterHandoffTest)
#include "test_updater_handoff.moc"
