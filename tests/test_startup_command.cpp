#include "TestSupport.h"
#include "app/LocaleChoice.h"
#include "app/StartupCommand.h"
#include "desktop/AutoStart.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <array>

using namespace quillora;
using namespace Qt::StringLiterals;

// What the program starts with: its command line, the log-on entry that starts it with "mini", and the
// interface language the system locale asks for.
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
        const QList<std::tuple<QStringList, QString, bool, bool>> rows{{{"UP"}, "UP", true, false},
                                                                       {{"mini"}, "mini", false, true},
                                                                       {{"MINI"}, "MINI", false, false},
                                                                       {{"", "mini"}, " mini", false, false}};
        for (const auto& [args, line, up, mini] : rows) {
            const StartupCommand command(args);
            QCOMPARE(std::tuple(command.line(), command.keepsUpdater(), command.startsHidden()),
                     std::tuple(line, up, mini));
        }
    }

    // A folder of that name is not the updater. That the file goes, or stays for "UP", shows with the real
    // program.
    void leftoverUpdaterIsAFile()
    {
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

    // locale.conf, then default/locale (null: no such file), then the environment; what is chosen: the
    // locale, its language_TERRITORY and the interface language for it.
    void systemLocaleComesFromTheRightPlace()
    {
        const QString es = u"LANG=es_ES"_s, none;
        const QList<std::array<QString, 4>> rows{
            {u"LANG=fr_FR"_s, u"LANG=th_TH"_s, es, u"fr_FR fr_FR 7"_s},
            {none, u"LANG=th_TH.UTF-8"_s, es, u"th_TH.UTF-8 th_TH 4"_s},
            {u"#\nLC_TIME=de_DE"_s, u"# update-locale"_s, es, u"es_ES es_ES 5"_s},
            {none, none, u"LC_MESSAGES=sk LC_ALL=zh_SG@stroke LANG=fr"_s, u"zh_SG@stroke zh_SG 3"_s},
            {none, none, u"LC_MESSAGES=sk LC_ALL= LANG=fr"_s, u"sk sk 6"_s},
            {none, none, none, u"C C 1"_s},
            {u"LANG=\"sr_RS@latin\""_s, none, none, u"sr_RS@latin sr_RS 1"_s},
            {none, u"export LANG='es_MX.UTF-8'"_s, es, u"es_MX.UTF-8 es_MX 1"_s},
            {u"LANG=de\nLANG=ES_pr\nLANGUAGE=fr"_s, none, es, u"ES_pr es_PR 5"_s},
            {u"LANG="_s, u"LANG=th_TH"_s, es, u"th_TH th_TH 4"_s}};
        for (const auto& [conf, etcDefault, environment, chosen] : rows) {
            QTemporaryDir dir;
            LocaleSources s{dir.filePath(u"locale.conf"_s), dir.filePath(u"locale"_s), {}};
            QVERIFY(conf.isNull() || test::writeFile(s.localeConf, (conf + u'\n').toUtf8()));
            QVERIFY(etcDefault.isNull() || test::writeFile(s.defaultLocale, (etcDefault + u'\n').toUtf8()));
            for (const QString& pair : environment.split(u' ', Qt::SkipEmptyParts))
                s.environment.insert(pair.section(u'=', 0, 0), pair.section(u'=', 1));
            QCOMPARE(QStringList({systemLocaleSpec(s), systemLocaleName(s), interfaceLanguageFor({}, s)})
                         .join(u' '),
                     chosen);
            // A stored language is taken as it is when it is one of the seven, else it is English.
            QCOMPARE(interfaceLanguageFor(u"6"_s, s) + interfaceLanguageFor(u"9"_s, s) +
                         interfaceLanguageFor(u" 2"_s, s),
                     u"611"_s);
        }
    }
};

QTEST_GUILESS_MAIN(StartupCommandTest)
#include "test_startup_command.moc"
