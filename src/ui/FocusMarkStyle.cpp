#include "ui/FocusMarkStyle.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QComboBox>
#include <QPainter>
#include <QStyleOption>

namespace quillora
{

namespace
{

constexpr int kMarkWidth = 2;

// The controls that carry the mark instead of the style's own.
bool marked(const QWidget* widget)
{
    return qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QComboBox*>(widget) ||
           qobject_cast<const QAbstractScrollArea*>(widget);
}

bool focusedByKeyboard(const QStyleOption* option)
{
    return option->state.testFlag(QStyle::State_HasFocus) &&
           option->state.testFlag(QStyle::State_KeyboardFocusChange);
}

void drawMark(const QStyleOption* option, QPainter* painter, const QWidget* widget)
{
    if (!marked(widget) || !focusedByKeyboard(option))
        return;
    const QRect outer = widget->rect();
    const QColor colour = option->palette.color(QPalette::Active, QPalette::Highlight);
    painter->save();
    for (const QRect& band : {QRect(outer.left(), outer.top(), outer.width(), kMarkWidth),
                              QRect(outer.left(), outer.bottom() - kMarkWidth + 1, outer.width(), kMarkWidth),
                              QRect(outer.left(), outer.top(), kMarkWidth, outer.height()),
                              QRect(outer.right() - kMarkWidth + 1, outer.top(), kMarkWidth, outer.height())})
        painter->fillRect(band, colour);
    painter->restore();
}

} // namespace

FocusMarkStyle::FocusMarkStyle(const QString& baseStyle) : QProxyStyle(baseStyle) {}

void FocusMarkStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const
{
    QProxyStyle::drawControl(element, option, painter, widget);
    if (element == CE_PushButton || element == CE_CheckBox || element == CE_ShapedFrame)
        drawMark(option, painter, widget);
}

void FocusMarkStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                        QPainter* painter, const QWidget* widget) const
{
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_ComboBox || control == CC_ToolButton)
        drawMark(option, painter, widget);
}

void FocusMarkStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                   const QWidget* widget) const
{
    if (element == PE_FrameFocusRect && marked(widget))
        return;
    QProxyStyle::drawPrimitive(element, option, painter, widget);
}

// A text box's frame is wide enough for the whole mark: its contents would cover an inner half.
int FocusMarkStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const
{
    const int base = QProxyStyle::pixelMetric(metric, option, widget);
    if (metric == PM_DefaultFrameWidth && qobject_cast<const QAbstractScrollArea*>(widget))
        return std::max(base, kMarkWidth);
    return base;
}

} // namespace quillora
