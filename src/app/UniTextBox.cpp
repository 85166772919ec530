#include "app/UniTextBox.h"

#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QPlainTextDocumentLayout>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextBoundaryFinder>
#include <QTextDocument>
#include <QTextLayout>
#include <QTextOption>
#include <optional>
#include <utility>

namespace quillora
{

namespace
{

// Wrapping at word boundaries measures a run without a break opportunity to its end again for every
// line the run fills, in time that grows with the square of the run; a text holding a run this long
// wraps anywhere, which breaks such a run the same way in linear time.
constexpr qsizetype kLongestWord = 1000;
// Blocks this long keep their shaped glyphs: otherwise every repaint and caret move shapes the whole
// block again.
constexpr int kLongBlock = 4096;

bool hasLongWord(QStringView text)
{
    // In pieces: the line breaker of some scripts is slower than linear on one long string.
    constexpr qsizetype piece = 4096;
    qsizetype lastBreak = 0;
    for (qsizetype from = 0; from < text.size(); from += piece) {
        const QStringView part = text.mid(from, piece);
        QTextBoundaryFinder finder(QTextBoundaryFinder::Line, part.data(), part.size());
        for (qsizetype p = finder.toNextBoundary(); p > 0 && p < part.size(); p = finder.toNextBoundary()) {
            if (from + p - lastBreak > kLongestWord)
                return true;
            lastBreak = from + p;
        }
        if (from + part.size() - lastBreak > kLongestWord)
            return true;
    }
    return false;
}

bool hasLongWord(const QTextDocument* document)
{
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        if (block.length() > kLongestWord && hasLongWord(block.text()))
            return true;
    }
    return false;
}

class TextBoxLayout : public QPlainTextDocumentLayout
{
public:
    using QPlainTextDocumentLayout::QPlainTextDocumentLayout;

protected:
    void documentChanged(int from, int charsRemoved, int charsAdded) override
    {
        QTextDocument* doc = document();
        for (QTextBlock block = doc->findBlock(from);
             block.isValid() && block.position() <= from + charsAdded; block = block.next()) {
            if (block.length() > kLongBlock)
                block.layout()->setCacheEnabled(true);
        }
        QTextOption option = doc->defaultTextOption();
        const QTextOption::WrapMode wanted =
            hasLongWord(doc) ? QTextOption::WrapAnywhere : QTextOption::WrapAtWordBoundaryOrAnywhere;
        if (option.wrapMode() == wanted) {
            QPlainTextDocumentLayout::documentChanged(from, charsRemoved, charsAdded);
            return;
        }
        // This lays the whole document out again, the change included.
        option.setWrapMode(wanted);
        doc->setDefaultTextOption(option);
    }
};

// What closes a block, kept as the block's user state; typed line ends are LF. Qt also starts a
// block at the noncharacters it reserves for frames, U+FDD0 and U+FDD1.
enum LineEnd { Lf = 0, CrLf, Cr, ParagraphSeparator, FrameStart, FrameEnd, LineEndCount };

const QString& lineEndText(int state)
{
    static const QString texts[] = {QStringLiteral("\n"),   QStringLiteral("\r\n"),
                                    QStringLiteral("\r"),   QString(QChar::ParagraphSeparator),
                                    QString(QChar(0xFDD0)), QString(QChar(0xFDD1))};
    return texts[state >= Lf && state < LineEndCount ? state : Lf];
}

// The block break that starts at text[i], if any: its kind and its length.
std::optional<std::pair<LineEnd, int>> lineEndAt(const QString& text, qsizetype i)
{
    switch (text.at(i).unicode()) {
    case '\n':
        return std::pair(Lf, 1);
    case '\r':
        return i + 1 < text.size() && text.at(i + 1) == QLatin1Char('\n') ? std::pair(CrLf, 2)
                                                                          : std::pair(Cr, 1);
    case QChar::ParagraphSeparator:
        return std::pair(ParagraphSeparator, 1);
    case 0xFDD0:
        return std::pair(FrameStart, 1);
    case 0xFDD1:
        return std::pair(FrameEnd, 1);
    default:
        return std::nullopt;
    }
}

// Typed or composed text with a character that Qt would turn into a plain line break.
QString textWithFrameMarks(const QEvent* event)
{
    QString text;
    if (event->type() == QEvent::KeyPress)
        text = static_cast<const QKeyEvent*>(event)->text();
    else if (event->type() == QEvent::InputMethod)
        text = static_cast<const QInputMethodEvent*>(event)->commitString();
    const bool marked = text.contains(QChar(0xFDD0)) || text.contains(QChar(0xFDD1));
    return marked ? text : QString();
}

class FrameMarkTyping : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        auto* box = static_cast<QPlainTextEdit*>(watched);
        const QString text = textWithFrameMarks(event);
        if (text.isEmpty() || box->isReadOnly())
            return false;
        insertBoxText(box, text);
        return true;
    }
};

} // namespace

QString boxText(const QPlainTextEdit* box)
{
    QString text;
    for (QTextBlock block = box->document()->begin(); block.isValid(); block = block.next()) {
        text += block.text();
        if (block.next().isValid())
            text += lineEndText(block.userState());
    }
    return text;
}

// The document breaks blocks at the same characters; each block remembers which one ended it.
void setBoxText(QPlainTextEdit* box, const QString& text)
{
    box->setPlainText(text);
    QTextBlock block = box->document()->begin();
    for (qsizetype i = 0; i < text.size() && block.isValid(); ++i) {
        const auto end = lineEndAt(text, i);
        if (!end)
            continue;
        block.setUserState(end->first);
        block = block.next();
        i += end->second - 1;
    }
}

void insertBoxText(QPlainTextEdit* box, const QString& text)
{
    QTextCursor cursor = box->textCursor();
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    const int closing = cursor.block().userState();
    qsizetype from = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const auto end = lineEndAt(text, i);
        if (!end)
            continue;
        cursor.insertText(text.mid(from, i - from));
        cursor.insertBlock();
        cursor.block().previous().setUserState(end->first);
        i += end->second - 1;
        from = i + 1;
    }
    cursor.insertText(text.mid(from));
    cursor.block().setUserState(closing);
    cursor.endEditBlock();
    box->setTextCursor(cursor);
}

QPlainTextEdit* createTextBox(QWidget* parent, const QRect& rect)
{
    auto* box = new QPlainTextEdit(parent);
    auto* document = new QTextDocument(box);
    document->setDocumentLayout(new TextBoxLayout(document));
    box->setDocument(document);
    box->setGeometry(rect);
    box->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    box->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    box->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    box->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    box->setTabChangesFocus(true);
    box->installEventFilter(new FrameMarkTyping(box));
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
