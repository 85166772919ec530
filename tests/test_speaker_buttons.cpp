#include "TestSupport.h"
#include "desktop/SpeakerButtons.h"
#include "standin/StandinService.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

using namespace quillora;
using namespace quillora::test;

namespace
{

const QStringList kSoundLibraries{"libQt6Multimedia.so", "libpulse.so", "libgstreamer-1.0.so"};

// Which of the sound libraries this process has mapped.
QStringList mappedSoundLibraries()
{
    const QByteArray mapped = readFile("/proc/self/maps");
    QStringList found;
    for (const QString& library : kSoundLibraries)
        if (mapped.contains('/' + library.toUtf8()))
            found << library;
    return mapped.isEmpty() ? QStringList{"unreadable /proc/self/maps"} : found;
}

QToolButton* speaker(QWidget& area, int slot)
{
    return area.findChild<QToolButton*>(QString("WebBrowser2_%1").arg(slot));
}

} // namespace

class SpeakerButtonsTest : public QObject
{
    Q_OBJECT
private Q_SLOTS:
    // Runs before anything in this process has loaded the module.
    void withoutTheModuleAPressFailsAndLoadsNothing()
    {
        QTemporaryDir empty;
        QWidget area;
        auto* part = new SpeakerButtons(&area, "http://127.0.0.1:9", empty.path());
        area.show();
        QVERIFY(speaker(area, 0)->isHidden() && speaker(area, 1)->isHidden());
        QSignalSpy failed(part, &SpeakerButtons::speechFailed);
        part->showSpeaker(0, true, {"hello", "en"});
        QVERIFY(speaker(area, 0)->isVisible() && speaker(area, 1)->isHidden());
        // Drawn for the pixel ratio, so sharp at 2.
        const QSize size = speaker(area, 0)->iconSize();
        QCOMPARE(speaker(area, 0)->icon().pixmap(size, 2).toImage().size(), size * 2);
        speaker(area, 0)->click();
        QCOMPARE(failed.count(), 1);
        QCOMPARE(mappedSoundLibraries(), QStringList());
        part->showSpeaker(0, false, {});
        QVERIFY(speaker(area, 0)->isHidden());
    }

    void aPressLoadsThePlayerAndAsksTheServiceForTheText()
    {
        StandinService service;
        QVERIFY(service.listen());
        QWidget area;
        auto* part =
            new SpeakerButtons(&area, service.baseUrl(), qEnvironmentVariable("QUILLORA_BUILD_DIR") + "/src");
        QSignalSpy failed(part, &SpeakerButtons::speechFailed);
        part->showSpeaker(1, true, {"a b&é", "fr"});
        speaker(area, 1)->click();
        QCOMPARE(mappedSoundLibraries(), kSoundLibraries);
        if (failed.count() == 1)
            QSKIP("no audio decoder on this system");
        // The stand-in has no audio: its 404 is the player's error.
        QTRY_COMPARE_WITH_TIMEOUT(service.count("GET", "/translate_tts"), 1, 20000);
        const QUrlQuery asked = service.requests().constLast().query();
        QCOMPARE(asked.queryItemValue("q", QUrl::FullyDecoded), "a b&é");
        QCOMPARE(asked.queryItemValue("tl"), "fr");
        QTRY_VERIFY_WITH_TIMEOUT(failed.count() >= 1, 20000);
    }
};

QTEST_MAIN(SpeakerButtonsTest)
#include "test_speaker_buttons.moc"
