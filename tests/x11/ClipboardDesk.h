#pragma once

#include "TestSupport.h"
#include "WindowRig.h"
#include "app/StringTable.h"
#include "desktop/ClipboardOffer.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QPlainTextEdit>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>
#include <QUrlQuery>
#include <QWindow>
#include <algorithm>
#include <memory>

namespace quillora::test
{

// A real main window watching the clipboard (detection, target French, both panes, monitoring on, caching
// on), translating through an in-process stand-in service.
class ClipboardDesk
{
public:
    explicit ClipboardDesk(bool autoCopy = false, bool hotKey = false)
        : m_rig({{"Options", "0|19|1|1|15|1|1"}, {"AutoCopy", autoCopy ? "True" : "False"}})
    {
        FormMianDeps deps = m_rig.deps(true);
        deps.registerHotKey = hotKey;
        m_rig.open(deps);
    }

    FormMian& window() { return *m_rig.window; }
    StandinService& service() { return m_rig.service; }
    QString programPath() const { return m_rig.programPath(); }
    int translationRequests() const { return m_rig.service.count("POST", "/"); }
    QString lastRequestText() const
    {
        const auto& requests = m_rig.service.requests();
        return QUrlQuery(QString::fromUtf8(requests.value(requests.size() - 1).body))
            .queryItemValue("text", QUrl::FullyDecoded);
    }

private:
    WindowRig m_rig;
};

// xclip, or wl-copy and wl-paste, standing in for other programs; each copy serves the clipboard until
// it is ended.
class OtherPrograms
{
public:
    explicit OtherPrograms(bool wayland) : m_wayland(wayland) {}
    ~OtherPrograms() { endAll(); }
    void copy(const QByteArray& data, const QString& type = {})
    {
        auto& process = m_running.emplace_back(std::make_unique<QProcess>());
        if (m_wayland)
            process->start("wl-copy",
                           {"--foreground", "--type", type.isEmpty() ? "text/plain;charset=utf-8" : type});
        else
            process->start(
                "xclip", {"-selection", "clipboard", "-quiet", "-t", type.isEmpty() ? "UTF8_STRING" : type});
        process->waitForStarted();
        process->write(data);
        process->closeWriteChannel();
    }
    // Whether the owner programs of tests/owners can run here.
    bool ownersRun() const
    {
        return QProcess::execute("/usr/bin/python3", {"-c", m_wayland ? "import socket" : "import Xlib"}) ==
               0;
    }
    // Starts an owner program serving one kind of offer from offers.py; true once it owns the clipboard.
    bool own(const QString& kind)
    {
        const QString script = qEnvironmentVariable("QUILLORA_SOURCE_DIR") + "/tests/owners/" +
                               (m_wayland ? "wayland_owner.py" : "x11_owner.py");
        auto& process = m_running.emplace_back(std::make_unique<QProcess>());
        process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process->start("/usr/bin/python3", {script, kind});
        return QTest::qWaitFor(
                   [&] { return process->canReadLine() || process->state() == QProcess::NotRunning; },
                   5000) &&
               process->readLine() == "ready\n";
    }
    void endAll()
    {
        for (auto& process : m_running) {
            process->kill();
            process->waitForFinished(2000);
        }
        m_running.clear();
    }
    // What another program reads now, or the offered types; the event loop runs meanwhile so this
    // program can answer.
    QString read(bool listTypes = false) const
    {
        const QStringList xclip{"-o", "-selection", "clipboard"};
        return QString::fromUtf8(
            (m_wayland
                 ? runCommand("wl-paste", {listTypes ? "--list-types" : "--no-newline"}, {}, 5000)
                 : runCommand("xclip", listTypes ? xclip + QStringList{"-t", "TARGETS"} : xclip, {}, 5000))
                .out);
    }

private:
    bool m_wayland;
    std::vector<std::unique_ptr<QProcess>> m_running;
};

// The cases both desktops share.

// A picture alone is not sent; the text copied next is, once, and its auto-copied translation does not come
// back as a copy. Another program copying the very same text is a new copy.
inline void autoCopyDoesNotFeedBack(OtherPrograms& other)
{
    ClipboardDesk desk(/*autoCopy*/ true);
    other.copy("\x89PNG\r\n\x1a\n", "image/png");
    QTRY_VERIFY(other.read(true).contains("image/png"));
    QTest::qWait(800);
    other.copy("hello");
    QTRY_COMPARE(other.read(), "bonjour");
    QCOMPARE(box(desk.window(), "sourceBox")->toPlainText(), "hello");
    QTest::qWait(1500);
    QCOMPARE(desk.translationRequests(), 1);
    other.copy("bonjour");
    QTRY_COMPARE(other.read(), "BONJOUR");
    QCOMPARE(desk.translationRequests(), 2);
    QCOMPARE(desk.lastRequestText(), "bonjour");
}

// The translation waits in the window's own event loop: a timer in it makes ten copies, started by the
// first request; only the last is translated next.
inline void copiesDuringASlowTranslation(OtherPrograms& other)
{
    ClipboardDesk desk;
    desk.service().setDelayMs(1500);
    QTimer series;
    int started = 0;
    QObject::connect(&series, &QTimer::timeout, &series, [&] {
        other.copy(QString("copy %1").arg(started++).toUtf8());
        if (started == 10)
            series.stop();
    });
    QObject::connect(&desk.service(), &StandinService::requestReceived, &series, [&] {
        if (desk.translationRequests() == 1)
            series.start(60);
    });
    other.copy("first");
    QTRY_COMPARE_WITH_TIMEOUT(desk.translationRequests(), 2, 15000);
    QCOMPARE(desk.lastRequestText(), "copy 9");
    QTRY_COMPARE_WITH_TIMEOUT(box(desk.window(), "resultBox")->toPlainText(), "COPY 9", 10000);
    QTest::qWait(2000);
    QCOMPARE(desk.translationRequests(), 2);
}

// Paste (the button, the keys, the middle button) on an empty clipboard (no owner), offers of another
// program's that change nothing and stay offered (the owner keeps the clipboard), and text with a picture,
// which is text. With auto-copy on, so that a copy taken by mistake would also replace the owner's clipboard.
inline void offersFollowOneRule(OtherPrograms& other)
{
    if (!other.ownersRun())
        QSKIP("the owner programs need /usr/bin/python3 with python3-xlib");
    for (const auto& [kind, keptType] : std::initializer_list<std::pair<const char*, const char*>>{
             {nullptr, nullptr},
             {"secret", ClipboardOffer::kSecretHintType},
             {"files", "text/uri-list"},
             {"picture", nullptr}}) {
        ClipboardDesk desk(/*autoCopy*/ true);
        QPlainTextEdit* source = box(desk.window(), "sourceBox");
        source->setPlainText("typed");
        source->moveCursor(QTextCursor::End);
        QVERIFY2(!kind || other.own(kind), kind);
        desk.window().jcbuttonClick(4);
        QTest::keySequence(source, QKeySequence::Paste);
        QTest::mouseClick(source->viewport(), Qt::MiddleButton);
        const bool text = kind && !keptType;
        QTRY_COMPARE(desk.lastRequestText(), text ? "cells" : "");
        QTest::qWait(1000);
        QCOMPARE(desk.translationRequests(), text ? 1 : 0);
        if (!text)
            QCOMPARE(source->toPlainText(), "typed");
        if (keptType)
            QVERIFY2(other.read(true).contains(keptType), kind);
        other.endAll();
    }
}

// The longest time a window could not answer: on X11 the longest round trip of _NET_WM_PING sent from
// another process (quillora-ping-probe), so that the window's process cannot vouch for itself; on Wayland,
// where no other client may ping it, the longest gap between the ticks of a 10 ms timer in the window's
// own event loop, less the interval.
class PingProbe
{
public:
    struct Result {
        int sent = 0;
        int answered = 0;
        double maxRoundTripMs = -1; // -1 when the probe gave no result
    };

