#pragma once

#include <QObject>
#include <QPointer>
#include <deque>
#include <functional>
#include <memory>

class QEvent;
class QWidget;

namespace quillora
{

// While the window is busy, what the user does to it waits instead of being lost: keys, clicks and
// wheel turns are kept, and so are commands deferred by the program; release() then applies them in
// the order they came. Escape is never kept: it goes to onEscape at once.
class HeldInput : public QObject
{
public:
    HeldInput(QWidget* window, std::function<void()> onEscape);
    ~HeldInput() override;

    void hold();
    // Applies what was kept, in order; stops early when something applied holds input again, and
    // keeps the rest for the next release.
    void release();
    bool holding() const { return m_holding; }
    // Runs `call` now, or, while input is held, in its turn among the kept input.
    void defer(std::function<void()> call);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Kept {
        QPointer<QObject> target;
        std::unique_ptr<QEvent> event;
        std::function<void()> call;
    };
    void apply(Kept& kept);

    QWidget* m_window;
    std::function<void()> m_onEscape;
    std::deque<Kept> m_kept;
    bool m_holding = false;
    bool m_releasing = false;
};

} // namespace quillora
