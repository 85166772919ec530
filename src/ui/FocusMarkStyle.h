#pragma once

#include <QProxyStyle>

namespace quillora
{

// The desktop's style with a focus mark that shows on any background: a 2-pixel frame in the
// palette's highlight colour around the button, check box, picker or text box the keyboard moved to,
// drawn over the style's own look, whose faint mark it replaces.
class FocusMarkStyle : public QProxyStyle
{
public:
    // `baseStyle`: the key of the style underneath ("fusion", "breeze", ...).
    explicit FocusMarkStyle(const QString& baseStyle);

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
};

} // namespace quillora
