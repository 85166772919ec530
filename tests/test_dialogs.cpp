#include "TestSupport.h"
#include "app/Settings.h"
#include "app/UniTextBox.h"
#include "desktop/Form2.h"
#include "desktop/ModFont.h"
#include "net/FormAbout.h"
#include "translate/ServiceAddresses.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QToolButton>

using namespace quillora;
using namespace Qt::StringLiterals;

namespace
{

bool hasThai(const QString& text)
{
    return std::any_of(text.begin(), text.end(), [](QChar c) { return c.script() == QChar::Script_Thai; });
}

} // namespace

class TestDialogs : public QObject
{
    Q_OBJECT

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
        about.show();
        QVERIFY(QTest::qWaitForWindowExposed(&about));
        QTest::mouseClick(about.findChild<QToolButton*>(u"Image1"_s), Qt::LeftButton);
        QDesktopServices::unsetUrlHandler(home.scheme());
        QCOMPARE(m_opened, QList{home});
        about.findChild<QDialogButtonBox*>(u"Command1"_s)->button(QDialogButtonBox::Ok)->click();
        QVERIFY(about.result() == QDialog::Accepted && !about.isVisible());
    }

private:
    QTemporaryDir m_dir;
    QList<QUrl> m_opened;
};

QTEST_MAIN(TestDialogs)
#include "test_dialogs.moc"
