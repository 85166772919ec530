#include "ui/FirstShowing.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>
#include <QWindow>

namespace quillora
{

namespace
{

constexpr int kLatestMs = 1000;

} // namespace

FirstShowing::FirstShowing(QWidget* window, std::function<void()> then)
    : QObject(window), m_window(window), m_then(std::move(then))
{
    // The window's native handle comes with its showing: watched through the application.
    QCoreApplication::instance()->installEventFilter(this);
    QTimer::singleShot(0, this, [this] {
        if (!m_window->isVisible() || m_window->isMinimized())
            finish();
    });
    // A desktop may map the window out of sight; nothing waits for that for long.
    QTimer::singleShot(kLatestMs, this, &FirstShowing::finish);
}

bool FirstShowing::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Expose && watched == m_window->windowHandle() &&
        m_window->windowHandle()->isExposed())
        // Queued: the window paints while it handles this event.
        QTimer::singleShot(0, this, &FirstShowing::finish);
    return false;
}

void FirstShowing::finish()
{
    QCoreApplication::instance()->removeEventFilter(this);
    if (const std::function<void()> then = std::exchange(m_then, {}))
        then();
}

} // namespace quillora
