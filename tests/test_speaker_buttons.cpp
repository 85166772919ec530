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
    if (mapped.isEmpty())
        return {"unreadable /proc/self/maps"};
    QStringList found;
    for (const QString& library : kSoundLibraries)
        if (mapped.contains('/' + library.toUtf8()))
            found << library;
    return mapped.isEmpty() ? QStringList{QStringLiteral("unreadable maps")} : found;
}

// Pixels of an edge, neither clear nor solid: drawn at the pixel ratio asked for, a picture has twice
// as many at ratio 2 (its edges are twice as long); blown up from a smaller one, four times as many.
int edgePixels(const QIcon& icon, const QSize& size, qreal ratio)
{
    const QImage image = icon.pixmap(size, ratio).toImage().convertToFormat(QImage::Format_ARGB32);
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int alpha = qAlpha(image.pixel(x, y));
            count += alpha > 0 && alpha < 255;
        }
    }
    return count;
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
        const QIcon icon = speaker(area, 0)->icon();
        const QSize size = speaker(area, 0)->iconSize();
        // Sharp at a pixel ratio of 2.
        QCOMPARE(icon.pixmap(size, 2).toImage().size(), size * 2);
        QVERIFY(edgePixels(icon, size, 2) < 3 * edgePixels(icon, size, 1));
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
