#pragma once

#include <QList>

class QWidget;

namespace quillora
{

// Lays `row` out left to right in the band [left, left + width) at the row's present top and height:
// captions take the width their text needs, the `shared` widgets split what is left, never below
// `minShared` each.
void fitRow(const QList<QWidget*>& row, const QList<QWidget*>& shared, int left, int width, int minShared);

} // namespace quillora
