#pragma once

#include <QObject>
#include <functional>

class QPlainTextEdit;

namespace quillora
{

// Sends a text box's paste keys (Ctrl+V, Shift+Insert) to `paste` and keeps the middle button's
// paste of the X11 selection away from it: the box's own paste reads synchronously and, on Qt 6.4,
// crashes when the clipboard or the selection offers nothing.
class PasteRoute : public QObject
{
public:
    PasteRoute(QPlainTextEdit* box, std::function<void()> paste);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> m_paste;
};

} // namespace quillora
