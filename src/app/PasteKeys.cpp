#include "app/PasteKeys.h"

#include <QKeyEvent>
#include <QPlainTextEdit>
#include <utility>

namespace quillora
{

PasteKeys::PasteKeys(QPlainTextEdit* box, std::function<void()> paste)
    : QObject(box), m_paste(std::move(paste))
{
    box->installEventFilter(this);
}

bool PasteKeys::eventFilter(QObject*, QEvent* event)
{
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
