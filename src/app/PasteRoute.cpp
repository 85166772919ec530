#include "app/PasteRoute.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QTextCursor>
#include <utility>

namespace quillora
{

PasteRoute::PasteRoute(QPlainTextEdit* box, std::function<void()> paste)
    : QObject(box), m_box(box), m_paste(std::move(paste))
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
    case QEvent::ContextMenu:
        showMenu(static_cast<QContextMenuEvent*>(event)->globalPos());
        return true;
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

// The box's standard menu asks the clipboard whether Paste is possible and waits for the owner's
// answer; this one offers Paste always and lets the reader find out.
void PasteRoute::showMenu(const QPoint& at)
{
    const auto text = [](const char* source) {
        return QCoreApplication::translate("QWidgetTextControl", source);
    };
    const bool editable = !m_box->isReadOnly();
    const bool selected = m_box->textCursor().hasSelection();
    auto* menu = new QMenu(m_box);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(text("&Undo"), m_box, &QPlainTextEdit::undo)
        ->setEnabled(editable && m_box->document()->isUndoAvailable());
    menu->addAction(text("&Redo"), m_box, &QPlainTextEdit::redo)
        ->setEnabled(editable && m_box->document()->isRedoAvailable());
    menu->addSeparator();
    menu->addAction(text("Cu&t"), m_box, &QPlainTextEdit::cut)->setEnabled(editable && selected);
    menu->addAction(text("&Copy"), m_box, &QPlainTextEdit::copy)->setEnabled(selected);
    menu->addAction(text("&Paste"), this, [this] { m_paste(); })->setEnabled(editable);
    menu->addAction(text("Delete"), m_box, [this] { m_box->textCursor().removeSelectedText(); })
        ->setEnabled(editable && selected);
    menu->addSeparator();
    menu->addAction(text("Select All"), m_box, &QPlainTextEdit::selectAll)
        ->setEnabled(!m_box->document()->isEmpty());
    menu->popup(at);
}

} // namespace quillora
