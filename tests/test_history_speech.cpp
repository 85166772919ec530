#include "TestSupport.h"
#include "translate/HistoryRing.h"
#include "translate/LanguageCatalogue.h"
#include "translate/SpeechPage.h"
#include "translate/TempFolder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <sys/stat.h>
#include <unistd.h>

using namespace quillora;

namespace
{

int modeOf(const QString& path)
{
    struct stat info {
    };
    if (::lstat(QFile::encodeName(path).constData(), &info) != 0)
        return -1;
    return int(info.st_mode & 07777);
}

HistorySlot slotNamed(const QString& name, int row)
{
    HistorySlot s;
    s.source = name;
    s.translation = name + QStringLiteral(" translated");
    s.romanization = name + QStringLiteral(" roman");
    s.dictionary = name + QStringLiteral(" dict");
    s.targetRow = row;
    s.sourceRow = row + 2;
    return s;
}

} // namespace

class HistorySpeechTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void speechEncode_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("encoded");
        QTest::newRow("ASCII unescaped") << QStringLiteral("a b&\"%=\x7f") << QStringLiteral("a b&\"%=\x7f");
        QTest::newRow("U+0080") << QString(QChar(0x80)) << QStringLiteral("%C2%80");
        QTest::newRow("U+00E9") << QStringLiteral("é") << QStringLiteral("%C3%A9");
        QTest::newRow("U+07FF") << QString(QChar(0x7FF)) << QStringLiteral("%DF%BF");
        QTest::newRow("U+0800 two bytes") << QString(QChar(0x800)) << QStringLiteral("%E0%80");
        QTest::newRow("U+0915 two bytes") << QString(QChar(0x915)) << QStringLiteral("%E4%95");
        QTest::newRow("U+0FFF two bytes") << QString(QChar(0xFFF)) << QStringLiteral("%FF%BF");
        QTest::newRow("U+1000") << QString(QChar(0x1000)) << QStringLiteral("%E1%80%80");
        QTest::newRow("U+4E2D") << QStringLiteral("中") << QStringLiteral("%E4%B8%AD");
        QTest::newRow("U+FFFF") << QString(QChar(0xFFFF)) << QStringLiteral("%EF%BF%BF");
        QTest::newRow("surrogate pair")
            << QStringLiteral("\U0001F600") << QStringLiteral("%ED%A0%BD%ED%B8%80");
        QTest::newRow("mixed") << QStringLiteral("Aé中") << QStringLiteral("A%C3%A9%E4%B8%AD");
    }

    void speechEncode()
    {
        QFETCH(QString, text);
        QFETCH(QString, encoded);
        QCOMPARE(SpeechEncode(text), encoded);
    }

    void speechLanguages()
    {
        int inCatalogue = 0;
        for (int i = 0; i < kLanguageCount; ++i)
            inCatalogue += isSpeechLanguage(LanguageCode(i)) ? 1 : 0;
        // 42 codes, two of which ("ta", "zh") the catalogue does not hold.
        QCOMPARE(inCatalogue, 40);
        QVERIFY(isSpeechLanguage(QStringLiteral("ta")));
        QVERIFY(isSpeechLanguage(QStringLiteral("zh")));
        QVERIFY(isSpeechLanguage(QStringLiteral("zh-TW")));
        QVERIFY(!isSpeechLanguage(QString()));
        QVERIFY(!isSpeechLanguage(QStringLiteral("th")));
        QVERIFY(!isSpeechLanguage(QStringLiteral("fa")));
        QVERIFY(!isSpeechLanguage(QStringLiteral("EN")));
        QVERIFY(!isSpeechLanguage(QStringLiteral("zh-cn")));
    }

    void pageText()
    {
        QCOMPARE(
            speechPageText(QStringLiteral("Ça \"va\""), QStringLiteral("fr"),
                           QStringLiteral("http://127.0.0.1:9")),
            QStringLiteral(
                "<html><head><base target='_blank' href='http://127.0.0.1:9'></head><body scroll=no "
                "leftmargin=0   topmargin=0   style=border-width=0;border-style:none><object "
                "classid=\"clsid:D27CDB6E-AE6D-11cf-96B8-444553540000\" "
                "codebase=\"http://fpdownload.macromedia.com/pub/shockwave/cabs/flash/"
                "swflash.cab#version=9,0,0,0\" "
                "width=\"18\" height=\"18\" id=\"input_tts_flash\"><param "
                "value=\"http://127.0.0.1:9/translate/static/player.swf\" name=\"movie\"/><param "
                "value=\"sound_name=translate_tts%3Fq%3D%C3%87a "
                "\"va\"%26tl%3Dfr&sound_name_cb=_inputTTSSoundFile\" "
                "name=\"flashvars\"/><param value=\"transparent\" name=\"wmode\"/><param value=\"always\" "
                "name=\"allowScriptAccess\"/></object></body></html>\r\n"));
    }

    void buildWritesAndDeletesPages()
    {
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const QString base = QStringLiteral("http://127.0.0.1:9");
        const QString page0 = speechPagePath(dir.path(), 0);
        const QString page1 = speechPagePath(dir.path() + QLatin1Char('/'), 1);
        QCOMPARE(page0, dir.path() + QStringLiteral("/soun(0).tmp"));
        QCOMPARE(page1, dir.path() + QStringLiteral("/soun(1).tmp"));

        QVERIFY(test::writeFile(page0, QByteArray(5000, 'x')));
        QVERIFY(BuildSpeechPage(QStringLiteral("Hallo"), QStringLiteral("de"), 0, dir.path(), base));
        QCOMPARE(test::readFile(page0),
                 speechPageText(QStringLiteral("Hallo"), QStringLiteral("de"), base).toUtf8());
        QVERIFY(BuildSpeechPage(QStringLiteral("Hi"), QStringLiteral("en"), 1, dir.path(), base));
        QVERIFY(test::readFile(page1).contains("q%3DHi%26tl%3Den&"));

        QVERIFY(!BuildSpeechPage(QStringLiteral("Hallo"), QStringLiteral("th"), 0, dir.path(), base));
        QVERIFY(!QFile::exists(page0));
        QVERIFY(!BuildSpeechPage(QStringLiteral("Hi"), QString(), 1, dir.path(), base));
        QVERIFY(!QFile::exists(page1));
    }

    void audioUrl()
    {
        QCOMPARE(
            speechAudioUrl(QStringLiteral("http://127.0.0.1:9"), QStringLiteral("a b&é"),
                           QStringLiteral("zh-CN"))
                .toEncoded(),
            QByteArray("http://127.0.0.1:9/translate_tts?ie=UTF-8&client=tw-ob&tl=zh-CN&q=a%20b%26%C3%A9"));
    }

    void ringWrapsAndWalksBack()
    {
        QTemporaryDir dir;
        HistoryRing ring(dir.path());
        QCOMPARE(ring.WritePos(), 0);
        QCOMPARE(ring.ShowPos(), 0);
        // Back before anything was stored shows the empty last slot.
        QCOMPARE(ring.GoBack().source, QString());
        QCOMPARE(ring.ShowPos(), 2);

        const QStringList names{QStringLiteral("one"), QStringLiteral("two"), QStringLiteral("three"),
                                QStringLiteral("four")};
        for (int i = 0; i < names.size(); ++i) {
            QCOMPARE(ring.store(slotNamed(names.at(i), i), QString(), QString()), i % 3);
            QCOMPARE(ring.ShowPos(), i % 3);
            QCOMPARE(ring.WritePos(), (i + 1) % 3);
        }
        QCOMPARE(ring.slot(0).source, QStringLiteral("four"));
        QCOMPARE(ring.slot(0).dictionary, QStringLiteral("four dict"));
        QCOMPARE(ring.slot(0).targetRow, 3);
        QCOMPARE(ring.slot(0).sourceRow, 5);
        QCOMPARE(ring.slot(1).source, QStringLiteral("two"));

        QCOMPARE(ring.GoBack().source, QStringLiteral("three"));
        QCOMPARE(ring.GoBack().source, QStringLiteral("two"));
        QCOMPARE(ring.GoBack().source, QStringLiteral("four"));
        QCOMPARE(ring.ShowPos(), 0);
        QCOMPARE(ring.GoBack().source, QStringLiteral("three"));
        QCOMPARE(ring.ShowPos(), 2);
        // Walking back never moves where the next translation goes.
        QCOMPARE(ring.WritePos(), 1);
    }

    void ringCopiesAndDeletesSlotFiles()
    {
        QTemporaryDir dir;
        HistoryRing ring(dir.path());
        QCOMPARE(ring.slotFile(2, 1), dir.path() + QStringLiteral("/soun21.tmp"));

        const QString page0 = dir.filePath(QStringLiteral("soun(0).tmp"));
        const QString page1 = dir.filePath(QStringLiteral("soun(1).tmp"));
        QVERIFY(test::writeFile(page0, "translation page"));
        QVERIFY(test::writeFile(page1, "source page"));

        HistorySlot claimed = slotNamed(QStringLiteral("a"), 0);
        claimed.translationSpeech = true;
        claimed.sourceSpeech = true;
        ring.store(claimed, page0, page1);
        QVERIFY(ring.slot(0).translationSpeech);
        QVERIFY(ring.slot(0).sourceSpeech);
        QCOMPARE(test::readFile(ring.slotFile(0, 0)), QByteArray("translation page"));
        QCOMPARE(test::readFile(ring.slotFile(0, 1)), QByteArray("source page"));

        // A later page replaces the slot file's content.
        QVERIFY(test::writeFile(page0, "newer"));
        ring.store(slotNamed(QStringLiteral("b"), 0), page0, QString());
        ring.store(slotNamed(QStringLiteral("c"), 0), QString(), QString());
        QCOMPARE(test::readFile(ring.slotFile(1, 0)), QByteArray("newer"));
        QVERIFY(!QFile::exists(ring.slotFile(1, 1)));
        QVERIFY(!ring.slot(1).sourceSpeech);

        // Reusing slot 0 without pages deletes both of its old files; a missing page counts as none.
        ring.store(claimed, QString(), dir.filePath(QStringLiteral("gone.tmp")));
        QVERIFY(!QFile::exists(ring.slotFile(0, 0)));
        QVERIFY(!QFile::exists(ring.slotFile(0, 1)));
        QVERIFY(!ring.slot(0).translationSpeech);
        QVERIFY(!ring.slot(0).sourceSpeech);
        QVERIFY(QFile::exists(page0));
    }

    void privateFolderIsMadeAndTightened()
    {
        QTemporaryDir dir;
        const QString fresh = dir.filePath(QStringLiteral("quillora"));
        QCOMPARE(privateFolderAt(fresh), fresh);
        QVERIFY(QFileInfo(fresh).isDir());
        QCOMPARE(modeOf(fresh), 0700);

        const QString loose = dir.filePath(QStringLiteral("loose"));
        QVERIFY(QDir().mkdir(loose));
        QVERIFY(::chmod(QFile::encodeName(loose).constData(), 0755) == 0);
        QCOMPARE(privateFolderAt(loose), loose);
        QCOMPARE(modeOf(loose), 0700);
    }

    void foreignFolderIsRefused()
    {
        QTemporaryDir dir;
        const QString own = dir.filePath(QStringLiteral("own"));
        QVERIFY(QDir().mkdir(own));
        const QString link = dir.filePath(QStringLiteral("link"));
        QVERIFY(QFile::link(own, link));
        const QString plain = dir.filePath(QStringLiteral("plain"));
        QVERIFY(test::writeFile(plain, "x"));

        const QString instead = privateFolderAt(link);
        QVERIFY(instead != link);
        QVERIFY(!instead.startsWith(own));
        QVERIFY(QFileInfo(instead).isDir());
        QVERIFY(!QFileInfo(instead).isSymLink());
        QCOMPARE(modeOf(instead), 0700);
        QCOMPARE(QFileInfo(instead).ownerId(), ::getuid());
        // The fallback is made once and kept for the process.
        QCOMPARE(privateFolderAt(plain), instead);
        QCOMPARE(test::readFile(plain), QByteArray("x"));

        // A folder owned by someone else (root's /) is refused as well.
        if (::getuid() != 0)
            QCOMPARE(privateFolderAt(QStringLiteral("/")), instead);
    }

    void temporaryFolderFollowsEnvironment()
    {
        QTemporaryDir runtime;
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime.path()));
        QCOMPARE(temporaryFolder(), runtime.filePath(QStringLiteral("quillora")));
        QCOMPARE(modeOf(runtime.filePath(QStringLiteral("quillora"))), 0700);

        QTemporaryDir tmp;
        qunsetenv("XDG_RUNTIME_DIR");
        qputenv("TMPDIR", QFile::encodeName(tmp.path()));
        const QString expected =
            QDir::tempPath() + QStringLiteral("/quillora-") + QString::number(::getuid());
        QVERIFY(expected.startsWith(tmp.path()));
        QCOMPARE(temporaryFolder(), expected);
        QVERIFY(QFileInfo(expected).isDir());
        qunsetenv("TMPDIR");
    }
};

QTEST_APPLESS_MAIN(HistorySpeechTest)
#include "test_history_speech.moc"
