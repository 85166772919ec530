#pragma once

#include <QObject>
#include <functional>

class QWidget;

namespace quillora
{

// Holds off mouse, wheel and key input to one window while a translation runs; Escape cancels.
class InputHold : public QObject
{
public:
    InputHold(QWidget* window, std::function<void()> onEscape);
    ~InputHold() override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* m_window;
    std::function<void()> m_onEscape;
};

} // namespace quillora
