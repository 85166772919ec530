#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWindow>

namespace quillora
{

// Benchmark hook: with QUILLORA_BENCH_EXIT_WHEN_SHOWN=1 a program quits as soon as its window is
// first exposed on screen, so start-up time and memory can be measured from outside. Install it on
// the application before anything shows.
class ExitWhenShown : public QObject
{
public:
    static bool wanted() { return qEnvironmentVariableIntValue("QUILLORA_BENCH_EXIT_WHEN_SHOWN") == 1; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* shown = qobject_cast<QWindow*>(watched);
        if (event->type() == QEvent::Expose && shown && shown->isExposed())
            QTimer::singleShot(0, QCoreApplication::instance(), [] { QCoreApplication::exit(0); });
        return false;
    }
};

} // namespace quillora
