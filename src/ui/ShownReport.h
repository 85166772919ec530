#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QWindow>
#include <chrono>
#include <cstdio>

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
            const auto now = std::chrono::duration_cast<std::chrono::microseconds>(
                                 std::chrono::system_clock::now().time_since_epoch())
                                 .count();
            std::printf("shown %lld.%06lld\n", static_cast<long long>(now / 1000000),
                        static_cast<long long>(now % 1000000));
            std::fflush(stdout);
            QCoreApplication::instance()->removeEventFilter(this);
        }
        return false;
    }
};

} // namespace quillora
