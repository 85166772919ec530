#include "TestSupport.h"
#include "translate/HistoryRing.h"
#include "translate/SpeechPage.h"
#include "translate/TempFolder.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <unistd.h>

using namespace quillora;
using namespace quillora::test;

namespace
{

// 0700 as Qt spells it.
const QFile::Permissions kOwnerOnly(0x7700);

HistorySlot slotNamed(const QString& name, bool speech = false)
{
    return {name, name + " translated", name + " roman", name + " dict", 3, 5, speech, speech};
}

} // namespace

class HistorySpeechTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void speechEncode()
    {
        // Below U+1000 a three-byte character loses its middle byte; surrogates are encoded one by one.
        const QString text = QString("a b&\"%=\x7f") + QChar(0x80) + "é" + QChar(0x7FF) + QChar(0x800) +
                             QChar(0x915) + QChar(0xFFF) + QChar(0x1000) + "中" + "\U0001F600";
        QCOMPARE(SpeechEncode(text),
                 QStringLiteral(
                     "a b&\"%=\x7f%C2%80%C3%A9%DF%BF%E0%80%E4%95%FF%BF%E1%80%80%E4%B8%AD%ED%A0%BD%ED%B8%80"));
    }

    void speechPages()
    {
        const QString base = "http://127.0.0.1:9";
        QTemporaryDir dir;
        const QString page0 = speechPagePath(dir.path(), 0), page1 = speechPagePath(dir.path() + '/', 1);
        QVERIFY(BuildSpeechPage("Hallo", "de", 0, dir.path(), base) &&
                BuildSpeechPage("Hi", "zh-TW", 1, dir.path(), base));
        QVERIFY(QFile::exists(page0)); // what a page says shows in the session's test
        // A language without speech deletes the slot's old page.
        QVERIFY(!BuildSpeechPage("Hallo", "th", 0, dir.path(), base));
        QVERIFY(!QFile::exists(page0) && QFile::exists(page1));
        // A page that cannot be written still shows its speaker.
        QVERIFY(BuildSpeechPage("Hallo", "de", 0, dir.filePath("missing/folder"), base));
    }

    // The flags follow the pages copied, not the slot; a slot used again without pages deletes its old
    // files, and a missing page counts as none. Walking back never moves the next write.
    void ringSlotsAndWalk()
    {
        QTemporaryDir dir;
        HistoryRing ring(dir.path());
        QCOMPARE(ring.GoBack().source, QString()); // the empty last slot
        const QString page = dir.filePath("soun(0).tmp");
        QVERIFY(writeFile(page, "translation page"));
        ring.store(slotNamed("one", true), page, QString());
        QCOMPARE(readFile(ring.slotFile(0, 0)), QByteArray("translation page"));
        QVERIFY(ring.slot(0).translationSpeech && !ring.slot(0).sourceSpeech &&
                !QFile::exists(ring.slotFile(0, 1)));
        for (const char* name : {"two", "three", "four"})
            ring.store(slotNamed(name, true), QString(), dir.filePath("gone.tmp"));
        QVERIFY(!QFile::exists(ring.slotFile(0, 0)) && !ring.slot(0).translationSpeech);
        QVERIFY(!ring.slot(0).sourceSpeech && QFile::exists(page));
        // A braced list is evaluated left to right.
        const QStringList walked{ring.GoBack().source, ring.GoBack().source, ring.GoBack().source,
                                 ring.GoBack().source};
        QCOMPARE(walked, QStringList({"three", "two", "four", "three"}));
        QCOMPARE(ring.WritePos(), 1);
    }

    void privateFolder()
    {
        QTemporaryDir dir, runtime;
        const QString loose = dir.filePath("loose"), link = dir.filePath("link"),
                      plain = dir.filePath("plain");
        QVERIFY(QDir().mkdir(loose) &&
                QFile::setPermissions(loose, kOwnerOnly | QFile::ReadOther | QFile::ExeOther));
        QCOMPARE(privateFolderAt(loose), loose);
        QCOMPARE(QFile::permissions(loose), kOwnerOnly);
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtime.path()));
        QCOMPARE(temporaryFolder(), runtime.filePath("quillora"));
        QCOMPARE(QFile::permissions(runtime.filePath("quillora")), kOwnerOnly);

        // A symlink, a plain file or someone else's folder is refused for one fallback, made once.
        QVERIFY(QFile::link(loose, link) && writeFile(plain, "x"));
        const QString instead = privateFolderAt(link);
        QVERIFY(!instead.startsWith(dir.path()) && QFileInfo(instead).isDir() &&
                !QFileInfo(instead).isSymLink());
        QCOMPARE(QFile::permissions(instead), kOwnerOnly);
        QCOMPARE(QFileInfo(instead).ownerId(), ::getuid());
        for (const QString& refused : {plain, ::getuid() != 0 ? QStringLiteral("/") : plain})
            QCOMPARE(privateFolderAt(refused), instead);
        QCOMPARE(readFile(plain), QByteArray("x"));
    }
};

QTEST_APPLESS_MAIN(HistorySpeechTest)
#include "test_history_speech.moc"
