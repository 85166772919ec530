#pragma once

#include <QRect>
#include <QString>

class QPlainTextEdit;
class QWidget;

namespace quillora
{

// A text box of the main window: word-wrapping, vertical scroll bar always, no horizontal scrolling.
QPlainTextEdit* createTextBox(QWidget* parent, const QRect& rect);
// Get-text and set-text: the box gives back exactly the text it was given, line ends of every kind
// (LF, CR LF, CR, U+2029), U+2028, U+FDD0, U+FDD1 and non-breaking spaces included.
QString boxText(const QPlainTextEdit* box);
void setBoxText(QPlainTextEdit* box, const QString& text);
// Puts `text` in place of the selection at the caret, kept as exactly as by setBoxText.
void insertBoxText(QPlainTextEdit* box, const QString& text);
// Right-aligned, right-to-left reading, scroll bar on the left.
void setRightToLeft(QPlainTextEdit* box);
bool isRightToLeft(const QPlainTextEdit* box);
// Gives `target` the reading direction and alignment of `source`.
void copyLayout(QPlainTextEdit* target, const QPlainTextEdit* source);

} // namespace quillora
