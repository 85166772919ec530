#include "TestSupport.h"
#include "app/StringTable.h"
#include "app/WindowVisibility.h"
#include "desktop/ButtonRow.h"
#include "desktop/LanguagePickers.h"
#include "desktop/TextPanes.h"
#include "desktop/VisualStyle.h"
#include "desktop/WebPageBar.h"
#include "ui/FirstShowing.h"
#include "ui/FocusMarkStyle.h"
#include "ui/HeldInput.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocument>

using namespace quillora;
using namespace Qt::StringLiterals;

namespace
{

// The panes shown fill the result area: the result on top, the others side by side across the width.
bool panesTile(const TextPanes& panes)
{
    const QRect area(0, 188, 710, 239), result = panes.result()->geometry();
    QRect lower;
    for (const QWidget* pane : {panes.phonetic(), panes.dictionary()})
        if (!pane->isHidden())
            lower |= pane->geometry();
    return (result | lower) == area && !result.intersects(lower) && (lower.isEmpty() || lower.width() == 710);
}

} // namespace

// The main window's parts, each on its own.
class TestWindowParts : public QObject
{
    Q_OBJECT
    // The held input's window: a box, a button and a shortcut, each recording the box's text.
    QWidget typing;
    QLineEdit* box = new QLineEdit(&typing);
    QPushButton* button = new QPushButton(&typing);
    QStringList done;
    qint64 now = 0; // the visibility's clock

private Q_SLOTS:
    void initTestCase()
    {
        QApplication::setStyle(new FocusMarkStyle(QApplication::style()->name())); // as the program does
        button->move(0, 40);
        auto* shortcut = new QAction(&typing);
        shortcut->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_T));
        typing.addAction(shortcut);
        connect(shortcut, &QAction::triggered, this, [this] { done << u"shortcut:"_s + box->text(); });
        connect(button, &QPushButton::clicked, this, [this] { done << u"click:"_s + box->text(); });
        typing.show();
        QVERIFY(QTest::qWaitForWindowExposed(&typing));
        box->setFocus();
    }

    // Keys, clicks, shortcuts and deferred commands wait and then come in the order they were given;
    // Escape goes through at once.
    void keptInOrderEscapeAtOnce()
    {
        int escapes = 0;
        HeldInput held(&typing, [&escapes] { ++escapes; });
        held.hold();
        QTest::keyClicks(box, u"ab"_s);
        QTest::mouseClick(button, Qt::LeftButton);
        QTest::keyClick(box, Qt::Key_T, Qt::ControlModifier);
        held.defer([this] { done << u"deferred:"_s + box->text(); });
        QTest::keyClick(box, Qt::Key_C);
        QTest::keyClick(box, Qt::Key_Escape);
        QCOMPARE(box->text() + done.join(u' '), QString());
        QCOMPARE(escapes, 1);
        QVERIFY(QGuiApplication::overrideCursor());
        held.release();
        QVERIFY(!QGuiApplication::overrideCursor());
        QCOMPARE(box->text(), u"abc"_s);
        QCOMPARE(done, (QStringList{u"click:ab"_s, u"shortcut:ab"_s, u"deferred:ab"_s}));
        QTest::keyClick(box, Qt::Key_D); // not held any more
        QCOMPARE(box->text(), u"abcd"_s);
    }

    // Something applied that makes the window busy again keeps the rest waiting for the next end.
    void applyingStopsWhenHeldAgain()
    {
        HeldInput held(&typing, [] {});
        box->clear();
        held.hold();
        QTest::keyClick(box, Qt::Key_A);
        held.defer([&held] { held.hold(); });
        QTest::keyClick(box, Qt::Key_B);
        held.release();
        QCOMPARE(box->text(), u"a"_s);
        QVERIFY(held.holding());
        held.release();
        QCOMPARE(box->text(), u"ab"_s);
    }

    // Without a tray a closed window waits minimised in the task bar; a tray that comes up takes it.
    void windowVisibility()
    {
        QWidget window;
        WindowVisibility visibility(&window, [this] { return now; });
        QSignalSpy hidden(&visibility, &WindowVisibility::hiddenToTray);
        visibility.toggle();
        visibility.minimise();
        QVERIFY(window.isMinimized() && window.isVisible());
        visibility.setTrayPresent(true);
        QVERIFY(window.isHidden());
        QCOMPARE(hidden.count(), 1);
        // A minimised report that comes right after a show answers our own earlier minimise and is
        // undone; a minimise the user asks for right after a show is kept.
        visibility.toggle();
        visibility.toggle(); // our minimise, then a show a moment later
        QTRY_VERIFY(window.isHidden());
        now += 200;
        visibility.toggle();
        window.setWindowState(window.windowState() | Qt::WindowMinimized); // the report of the first
        QTRY_VERIFY(!window.isMinimized());
        QVERIFY(window.isVisible());
        now += 1000; // hidden, then shown again long after, and minimised by the user at once
        visibility.toggle();
        QTRY_VERIFY(window.isHidden());
        now += 5000;
        visibility.toggle();
        window.setWindowState(window.windowState() | Qt::WindowMinimized);
        QTRY_VERIFY(window.isHidden());
        QCOMPARE(hidden.count(), 4); // each time the window went to the tray
    }

    // Once, after the window is first on screen; a window left hidden does not wait.
    void firstShowing()
    {
        QWidget shown, hidden;
        int ranShown = 0, ranHidden = 0;
        new FirstShowing(&shown, [&ranShown] { ++ranShown; });
        new FirstShowing(&hidden, [&ranHidden] { ++ranHidden; });
        shown.show();
        QVERIFY(QTest::qWaitForWindowExposed(&shown));
        QCoreApplication::processEvents();
        QCOMPARE(ranShown, 1);
        QCOMPARE(ranHidden, 1);
        shown.hide();
        shown.show();
        QTest::qWait(1200);
        QCOMPARE(ranShown, 1);
    }

    // The check boxes tile the result area; the reading direction and the font reach the boxes.
    void textPanes()
    {
        QWidget pic1;
        int pasted = 0;
        TextPanes panes(&pic1, [&pasted] { ++pasted; });
        auto* check1 = pic1.findChild<QCheckBox*>(u"Check1"_s);
        for (const auto& [phonetic, dictionary] : {std::pair(false, false), std::pair(true, false),
                                                   std::pair(true, true), std::pair(false, true)}) {
            panes.setPhoneticShown(phonetic);
            panes.setDictionaryShown(dictionary);
            QCOMPARE(std::pair(!panes.phonetic()->isHidden(), !panes.dictionary()->isHidden()),
                     std::pair(phonetic, dictionary));
            QVERIFY(panesTile(panes));
            check1->toggle(); // the user's tick acts at once
            QCOMPARE(panes.phonetic()->isHidden(), phonetic);
            QVERIFY(panesTile(panes));
            check1->toggle();
        }
        QVERIFY(pic1.findChild<QCheckBox*>(u"Check2"_s)->isChecked());
        QTest::keyClick(panes.source(), Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(pasted, 1);
        panes.setSourceRightToLeft(true);
        panes.setTargetRightToLeft(true);
        const auto directions = [&panes] {
            QList<Qt::LayoutDirection> all;
            for (const QWidget* box : panes.boxes())
                all << box->layoutDirection();
            return all;
        };
        QCOMPARE(directions(), (QList{Qt::RightToLeft, Qt::RightToLeft, Qt::RightToLeft, Qt::LeftToRight}));
        QVERIFY(panes.result()->document()->defaultTextOption().alignment() & Qt::AlignRight);
        panes.setSourceRightToLeft(false);
        panes.setTargetRightToLeft(false);
        QCOMPARE(directions(), (QList{Qt::LeftToRight, Qt::LeftToRight, Qt::LeftToRight, Qt::LeftToRight}));
        QCOMPARE(panes.result()->document()->defaultTextOption().alignment(),
                 panes.dictionary()->document()->defaultTextOption().alignment());
        FontSetting font = parseFont(u"DejaVu Serif|700|True|15|0|False|False|255"_s).font;
        panes.applyFont(font);
        for (const QWidget* box : panes.boxes()) {
            QCOMPARE(box->font().family(), u"DejaVu Serif"_s);
            QVERIFY(box->font().bold() && box->font().italic() && box->font().pointSize() == 15);
            QCOMPARE(box->palette().color(QPalette::Text), QColor(Qt::red)); // colour 255 is red
        }
    }

    // The first filling starts at detection into English; a refill in another language keeps the rows.
    void languagePickerRows()
    {
        QWidget pic1;
        LanguagePickers pickers(&pic1);
        auto* combo1 = pic1.findChild<QComboBox*>(u"Combo1"_s);
        auto* combo2 = pic1.findChild<QComboBox*>(u"Combo2"_s);
        pickers.applyCaptions(1);
        QCOMPARE(std::pair(pickers.sourceRow(), pickers.targetRow()), std::pair(0, 15));
        QCOMPARE(combo2->count(), 61);
        combo2->setCurrentIndex(21);
        combo1->setCurrentIndex(47);
        pickers.applyCaptions(6);
        QCOMPARE(std::pair(pickers.sourceRow(), pickers.targetRow()), std::pair(21, 47));
        // The arrow keys pass over the separator row, which the program may still set (below).
        combo2->setCurrentIndex(0);
        QTest::keyClick(combo2, Qt::Key_Down);
        QCOMPARE(pickers.sourceRow(), 2);
        QTest::keyClick(combo2, Qt::Key_Up);
        QCOMPARE(pickers.sourceRow(), 0);
        QCOMPARE(combo2->itemText(0) + combo1->itemText(47),
                 StringTable::text(6, DetectLanguage) + StringTable::text(6, LanguageNames + 47));
        QCOMPARE(pic1.findChild<QLabel*>(u"fromLabel"_s)->text(), StringTable::text(6, LabelFrom));
        // Every row change says what it means; a row the picker lacks keeps the row and says it again.
        QSignalSpy source(&pickers, &LanguagePickers::sourceChosen);
        QSignalSpy target(&pickers, &LanguagePickers::targetChosen);
        pickers.setSourceRow(4); // Arabic
        pickers.setTargetRow(25);
        const auto sourceEffect = source.last().at(1).value<SourceRowEffect>();
        QCOMPARE(sourceEffect.sourceCode + u' ' + target.last().at(1).value<TargetRowEffect>().targetCode,
                 u"ar iw"_s);
        QVERIFY(sourceEffect.rightToLeft && sourceEffect.swapEnabled);
        pickers.setSourceRow(99);
        pickers.setTargetRow(-4);
        QCOMPARE(std::pair(pickers.sourceRow(), pickers.targetRow()), std::pair(4, 25));
        QCOMPARE(std::pair(source.count(), target.count()), std::pair(qsizetype(2), qsizetype(2)));
        pickers.setSourceRow(1); // the separator means detection, as row 0 does
        QVERIFY(!source.last().at(1).value<SourceRowEffect>().swapEnabled);
    }

    // The typed address goes out trimmed; the list remembers the last ten as typed.
    void opensAndRemembersTen()
    {
        QWidget parent;
        QStringList opened;
        WebPageBar bar(
            &parent, 2, 435, [](const QString& typed) { return u"translated:"_s + typed; },
            [&opened](const QString& address, const OpenFailed&) { opened << address; });
        auto* address = parent.findChild<QComboBox*>(u"ucComText"_s);
        auto* go = parent.findChild<QAbstractButton*>(u"jcbutton1"_s);
        for (int i = 0; i <= 10; ++i) {
            bar.setAddressText(i ? u"site%1.example"_s.arg(i) : u"  example.org/a b?x=1 "_s);
            go->click();
        }
        QCOMPARE(opened.constFirst(), u"translated:example.org/a b?x=1"_s);
        QCOMPARE(opened.size(), 11);
        QCOMPARE(address->count(), 10);
        QCOMPARE(address->itemText(0), u"site1.example"_s);
        QCOMPARE(address->currentText(), u"site10.example"_s);
    }

    // xdg-open runs on its own: what it says when it fails is the reason; where it is missing, the
    // fallback is asked.
    void desktopOpenerSaysWhy()
    {
        QTemporaryDir bin;
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", bin.path().toLocal8Bit());
        QStringList reasons;
        QList<QUrl> asked;
        for (const char* script : {"exit 0", "echo tried >&2; echo \"no browser for $1\" >&2; exit 3", ""}) {
            QFile::remove(bin.filePath(u"xdg-open"_s));
            if (*script)
                QVERIFY(
                    test::writeFile(bin.filePath(u"xdg-open"_s), QByteArray("#!/bin/sh\n") + script) &&
                    QFile::setPermissions(bin.filePath(u"xdg-open"_s), QFile::ReadOwner | QFile::ExeOwner));
            openWithDesktop(
                u"http://a.example/b c"_s, [&asked](const QUrl& url) { return asked << url, false; },
                [&reasons](const QString& reason) { reasons << reason; });
            QTRY_VERIFY(qApp->findChildren<QProcess*>().isEmpty());
        }
        qputenv("PATH", path);
        QCOMPARE(reasons.size(), 2);
        QCOMPARE(reasons.constFirst(), u"no browser for http://a.example/b c"_s);
        QCOMPARE(asked, QList<QUrl>{QUrl(u"http://a.example/b%20c"_s)});
    }

    void markAroundTheFocus_data()
    {
        QTest::addColumn<int>("style");
        QTest::addColumn<QString>("control");
        for (int style = 0; style <= 3; ++style) {
            for (const QString& name : {u"jcbutton_0"_s, u"Check1"_s, u"Combo2"_s, u"sourceBox"_s})
                QTest::addRow("%d %s", style, qPrintable(name)) << style << name;
        }
    }

    // The control the keyboard moved to has (at least) its outer two pixels in the highlight colour.
    void markAroundTheFocus()
    {
        QFETCH(int, style);
        QFETCH(QString, control);
        QWidget pic1;
        pic1.resize(720, 430);
        TextPanes panes(&pic1, [] {});
        LanguagePickers pickers(&pic1);
        ButtonRow buttons(&pic1);
        applyVisualStyle(style, &pic1, panes.checkBoxes(), buttons.buttons());
        pic1.show();
        QVERIFY(QTest::qWaitForWindowActive(&pic1));
        auto* focused = pic1.findChild<QWidget*>(control);
        focused->clearFocus(); // the first box may hold the focus the window got
        focused->setFocus(Qt::ShortcutFocusReason);
        QTRY_VERIFY(focused->hasFocus());
        const QImage image = focused->grab().toImage();
        const QRgb highlight = focused->palette().color(QPalette::Active, QPalette::Highlight).rgb();
        int marked = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                marked += image.pixel(x, y) == highlight;
        }
        const int band = 4 * (image.width() + image.height()) - 16;
        QVERIFY2(marked >= band, qPrintable(u"%1 of %2"_s.arg(marked).arg(band)));
    }
};

QTEST_MAIN(TestWindowParts)
#include "test_window_parts.moc"
