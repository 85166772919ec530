#pragma once

#include <QColor>
#include <QList>

class QWidget;

namespace quillora
{

// Colours of style 0-3 applied to the container, the two check boxes and the buttons.
// Styles 0 and 3 take the platform palette's colours; 1 and 2 fixed ones. Other numbers do nothing.
void applyVisualStyle(int style, QWidget* pic1, const QList<QWidget*>& checkBoxes,
                      const QList<QWidget*>& buttons);
// The background of `style` for the container, invalid QColor outside 0-3.
QColor styleBackground(int style);

} // namespace quillora