    PingProbe()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.callOnTimeout(&m_timer, [this] { tick(); });
    }
    ~PingProbe() { m_process.kill(), m_process.waitForFinished(); }

    // Starts pinging and returns once the probe listens for answers.
    bool start(WId window)
    {
        raiseOwnPriority();
        if (QGuiApplication::platformName() == "wayland") {
            m_ticks = {0, 0, 0};
            m_clock.start();
            m_timer.start(10);
            return true;
        }
        m_process.start(qEnvironmentVariable("QUILLORA_BUILD_DIR") + "/tests/quillora-ping-probe",
                        {QString::number(window)});
        return m_process.waitForReadyRead(10000) && m_process.readLine().trimmed() == "ready";
    }

    // A stall up to this very call counts too.
    Result stop()
    {
        if (m_timer.isActive()) {
            tick();
            m_timer.stop();
            return m_ticks;
        }
        m_process.terminate();
        m_process.waitForFinished(10000);
        static const QRegularExpression said("sent (\\d+) answered (\\d+) max_ms ([0-9.]+)");
        const QRegularExpressionMatch m = said.match(QString::fromLatin1(m_process.readAllStandardOutput()));
        return m.hasMatch() ? Result{m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toDouble()}
                            : Result{};
    }

private:
    void tick()
    {
        m_ticks.maxRoundTripMs = std::max(m_ticks.maxRoundTripMs, double(m_clock.restart() - 10));
        ++m_ticks.sent, ++m_ticks.answered;
    }
    QProcess m_process;
    QTimer m_timer;
    QElapsedTimer m_clock;
    Result m_ticks;
};

