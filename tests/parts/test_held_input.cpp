#include "ui/HeldInput.h"

#include <QAction>
#include <QGuiApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace quillora;
using namespace Qt::StringLiterals;

class TestHeldInput : public QObject
{
    Q_OBJECT
    QWidget window;
    QLineEdit* box = new QLineEdit(&window);
    QPushButton* button = new QPushButton(&window);
    QStringList done;

private Q_SLOTS:
    void initTestCase()
    {
        button->move(0, 40);
        auto* shortcut = new QAction(&window);
        shortcut->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_T));
        window.addAction(shortcut);
        connect(shortcut, &QAction::triggered, this, [this] { done << u"shortcut:"_s + box->text(); });
        connect(button, &QPushButton::clicked, this, [this] { done << u"click:"_s + box->text(); });
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        box->setFocus();
    }
    void init()
    {
        box->clear();
        done.clear();
    }

    // Keys, clicks, shortcuts and deferred commands wait and then come in the order they were given;
    // Escape goes through at once.
    void keptInOrderEscapeAtOnce()
    {
        int escapes = 0;
        HeldInput held(&window, [&escapes] { ++escapes; });
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
        HeldInput held(&window, [] {});
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
};

QTEST_MAIN(TestHeldInput)
#include "test_held_input.moc"
