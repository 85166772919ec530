#include "ui/HeldInput.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QWidget>

// Qt's own way to offer a key to the shortcut map first, as a key typed on the keyboard is.
Q_GUI_EXPORT bool qt_sendShortcutOverrideEvent(QObject* o, ulong timestamp, int k, Qt::KeyboardModifiers mods,
                                               const QString& text, bool autorep, ushort count);

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
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        return true;
    default:
        return false;
    }
}

} // namespace

HeldInput::HeldInput(QWidget* window, std::function<void()> onEscape)
    : QObject(window), m_window(window), m_onEscape(std::move(onEscape))
{
}

HeldInput::~HeldInput()
{
    if (m_holding)
        QGuiApplication::restoreOverrideCursor();
}

void HeldInput::hold()
{
    if (m_holding)
        return;
    m_holding = true;
    QCoreApplication::instance()->installEventFilter(this);
    QGuiApplication::setOverrideCursor(Qt::BusyCursor);
}

void HeldInput::release()
{
    if (m_holding) {
        m_holding = false;
        QCoreApplication::instance()->removeEventFilter(this);
        QGuiApplication::restoreOverrideCursor();
    }
    if (m_releasing)
        return;
    m_releasing = true;
    while (!m_holding && !m_kept.empty()) {
        Kept kept = std::move(m_kept.front());
        m_kept.pop_front();
        apply(kept);
    }
    m_releasing = false;
}

void HeldInput::defer(std::function<void()> call)
{
    if (!m_holding && m_kept.empty()) {
        call();
        return;
    }
    m_kept.push_back({nullptr, nullptr, std::move(call)});
}

void HeldInput::apply(Kept& kept)
{
    if (kept.call) {
        kept.call();
        return;
    }
    if (!kept.target)
        return;
    if (kept.event->type() == QEvent::KeyPress) {
        const auto* key = static_cast<const QKeyEvent*>(kept.event.get());
        if (qt_sendShortcutOverrideEvent(kept.target, key->timestamp(), key->key(), key->modifiers(),
                                         key->text(), key->isAutoRepeat(), key->count()))
            return;
    }
    QCoreApplication::sendEvent(kept.target, kept.event.get());
}

bool HeldInput::eventFilter(QObject* watched, QEvent* event)
{
    if (!watched->isWidgetType() || static_cast<QWidget*>(watched)->window() != m_window)
        return false;
    if (event->type() == QEvent::ShortcutOverride) {
        // Taken by the box, so that no shortcut fires now; the key itself is kept below.
        event->accept();
        return true;
    }
    if (!isUserInput(event->type()))
        return false;
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        m_onEscape();
        return true;
    }
    if (event->type() == QEvent::KeyRelease && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape)
        return true;
    m_kept.push_back({watched, std::unique_ptr<QEvent>(event->clone()), {}});
    return true;
}

} // namespace quillora