// 0 when it cannot be read.
inline qint64 peakResidentKiB()
{
    static const QRegularExpression hwm("VmHWM:\\s*(\\d+)");
    return hwm.match(QString::fromLatin1(readFile("/proc/self/status"))).captured(1).toLongLong();
}

// An owner that never answers and one that sends 200 MB: while either holds the clipboard, through the
// watcher's read and a Paste, the window answers in time and nothing is sent (the peak memory of
// this process included); the flood is named in the status line.
inline void hostileOwnersLeaveTheWindowAnswering(OtherPrograms& other)
{
    if (!other.ownersRun())
        QSKIP("the owner programs need /usr/bin/python3 with python3-xlib");
    for (const char* kind : {"stall", "flood"}) {
        PingProbe probe;
        ClipboardDesk desk;
        FormMian& window = desk.window();
        QVERIFY(shownOnScreen(window));
        box(window, "sourceBox")->setPlainText("typed");
        QVERIFY(probe.start(window.winId()));
        const bool owned = other.own(kind);
        window.jcbuttonClick(4);
        // Nor may the box's context menu wait for the owner.
        QWidget* viewport = box(window, "sourceBox")->viewport();
        QContextMenuEvent menuEvent(QContextMenuEvent::Mouse, {5, 5}, viewport->mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(viewport, &menuEvent);
        QTest::qWait(ClipboardOffer::kTimeoutMs + 1000);
        const PingProbe::Result answers = probe.stop();
        QVERIFY(QApplication::activePopupWidget());
        QApplication::activePopupWidget()->close();
        QVERIFY2(owned, kind);
        QVERIFY2(answers.sent > 0 && answers.maxRoundTripMs < kAnswerLimitMs,
                 qPrintable(QString("%1: %2 ms").arg(kind).arg(answers.maxRoundTripMs)));
        QCOMPARE(desk.translationRequests(), 0);
        QCOMPARE(box(window, "sourceBox")->toPlainText(), "typed");
        const qint64 peakKiB = peakResidentKiB();
        QVERIFY2(peakKiB > 0 && peakKiB < 300 * 1024, qPrintable(QString::number(peakKiB)));
        if (QByteArray(kind) == "flood")
            QCOMPARE(window.statusMessage(),
                     uiText(window.interfaceLanguage(), MsgClipboardTooLarge).arg(ClipboardOffer::kMaxKiB));
        other.endAll();
    }
}

} // namespace quillora::test
