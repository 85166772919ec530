#include "desktop/SpeakerButtons.h"
#include "standin/StandinService.h"

#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

using namespace quillora;
using namespace quillora::test;

namespace
{

const QString kClosedPort = QStringLiteral("http://127.0.0.1:9");
const QStringList kSoundLibraries{QStringLiteral("libQt6Multimedia.so"), QStringLiteral("libpulse.so"),
                                  QStringLiteral("libgstreamer-1.0.so")};

// Which of the sound libraries this process has mapped.
QStringList mappedSoundLibraries()
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    const QByteArray mapped = maps.open(QIODevice::ReadOnly) ? maps.readAll() : QByteArray();
    QStringList found;
    for (const QString& library : kSoundLibraries)
        if (mapped.contains('/' + library.toUtf8()))
            found << library;
    return mapped.isEmpty() ? QStringList{QStringLiteral("unreadable maps")} : found;
}

QToolButton* speaker(QWidget& area, int slot)
{
    return area.findChild<QToolButton*>(QStringLiteral("WebBrowser2_%1").arg(slot));
}

} // namespace

class SpeakerButtonsTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    void placedAndHiddenUntilShown()
    {
        QWidget area;
        auto* part = new SpeakerButtons(&area, kClosedPort);
        QCOMPARE(speaker(area, 0)->geometry(), QRect(713, 188, 18, 18));
        QCOMPARE(speaker(area, 1)->geometry(), QRect(713, 0, 18, 18));
        part->showSpeaker(1, true, {});
        QVERIFY(speaker(area, 0)->isHidden() && !speaker(area, 1)->isHidden() &&
                !speaker(area, 1)->icon().isNull());
    }

    // Runs before anything in this process has loaded the module.
    void withoutTheModuleAPressFailsAndLoadsNothing()
    {
        QTemporaryDir empty;
        QWidget area;
        auto* part = new SpeakerButtons(&area, kClosedPort, empty.path());
        QSignalSpy failed(part, &SpeakerButtons::speechFailed);
        speaker(area, 0)->click();
        QCOMPARE(failed.count(), 1);
        QCOMPARE(mappedSoundLibraries(), QStringList());
    }

    void aPressLoadsThePlayerAndAsksTheServiceForTheText()
    {
        QCOMPARE(mappedSoundLibraries(), QStringList());
        StandinService service;
        QVERIFY(service.listen());
        QWidget area;
        auto* part =
            new SpeakerButtons(&area, service.baseUrl(), qEnvironmentVariable("QUILLORA_BUILD_DIR") + "/src");
        QSignalSpy failed(part, &SpeakerButtons::speechFailed);
        part->showSpeaker(1, true, {QStringLiteral("a b&é"), QStringLiteral("fr")});
        speaker(area, 1)->click();
        QCOMPARE(mappedSoundLibraries(), kSoundLibraries);
        if (failed.count() == 1)
            QSKIP("no audio decoder on this system");
        // The stand-in has no audio: its 404 is the player's error.
        QTRY_COMPARE_WITH_TIMEOUT(service.count("GET", QStringLiteral("/translate_tts")), 1, 20000);
        const QUrlQuery asked = service.requests().constLast().query();
        QCOMPARE(asked.queryItemValue(QStringLiteral("q"), QUrl::FullyDecoded), QStringLiteral("a b&é"));
        QCOMPARE(asked.queryItemValue(QStringLiteral("tl")), QStringLiteral("fr"));
        QTRY_VERIFY_WITH_TIMEOUT(failed.count() >= 1, 20000);
    }
};

QTEST_MAIN(SpeakerButtonsTest)
#include "test_speaker_buttons.moc"
