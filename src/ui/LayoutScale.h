#pragma once

#include <QRect>

class QFont;
class QWidget;

namespace quillora
{

// The window's fixed layout was drawn for a 12-pixel font (9 pt at 96 dpi). A larger desktop font
// makes every length grow by the ratio of its pixel size to that, so captions keep their room; a
// smaller one changes nothing.
class LayoutScale
{
public:
    static constexpr int kDesignPixels = 12;

    explicit LayoutScale(const QFont& font);
    // The scale of `widget`'s font.
    static LayoutScale of(const QWidget* widget);

    double factor() const { return m_factor; }
    int operator()(int length) const;
    // Edges are scaled rather than sizes, so rectangles that touch at the design size still touch.
    QRect operator()(const QRect& rect) const;

private:
    double m_factor = 1.0;
};

} // namespace quillora
