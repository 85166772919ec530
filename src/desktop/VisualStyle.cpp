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
const char kOwnPalette[] = "quilloraOwnPalette";

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
    if (!button->property(kOwnPalette).isValid())
        button->setProperty(kOwnPalette, QVariant::fromValue(button->palette()));
    QPalette palette = button->palette();
    palette.setColor(QPalette::Button, colour);
    palette.setColor(QPalette::Window, colour);
    button->setPalette(palette);
}

void restoreButton(QWidget* button)
{
    const QVariant own = button->property(kOwnPalette);
    if (!own.isValid())
        return;
    button->setPalette(own.value<QPalette>());
    button->setProperty(kOwnPalette, QVariant());
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
    const bool colouredButtons = style == 1 || style == 2;
    for (QWidget* button : buttons) {
        if (!button)
            continue;
        if (colouredButtons)
            colourButton(button, background);
        else
            restoreButton(button);
    }
}

} // namespace quillora
