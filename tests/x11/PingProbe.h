#pragma once

#include "TestSupport.h"

#include <QProcess>
#include <QRegularExpression>
#include <QWindow>

namespace quillora::test
{

// Pings an X11 window from another process (quillora-ping-probe) while the test drives it; the longest
// round trip is the longest time the window could not answer its window manager.
class PingProbe
{
public:
    struct Result {
        int sent = 0;
        int answered = 0;
        double maxRoundTripMs = -1; // -1 when the probe gave no result
    };

    ~PingProbe() { m_process.kill(), m_process.waitForFinished(); }

    // Starts pinging and returns once the probe listens for answers.
    bool start(WId window, int intervalMs = 20)
    {
        raiseOwnPriority();
        m_process.start(qEnvironmentVariable("QUILLORA_BUILD_DIR") + "/tests/quillora-ping-probe",
                        {QString::number(window), QString::number(intervalMs)});
        return m_process.waitForReadyRead(10000) && m_process.readLine().trimmed() == "ready";
    }

    Result stop()
    {
        m_process.terminate();
        m_process.waitForFinished(10000);
        static const QRegularExpression said("sent (\\d+) answered (\\d+) max_ms ([0-9.]+)");
        const QRegularExpressionMatch m = said.match(QString::fromLatin1(m_process.readAllStandardOutput()));
        return m.hasMatch() ? Result{m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toDouble()}
                            : Result{};
    }

private:
    QProcess m_process;
};

} // namespace quillora::test
