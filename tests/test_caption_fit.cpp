#include "WindowRig.h"
#include "app/AccessKeys.h"
#include "app/StringTable.h"
#include "desktop/Form2.h"
#include "desktop/ModFont.h"
#include "net/Form1.h"
#include "net/FormAbout.h"

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
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

// Whether `name` is a text of the language's table, mnemonics dropped, "%1" standing for anything.
bool fromTable(int language, const QString& name)
{
    for (int id = language * 1000 + 1; id < language * 1000 + 1000; ++id) {
        if (!StringTable::contains(id))
            continue;
        const QStringList parts = StringTable::text(id).remove(u'&').trimmed().split(u"%1"_s);
        if (parts.size() == 1 ? name == parts[0] : name.startsWith(parts[0]) && name.endsWith(parts[1]))
            return true;
    }
    return false;
}

} // namespace

class TestCaptionFit : public QObject
{
    Q_OBJECT
    const QFont m_desktopFont = QApplication::font();

private Q_SLOTS:
    void cleanup() { QApplication::setFont(m_desktopFont); }

    void captions_data()
    {
        QTest::addColumn<int>("language");
        QTest::addColumn<int>("points");
        for (int language = 1; language <= kInterfaceLanguageCount; ++language) {
            for (int points : {9, 12, 16})
                QTest::addRow("language %d, %d pt", language, points) << language << points;
        }
    }

    // In the window and its dialogs every caption has its room (menus aside); every control Tab can
    // reach, shown or not, speaks a text of the interface language's table (a picker its label's); in
    // the window and each menu an access key is used once, and in Latin script every caption has one.
    void captions()
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

        FormAbout about(language);
        Form1 update(language, {}, QUrl(), {});
        FontChooser chooser(parseFont(kDefaultFont).font, language);
        for (QWidget* top : QWidgetList{&window, &options, &about, &update, &chooser}) {
            for (QWidget* w : top->findChildren<QWidget*>()) {
                if (!(w->focusPolicy() & Qt::TabFocus) || w->focusProxy() || w->window() != top)
                    continue;
                QAccessibleInterface* control = QAccessible::queryAccessibleInterface(w);
                const auto labels = control->relations(QAccessible::Label);
                if (control->role() == QAccessible::ComboBox)
                    control = labels.isEmpty() ? nullptr : labels[0].first;
                const QString name = control ? control->text(QAccessible::Name).trimmed() : QString();
                QVERIFY2(fromTable(language, name), qPrintable(w->objectName() + u": "_s + name));
            }
        }

        // The access-key groups: the window's controls with its menu bar's items, then each menu.
        QList<QStringList> groups{{}};
        for (QWidget* control : window.centralWidget()->findChildren<QWidget*>()) {
            const auto* label = qobject_cast<QLabel*>(control);
            if (control->inherits("QAbstractButton") || (label && label->buddy()))
                groups[0] << control->property("text").toString();
        }
        for (const QAction* item : window.menuBar()->actions())
            groups[0] << item->text();
        QList<QWidget*> menus = {window.menuBar()};
        for (QMenu* menu : window.findChildren<QMenu*>())
            menus << menu;
        for (const QWidget* menu : menus) {
            groups << QStringList();
            for (const QAction* item : menu->actions())
                groups.last() << (item->isVisible() ? item->text() : QString());
        }
        const bool latin = language == 1 || language >= 5;
        for (const QStringList& group : std::as_const(groups)) {
            QSet<QChar> keys;
            for (const QString& caption : group) {
                const QChar key = AccessKeys::keyOf(caption);
                QVERIFY2(key.isNull() ? !latin || caption.isEmpty() : !keys.contains(key),
                         qPrintable(caption));
                keys.insert(key);
            }
        }
    }
};

QTEST_MAIN(TestCaptionFit)
#include "test_caption_fit.moc"
