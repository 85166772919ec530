#include "desktop/VisualStyle.h"

#include <QApplication>
#include <QPalette>
#include <QVariant>
#include <QWidget>

namespace quillora
{

namespace
{

// The palette a button had before any style coloured it, so styles 0 and 3 can give it back.

void fillBackground(QWidget* widget, const QColor& colour)
{
    if (!widget)
        return;
    QPalette palette = widget->palette();
    palette.setColor(QPalette::Window, colour);
    widget->setPalette(palette);
    widget->setAutoFillBackground(true);
}

void colourButton(QWidget* button, const QColor& colour)
{
    QPalette palette = button->palette();
    palette.setColor(QPalette::Button, colour);
    palette.setColor(QPalette::Window, colour);
    button->setPalette(palette);
}

} // namespace

QColor styleBackground(int style)
{
    switch (style) {
    case 0:
        return QApplication::palette().color(QPalette::Button);
    case 1:
        return QColor(173, 209, 255);
    case 2:
        return QColor(183, 222, 249);
    case 3:
        return QApplication::palette().color(QPalette::Light);
    default:
        return QColor();
    }
}

void applyVisualStyle(int style, QWidget* pic1, const QList<QWidget*>& checkBoxes,
                      const QList<QWidget*>& buttons)
{
    const QColor background = styleBackground(style);
    if (!background.isValid())
        return;
    fillBackground(pic1, background);
    for (QWidget* check : checkBoxes)
        fillBackground(check, background);
    // Styles 0 and 3 leave the buttons' colour as it is.
    if (style != 1 && style != 2)
        return;
    for (QWidget* button : buttons) {
        if (button)
            colourButton(button, background);
    }
}

} // namespace quillora
