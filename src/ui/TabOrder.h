#pragma once

class QWidget;

namespace quillora
{

// Chains the Tab order of `window`'s controls as they stand on screen: rows from top to bottom, each
// left to right. A control belongs to a row when its middle lies above the bottom of the row's first
// control, so a check box centred beside a taller picker shares its row. Controls that take focus only
// by a click keep their place too, ready for when they take Tab. Positions are read once, now: a
// window laid out by a layout is laid out first.
void orderTabsByScreen(QWidget* window);

} // namespace quillora
