#pragma once

#include <QObject>
#include <functional>

class QPlainTextEdit;
class QPoint;

namespace quillora
{

// Sends a text box's paste keys (Ctrl+V, Shift+Insert) and its context menu's Paste to `paste`, and
// keeps the middle button's paste of the X11 selection away from it: the box's own paste and menu read
// the clipboard synchronously, wait for a stalled owner and, on Qt 6.4, crash when it offers nothing.
class PasteRoute : public QObject
{
public:
    PasteRoute(QPlainTextEdit* box, std::function<void()> paste);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showMenu(const QPoint& at);
    QPlainTextEdit* m_box;
    std::function<void()> m_paste;
};

} // namespace quillora
