#pragma once

#include <QObject>
#include <functional>

class QPlainTextEdit;

namespace quillora
{

// Sends a text box's paste keys (Ctrl+V, Shift+Insert) to `paste` instead of the box's own paste,
// which reads the clipboard synchronously and, on Qt 6.4, crashes when the clipboard offers nothing.
class PasteKeys : public QObject
{
public:
    PasteKeys(QPlainTextEdit* box, std::function<void()> paste);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::function<void()> m_paste;
};

} // namespace quillora
