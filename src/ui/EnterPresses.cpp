#include "ui/EnterPresses.h"

#include <QKeyEvent>
#include <QPushButton>
#include <QToolButton>

namespace quillora
{

namespace
{

class EnterPresses : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() != QEvent::KeyPress)
            return false;
        const auto* key = static_cast<QKeyEvent*>(event);
        const bool enter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
        if (!enter || (key->modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier)
            return false;
        static_cast<QAbstractButton*>(watched)->animateClick();
        return true;
    }
};

} // namespace

void pressOnEnter(QWidget* area)
{
    auto* presses = new EnterPresses(area);
    for (QAbstractButton* button : area->findChildren<QAbstractButton*>()) {
        if (qobject_cast<QPushButton*>(button) || qobject_cast<QToolButton*>(button))
            button->installEventFilter(presses);
    }
}

} // namespace quillora
