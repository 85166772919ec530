#include "WindowRig.h"
#include "app/StringTable.h"
#include "desktop/Form2.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QStyleOption>
#include <QTest>
#include <QTextLayout>

using namespace quillora;
using namespace quillora::test;
using namespace Qt::StringLiterals;

namespace
{

// The advance of a text without its access-key marks, and the height of the line it lays out in, so
// that the fallback fonts of Thai and Chinese count.
QSize textSize(QString text, const QFont& font)
{
    text.remove(u'&');
    QTextLayout layout(text, font);
    layout.beginLayout();
    QTextLine line = layout.createLine();
    line.setLineWidth(1e6);
    layout.endLayout();
    return {QFontMetrics(font).horizontalAdvance(text), int(std::ceil(line.height()))};
}

// The room a caption needs: its text and the margins its style puts around it, the widest item for a
// picker, and the border lines for a button or a picker. Text fields hold the user's text.
std::optional<QSize> needed(QWidget* w)
{
    if (auto* label = qobject_cast<QLabel*>(w))
        return textSize(label->text(), w->font());
    if (auto* combo = qobject_cast<QComboBox*>(w); combo && !combo->isEditable()) {
        QSize widest(0, 0);
        for (int i = 0; i < combo->count(); ++i)
            widest = widest.expandedTo(textSize(combo->itemText(i), w->font()));
        QStyleOptionComboBox option;
        option.initFrom(w);
        const QSize size = w->style()->sizeFromContents(QStyle::CT_ComboBox, &option, widest, w);
        return QSize(size.width(), widest.height() + 2);
    }
    auto* button = qobject_cast<QAbstractButton*>(w);
    if (!button || button->text().isEmpty())
        return std::nullopt;
    auto* push = qobject_cast<QPushButton*>(w);
    QStyleOptionButton option;
    option.initFrom(w);
    if (push && (push->autoDefault() || push->isDefault()))
        option.features |= QStyleOptionButton::AutoDefaultButton;
    const QSize text = textSize(button->text(), w->font());
    const auto type = push ? QStyle::CT_PushButton : QStyle::CT_CheckBox;
    return QSize(w->style()->sizeFromContents(type, &option, text, w).width(),
                 text.height() + (push ? 2 : 0));
}

// The captions under `top` that are cut: smaller than their text, outside their parent or under another.
QStringList cut(const QWidget& top)
{
    QStringList found;
    QList<QWidget*> placed;
    for (QWidget* w : top.findChildren<QWidget*>()) {
        const std::optional<QSize> need = w->isVisibleTo(&top) ? needed(w) : std::nullopt;
        if (!need)
            continue;
        const QRect at = w->geometry();
        const bool over = std::any_of(placed.begin(), placed.end(), [w, at](const QWidget* other) {
            return other->parentWidget() == w->parentWidget() && other->geometry().intersects(at);
        });
        if (at.width() < need->width() || at.height() < need->height() || over ||
            !w->parentWidget()->rect().contains(at))
            found << u"%1 \"%2\" %3x%4 needs %5x%6"_s.arg(w->objectName(), w->property("text").toString())
                         .arg(at.width())
                         .arg(at.height())
                         .arg(need->width())
                         .arg(need->height());
        placed << w;
    }
    return found;
}

} // namespace

class TestCaptionFit : public QObject
{
    Q_OBJECT
    const QFont m_desktopFont = QApplication::font();

private Q_SLOTS:
    void cleanup() { QApplication::setFont(m_desktopFont); }

    void captionsHaveTheirRoom_data()
    {
        QTest::addColumn<int>("language");
        QTest::addColumn<int>("points");
        for (int language = 1; language <= kInterfaceLanguageCount; ++language) {
            for (int points : {9, 12, 16})
                QTest::addRow("language %d, %d pt", language, points) << language << points;
        }
    }

    // The window and the Options dialog, menus aside.
    void captionsHaveTheirRoom()
    {
        QFETCH(int, language);
        QFETCH(int, points);
        QFont font = m_desktopFont;
        font.setPointSize(points);
        QApplication::setFont(font);
        WindowRig rig({{u"Language"_s, QString::number(language)}});
        FormMian& window = rig.open(rig.deps());
        Form2 options(rig.settings.get(), language, &window);
        options.adjustSize();
        options.layout()->activate();
        const QStringList found = cut(*window.centralWidget()) + cut(options);
        QVERIFY2(found.isEmpty(), qPrintable(found.join(u"; "_s)));
    }
};

QTEST_MAIN(TestCaptionFit)
#include "test_caption_fit.moc"
