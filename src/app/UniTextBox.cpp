#include "app/UniTextBox.h"

#include <QPlainTextEdit>
#include <QTextDocument>
#include <QTextOption>

namespace quillora
{

QPlainTextEdit* createTextBox(QWidget* parent, const QRect& rect, const QString& accessibleName)
{
    auto* box = new QPlainTextEdit(parent);
    box->setGeometry(rect);
    box->setAccessibleName(accessibleName);
    box->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    box->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    box->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    box->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    box->setTabChangesFocus(true);
    return box;
}

static void setDirection(QPlainTextEdit* box, Qt::LayoutDirection direction, Qt::Alignment alignment)
{
    box->setLayoutDirection(direction);
    QTextOption option = box->document()->defaultTextOption();
    option.setTextDirection(direction);
    option.setAlignment(alignment);
    box->document()->setDefaultTextOption(option);
}

void setRightToLeft(QPlainTextEdit* box)
{
    setDirection(box, Qt::RightToLeft, Qt::AlignRight | Qt::AlignAbsolute);
}

bool isRightToLeft(const QPlainTextEdit* box)
{
    return box->layoutDirection() == Qt::RightToLeft;
}

void copyLayout(QPlainTextEdit* target, const QPlainTextEdit* source)
{
    const QTextOption option = source->document()->defaultTextOption();
    setDirection(target, source->layoutDirection(), option.alignment());
}

} // namespace quillora
