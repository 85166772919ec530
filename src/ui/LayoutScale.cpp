#include "ui/LayoutScale.h"

#include <QFontInfo>
#include <QWidget>
#include <algorithm>
#include <cmath>

namespace quillora
{

LayoutScale::LayoutScale(const QFont& font)
    : m_factor(std::max(1.0, double(QFontInfo(font).pixelSize()) / kDesignPixels))
{
}

LayoutScale LayoutScale::of(const QWidget* widget)
{
    return LayoutScale(widget->font());
}

int LayoutScale::operator()(int length) const
{
    return int(std::lround(length * m_factor));
}

QRect LayoutScale::operator()(const QRect& rect) const
{
    const int left = (*this)(rect.x()), top = (*this)(rect.y());
    return {left, top, (*this)(rect.x() + rect.width()) - left, (*this)(rect.y() + rect.height()) - top};
}

} // namespace quillora
