#include "ui/RowFit.h"

#include <QWidget>
#include <algorithm>

namespace quillora
{

void fitRow(const QList<QWidget*>& row, const QList<QWidget*>& shared, int left, int width, int minShared)
{
    constexpr int gap = 4;
    int captions = 0;
    for (const QWidget* w : row) {
        if (!shared.contains(w))
            captions += w->sizeHint().width();
    }
    const int count = std::max<int>(1, int(shared.size()));
    const int sharedWidth = std::max(minShared, (width - captions - gap * (int(row.size()) - 1)) / count);
    int x = left;
    for (QWidget* w : row) {
        const int span = shared.contains(w) ? sharedWidth : w->sizeHint().width();
        const QRect at = w->geometry();
        w->setGeometry(x, at.top(), std::max(0, std::min(span, left + width - x)), at.height());
        x += span + gap;
    }
}

} // namespace quillora
