#pragma once

class QWidget;

namespace quillora
{

// Return and the keypad's Enter press a focused push or tool button inside `area`, as Space does: outside
// a dialog Qt's buttons leave those keys alone. Check boxes keep Space alone.
void pressOnEnter(QWidget* area);

} // namespace quillora
