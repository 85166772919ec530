#pragma once

class QWidget;

namespace quillora
{

// Access keys for the items of one menu or menu bar, its visible items with a caption as one group.
void assignMenuAccessKeys(QWidget* menu);
// Access keys for the buttons, check boxes and labels with a buddy inside `area`, as one group, none
// of them on a key of `menuBar` (the window's, whose items share the keys).
void assignControlAccessKeys(QWidget* area, const QWidget* menuBar = nullptr);

} // namespace quillora
