#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QWindow>
#include <cstdio>
#include <ctime>

namespace quillora
{

// Benchmark hook: with QUILLORA_BENCH_REPORT_SHOWN=1 a program prints "shown <seconds since the
// epoch>" on standard output when its first window is first exposed on screen, and runs on, so that
// start-up time and memory at rest can be measured from outside (bench/startup.sh). Install it on
// the application before anything shows.
class ShownReport : public QObject
{
public:
    static bool wanted() { return qEnvironmentVariableIntValue("QUILLORA_BENCH_REPORT_SHOWN") == 1; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* shown = qobject_cast<QWindow*>(watched);
        if (event->type() == QEvent::Expose && shown && shown->isExposed()) {
            timespec now{};
            ::clock_gettime(CLOCK_REALTIME, &now);
            std::printf("shown %lld.%06ld\n", static_cast<long long>(now.tv_sec), now.tv_nsec / 1000);
            std::fflush(stdout);
            QCoreApplication::instance()->removeEventFilter(this);
        }
        return false;
    }
};

} // namespace quillora
