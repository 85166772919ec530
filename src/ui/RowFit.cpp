#include "ui/RowFit.h"

#include <QComboBox>
#include <QStyleOptionComboBox>
#include <QTextLayout>
#include <QWidget>
#include <algorithm>
#include <cmath>

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

QSize widestItemSize(const QComboBox* combo)
{
    const QFontMetrics metrics(combo->font());
    QSize widest(0, 0);
    for (int i = 0; i < combo->count(); ++i) {
        const QString text = combo->itemText(i);
        QTextLayout layout(text, combo->font());
        layout.beginLayout();
        QTextLine line = layout.createLine();
        line.setLineWidth(metrics.horizontalAdvance(text) + 1);
        layout.endLayout();
        widest = widest.expandedTo({metrics.horizontalAdvance(text), int(std::ceil(line.height()))});
    }
    QStyleOptionComboBox option;
    option.initFrom(combo);
    return combo->style()->sizeFromContents(QStyle::CT_ComboBox, &option, widest, combo);
}

} // namespace quillora
