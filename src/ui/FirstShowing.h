#pragma once

#include <QObject>
#include <functional>

class QWidget;

namespace quillora
{

// Runs `then` once, right after `window` is first painted on screen, so that what the user cannot
// see yet does not hold up what they can. A window still hidden or minimised when the program first
// waits for events does not wait for a showing, nor does one not shown within a second.
class FirstShowing : public QObject
{
public:
    FirstShowing(QWidget* window, std::function<void()> then);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void finish();
    QWidget* m_window;
    std::function<void()> m_then;
};

} // namespace quillora
