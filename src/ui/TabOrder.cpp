#include "ui/TabOrder.h"

#include <QLayout>
#include <QWidget>
#include <algorithm>

namespace quillora
{

namespace
{

struct Placed {
    QWidget* widget;
    QRect rect; // in the window's coordinates
};

} // namespace

void orderTabsByScreen(QWidget* window)
{
    if (window->layout())
        window->layout()->activate();
    QList<Placed> placed;
    const QList<QWidget*> children = window->findChildren<QWidget*>();
    for (QWidget* widget : children) {
        // A proxy's target stands for it; popups and dialogs are windows of their own.
        if (widget->focusPolicy() == Qt::NoFocus || widget->focusProxy() || widget->window() != window)
            continue;
        placed.append({widget, QRect(widget->mapTo(window, QPoint(0, 0)), widget->size())});
    }
    std::stable_sort(placed.begin(), placed.end(),
                     [](const Placed& a, const Placed& b) { return a.rect.top() < b.rect.top(); });
    for (auto row = placed.begin(); row != placed.end();) {
        const int bottom = row->rect.bottom();
        const auto end = std::find_if(row, placed.end(),
                                      [bottom](const Placed& p) { return p.rect.center().y() > bottom; });
        std::stable_sort(row, end,
                         [](const Placed& a, const Placed& b) { return a.rect.left() < b.rect.left(); });
        row = end;
    }
    for (int i = 1; i < placed.size(); ++i)
        QWidget::setTabOrder(placed[i - 1].widget, placed[i].widget);
}

} // namespace quillora
