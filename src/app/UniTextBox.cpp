#include "app/UniTextBox.h"

#include <QPlainTextDocumentLayout>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextBoundaryFinder>
#include <QTextDocument>
#include <QTextLayout>
#include <QTextOption>

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

// The line end that closes a block, kept as the block's user state; typed line ends are LF.
enum LineEnd { Lf = 0, CrLf, Cr, ParagraphSeparator };

const QString& lineEndText(int state)
{
    static const QString texts[] = {QStringLiteral("\n"), QStringLiteral("\r\n"), QStringLiteral("\r"),
                                    QString(QChar::ParagraphSeparator)};
    return texts[state >= Lf && state <= ParagraphSeparator ? state : Lf];
}

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
        const QChar c = text.at(i);
        LineEnd end = Lf;
        if (c == QLatin1Char('\r')) {
            const bool pair = i + 1 < text.size() && text.at(i + 1) == QLatin1Char('\n');
            end = pair ? CrLf : Cr;
            i += pair ? 1 : 0;
        } else if (c == QChar::ParagraphSeparator) {
            end = ParagraphSeparator;
        } else if (c != QLatin1Char('\n')) {
            continue;
        }
        block.setUserState(end);
        block = block.next();
    }
}

QPlainTextEdit* createTextBox(QWidget* parent, const QRect& rect, const QString& accessibleName)
{
    auto* box = new QPlainTextEdit(parent);
    auto* document = new QTextDocument(box);
    document->setDocumentLayout(new TextBoxLayout(document));
    box->setDocument(document);
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
