#include "app/WindowVisibility.h"

#include <QElapsedTimer>
#include <QEvent>
#include <QWidget>

namespace quillora
{

WindowVisibility::WindowVisibility(QWidget* window, Clock clock)
    : QObject(window), m_window(window), m_clock(std::move(clock))
{
    if (!m_clock) {
        m_clock = [started = std::make_shared<QElapsedTimer>()] {
            if (!started->isValid())
                started->start();
            return started->elapsed();
        };
    }
    window->installEventFilter(this);
}

void WindowVisibility::toggle()
{
    if (!m_meantShown) {
        m_meantShown = true;
        m_window->showNormal();
        m_window->raise();
        m_window->activateWindow();
    } else {
        m_meantShown = false;
        askMinimised();
    }
}

void WindowVisibility::minimise()
{
    m_meantShown = false;
    askMinimised();
}

void WindowVisibility::askMinimised()
{
    m_minimiseAsked = m_clock();
    m_window->setWindowState(m_window->windowState() | Qt::WindowMinimized);
}

void WindowVisibility::setTrayPresent(bool present)
{
    m_trayPresent = present;
    // A window that waits minimised in the task bar for want of a tray goes into the one that came up.
    if (present && m_window->isMinimized() && !m_window->isHidden()) {
        m_meantShown = false;
        m_window->hide();
        Q_EMIT hiddenToTray();
    }
}

bool WindowVisibility::lateReport() const
{
    constexpr int kReportDelayMs = 1000;
    return m_meantShown && m_minimiseAsked >= 0 && m_clock() - m_minimiseAsked < kReportDelayMs;
}

void WindowVisibility::stateChanged()
{
    if (!m_window->isMinimized())
        return;
    if (lateReport()) {
        QMetaObject::invokeMethod(m_window, &QWidget::showNormal, Qt::QueuedConnection);
        return;
    }
    m_meantShown = false;
    if (!m_trayPresent)
        return;
    // Hiding from inside the state change confuses some window managers; do it right after.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_meantShown || m_window->isHidden() || !m_trayPresent)
                return;
            m_window->hide();
            Q_EMIT hiddenToTray();
        },
        Qt::QueuedConnection);
}

bool WindowVisibility::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_window)
        return false;
    if (event->type() == QEvent::WindowStateChange)
        stateChanged();
    else if (event->type() == QEvent::Show && !event->spontaneous())
        m_meantShown = true;
    return false;
}

} // namespace quillora
