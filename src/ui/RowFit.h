#pragma once

#include <QList>
#include <QSize>

class QComboBox;
class QWidget;

namespace quillora
{

// Lays `row` out left to right in the band [left, left + width) at the row's present top and height:
// captions take the width their text needs, the `shared` widgets split what is left, never below
// `minShared` each.
void fitRow(const QList<QWidget*>& row, const QList<QWidget*>& shared, int left, int width, int minShared);

// The size `combo` needs to show its widest item whole, by its advance and by the height of the fonts
// that draw it (the fallback fonts of Thai or Chinese are often taller than the widget's own).
QSize widestItemSize(const QComboBox* combo);

} // namespace quillora
