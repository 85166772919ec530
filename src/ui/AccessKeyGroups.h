#pragma once

class QWidget;

namespace quillora
{

// Access keys for the items of one menu or menu bar, its visible items with a caption as one group.
void assignMenuAccessKeys(QWidget* menu);
// Access keys for the buttons, check boxes and labels with a buddy inside `area`, as one group.
void assignControlAccessKeys(QWidget* area);

} // namespace quillora
