#include "app/PasteRoute.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <utility>

namespace quillora
{

PasteRoute::PasteRoute(QPlainTextEdit* box, std::function<void()> paste)
    : QObject(box), m_paste(std::move(paste))
{
    box->installEventFilter(this);
    box->viewport()->installEventFilter(this);
}

bool PasteRoute::eventFilter(QObject*, QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
        return static_cast<QMouseEvent*>(event)->button() == Qt::MiddleButton;
    default:
        break;
    }
    if (event->type() != QEvent::KeyPress && event->type() != QEvent::ShortcutOverride)
        return false;
    auto* key = static_cast<QKeyEvent*>(event);
    if (!key->matches(QKeySequence::Paste))
        return false;
    // The override is claimed so that no window shortcut takes the key; the press does the paste.
    key->accept();
    if (event->type() == QEvent::KeyPress)
        m_paste();
    return event->type() == QEvent::KeyPress;
}

} // namespace quillora
