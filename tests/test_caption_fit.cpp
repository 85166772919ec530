#include "WindowRig.h"
#include "app/StringTable.h"
#include "desktop/Form2.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
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

// Width by QFontMetrics, height by a laid-out line, so that fallback fonts (Thai, Chinese) count.
QSize textSize(const QString& text, const QFont& font)
{
    QSize size(0, 0);
    for (QString line : text.split(u'\n')) {
        line.remove(u'&');
        QTextLayout layout(line, font);
        layout.beginLayout();
        QTextLine laid = layout.createLine();
        laid.setLineWidth(1e6);
        layout.endLayout();
        size = {std::max(size.width(), QFontMetrics(font).horizontalAdvance(line)),
                size.height() + int(std::ceil(laid.height()))};
    }
    return size;
}

// The room a caption needs: its text and the margins the widget's style puts around it; a picker
// needs its widest item. Text fields hold the user's text, not a caption.
std::optional<QSize> needed(QWidget* w)
{
    constexpr int frame = 2; // the border lines of a button or picker
    QStyle* style = w->style();
    if (auto* label = qobject_cast<QLabel*>(w))
        return textSize(label->text(), w->font());
    if (auto* combo = qobject_cast<QComboBox*>(w)) {
        if (combo->isEditable())
            return std::nullopt;
        QSize widest(0, 0);
        for (int i = 0; i < combo->count(); ++i)
            widest = widest.expandedTo(textSize(combo->itemText(i), w->font()));
        QStyleOptionComboBox option;
        option.initFrom(w);
        return QSize(style->sizeFromContents(QStyle::CT_ComboBox, &option, widest, w).width(),
                     widest.height() + frame);
    }
    auto* button = qobject_cast<QAbstractButton*>(w);
    if (!button || button->text().isEmpty())
        return std::nullopt;
    const QSize text = textSize(button->text(), w->font());
    QStyleOptionButton option;
    option.initFrom(w);
    option.text = button->text();
    auto* push = qobject_cast<QPushButton*>(w);
    if (push && (push->autoDefault() || push->isDefault()))
        option.features |= QStyleOptionButton::AutoDefaultButton;
    const auto type = push ? QStyle::CT_PushButton : QStyle::CT_CheckBox;
    return QSize(style->sizeFromContents(type, &option, text, w).width(), text.height() + (push ? frame : 0));
}

// What is cut among the captioned children of `top`: too small for its text, outside its parent or
// over another caption.
QStringList cut(const QWidget& top)
{
    QStringList found;
    QList<QWidget*> placed;
    for (QWidget* w : top.findChildren<QWidget*>()) {
        const std::optional<QSize> need = w->isVisibleTo(&top) ? needed(w) : std::nullopt;
        if (!need)
            continue;
        const QString name = w->objectName() + u' ' + w->property("text").toString();
        if (w->width() < need->width() || w->height() < need->height())
            found << u"%1: %2x%3 < %4x%5"_s.arg(name)
                         .arg(w->width())
                         .arg(w->height())
                         .arg(need->width())
                         .arg(need->height());
        if (!w->parentWidget()->rect().contains(w->geometry()))
            found << name + u": outside its parent"_s;
        for (const QWidget* other : placed) {
            if (other->parentWidget() == w->parentWidget() && other->geometry().intersects(w->geometry()))
                found << name + u": over "_s + other->objectName();
        }
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

    // Menus aside: the window and the Options dialog.
    void captionsHaveTheirRoom()
    {
        QFETCH(int, language);
        QFETCH(int, points);
        QFont font = m_desktopFont;
        font.setPointSize(points);
        QApplication::setFont(font);
        WindowRig rig({{u"Language"_s, QString::number(language)}});
        FormMian& window = rig.open(rig.deps());
        const QStringList inWindow = cut(*window.centralWidget());
        QVERIFY2(inWindow.isEmpty(), qPrintable(inWindow.join(u"; "_s)));
        Form2 options(rig.settings.get(), language, &window);
        options.adjustSize();
        options.layout()->activate();
        const QStringList inOptions = cut(options);
        QVERIFY2(inOptions.isEmpty(), qPrintable(inOptions.join(u"; "_s)));
    }
};

QTEST_MAIN(TestCaptionFit)
#include "test_caption_fit.moc"
