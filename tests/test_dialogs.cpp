#include "TestSupport.h"
#include "WindowRig.h"
#include "app/AccessKeys.h"
#include "app/Settings.h"
#include "app/StringTable.h"
#include "app/UniTextBox.h"
#include "desktop/Form2.h"
#include "desktop/ModFont.h"
#include "net/Form1.h"
#include "net/FormAbout.h"
#include "translate/ServiceAddresses.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QStyleOption>
#include <QTemporaryDir>
#include <QTest>
#include <QTextLayout>
#include <QTimer>
#include <QToolButton>

using namespace quillora;
using namespace quillora::test;
using namespace Qt::StringLiterals;

namespace
{

bool hasThai(const QString& text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.script() == QChar::Script_Thai; });
}

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
            QDebug(&found.emplace_back())
                << w->objectName() << w->property("text").toString() << at << "needs" << *need;
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

class TestDialogs : public QObject
{
    Q_OBJECT
    const QFont m_desktopFont = QApplication::font();

public Q_SLOTS:
    void openUrl(const QUrl& url) { m_opened.append(url); }

private Q_SLOTS:
    // Shown, and reached by Tab, in this order: Combo2, Combo3, Check3, Check4, Combo1, Check1, Check2,
    // then OK and Close. The captions and names follow the interface language.
    void form2Loads()
    {
        const QList<std::pair<QByteArray, QList<int>>> rows{
            {QByteArray(), {0, 15, 1, 1, 15, 1, 1}},   // no key at all
            {"1|2|0|0|3|x|0", {1, 2, 0, 0, 3, 1, 1}}}; // in stored order: field 6 keeps its default too
        for (const auto& [stored, shown] : rows) {
            const QString path = m_dir.filePath(u"form2-%1.conf"_s.arg(rows.indexOf({stored, shown})));
            QVERIFY(stored.isNull() || test::writeFile(path, "[Setup]\nOptions=" + stored + "\n"));
            Settings settings(path);
            Form2 form(&settings, 1);
            QCOMPARE((QList{form.combo2()->currentIndex(), form.combo3()->currentIndex(),
                            int(form.check(3)->isChecked()), int(form.check(4)->isChecked()),
                            form.combo1()->currentIndex(), int(form.check(1)->isChecked()),
                            int(form.check(2)->isChecked())}),
                     shown);
        }
        Settings settings(m_dir.filePath(u"captions.conf"_s));
        Form2 thai(&settings, 4);
        QVERIFY(hasThai(thai.windowTitle()) && hasThai(thai.combo1()->itemText(15)));
        QStringList tabs;
        for (QWidget* w = thai.nextInFocusChain(); w != &thai; w = w->nextInFocusChain())
            tabs << (w->focusPolicy() & Qt::TabFocus && !w->focusProxy() ? w->objectName() : QString());
        QCOMPARE(tabs.join(u' ').simplified(),
                 u"Combo2 Combo3 Check3 Check4 Combo1 Check1 Check2 Command1 Command2"_s);
    }

    // Set, pasted or typed, a text comes back unchanged, also where Qt breaks lines at U+FDD0 and U+FDD1.
    void textBoxesGiveBackWhatTheyWereGiven()
    {
        QWidget parent;
        QPlainTextEdit* box = createTextBox(&parent, QRect(0, 0, 200, 100));
        const QString exact = u"a\uFDD0b\r\nc\uFDD1\rd\u2029\n"_s;
        setBoxText(box, exact);
        QCOMPARE(boxText(box), exact);
        box->moveCursor(QTextCursor::NextCharacter);
        insertBoxText(box, u"\uFDD1x\r\n"_s);
        QKeyEvent typed(QEvent::KeyPress, 0, Qt::NoModifier, u"\uFDD0"_s);
        QApplication::sendEvent(box, &typed);
        QInputMethodEvent composed;
        composed.setCommitString(u"y\uFDD1"_s);
        QApplication::sendEvent(box, &composed);
        QCOMPARE(boxText(box), u"a\uFDD1x\r\n\uFDD0y\uFDD1\uFDD0b\r\nc\uFDD1\rd\u2029\n"_s);
    }

    void fontChooserOkAndCancel()
    {
        // The chooser is modal: it is driven as soon as its own event loop runs.
        QTimer::singleShot(0, [] {
            auto* dialog = qobject_cast<FontChooser*>(QApplication::activeModalWidget());
            QVERIFY(dialog);
            auto* size = dialog->findChild<QSpinBox*>(u"fontSize"_s);
            size->setValue(500);
            QCOMPARE(dialog->setting().pointSize, 72);
            size->setValue(30);
            dialog->findChild<QCheckBox*>(u"fontBold"_s)->setChecked(true);
            auto* charset = dialog->findChild<QComboBox*>(u"fontCharset"_s);
            charset->setCurrentIndex(charset->findData(222));
            dialog->setColour(QColor(0, 0, 255));
            dialog->findChild<QDialogButtonBox*>(u"fontButtons"_s)->button(QDialogButtonBox::Ok)->click();
        });
        const FontSetting chosen = ChooseFontFor(parseFont(kDefaultFont).font, 1, nullptr);
        QCOMPARE(formatFont(chosen), u"Tahoma|700|False|30|222|False|False|16711680"_s);

        QTimer::singleShot(0, [] {
            auto* dialog = QApplication::activeModalWidget();
            QVERIFY(dialog);
            dialog->findChild<QSpinBox*>(u"fontSize"_s)->setValue(40);
            dialog->findChild<QDialogButtonBox*>(u"fontButtons"_s)->button(QDialogButtonBox::Cancel)->click();
        });
        QCOMPARE(ChooseFontFor(chosen, 1, nullptr), chosen);
        // Untouched, a charset the list does not know is kept too.
        FontSetting odd = parseFont(u"Tahoma|300|True|9|77|False|True|32768"_s).font;
        QCOMPARE(FontChooser(odd, 1).setting(), odd);
    }

    // The texts come from the interface language's table; the picture opens the home page.
    void about()
    {
        const QUrl home = ServiceAddresses::fromEnvironment().productHome();
        QDesktopServices::setUrlHandler(home.scheme(), this, "openUrl");
        FormAbout about(4);
        QVERIFY(hasThai(about.windowTitle()) && hasThai(about.texts().value(0)));
        QVERIFY(shownOnScreen(about));
        QTest::mouseClick(about.findChild<QToolButton*>(u"Image1"_s), Qt::LeftButton);
        QDesktopServices::unsetUrlHandler(home.scheme());
        QCOMPARE(m_opened, QList{home});
        about.findChild<QDialogButtonBox*>(u"Command1"_s)->button(QDialogButtonBox::Ok)->click();
        QVERIFY(about.result() == QDialog::Accepted && !about.isVisible());
    }

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

private:
    QTemporaryDir m_dir;
    QList<QUrl> m_opened;
};

QTEST_MAIN(TestDialogs)
#include "test_dialogs.moc"
