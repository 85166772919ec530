#include "ui/InputHold.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QWidget>

namespace quillora
{

namespace
{

bool isUserInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::Drop:
        return true;
    default:
        return false;
    }
}

} // namespace

InputHold::InputHold(QWidget* window, std::function<void()> onEscape)
    : m_window(window), m_onEscape(std::move(onEscape))
{
    QCoreApplication::instance()->installEventFilter(this);
    QGuiApplication::setOverrideCursor(Qt::BusyCursor);
}

InputHold::~InputHold()
{
    QGuiApplication::restoreOverrideCursor();
    QCoreApplication::instance()->removeEventFilter(this);
}

bool InputHold::eventFilter(QObject* watched, QEvent* event)
{
    if (!isUserInput(event->type()) || !watched->isWidgetType())
        return false;
    auto* widget = static_cast<QWidget*>(watched);
    if (widget->window() != m_window)
        return false;
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape)
        m_onEscape();
    return true;
}

} // namespace quillora
