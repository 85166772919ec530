#include "ui/AccessKeyGroups.h"

#include "app/AccessKeys.h"

#include <QAbstractButton>
#include <QAction>
#include <QLabel>
#include <QWidget>

namespace quillora
{

void assignMenuAccessKeys(QWidget* menu)
{
    QList<QAction*> items;
    QStringList captions;
    for (QAction* item : menu->actions()) {
        if (item->isVisible() && !item->isSeparator() && !item->text().isEmpty()) {
            items.append(item);
            captions.append(item->text());
        }
    }
    const QStringList keyed = AccessKeys::assign(captions);
    for (qsizetype i = 0; i < items.size(); ++i)
        items.at(i)->setText(keyed.at(i));
}

void assignControlAccessKeys(QWidget* area, const QWidget* menuBar)
{
    QStringList taken;
    for (const QAction* item : menuBar ? menuBar->actions() : QList<QAction*>())
        taken.append(item->text());
    QList<QWidget*> controls;
    QStringList captions;
    for (QWidget* widget : area->findChildren<QWidget*>()) {
        const auto* label = qobject_cast<QLabel*>(widget);
        const bool keyed = qobject_cast<QAbstractButton*>(widget) || (label && label->buddy());
        const QString caption = widget->property("text").toString();
        if (keyed && !caption.isEmpty()) {
            controls.append(widget);
            captions.append(caption);
        }
    }
    const QStringList keyed = AccessKeys::assign(captions, taken);
    for (qsizetype i = 0; i < controls.size(); ++i)
        controls.at(i)->setProperty("text", keyed.at(i));
}

} // namespace quillora
