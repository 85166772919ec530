#include "app/WindowVisibility.h"

#include <QSignalSpy>
#include <QTest>
#include <QWidget>

using namespace quillora;
using namespace Qt::StringLiterals;

class TestWindowVisibility : public QObject
{
    Q_OBJECT
    qint64 now = 0;

private Q_SLOTS:
    // Without a tray a closed window waits minimised in the task bar; a tray that comes up takes it.
    void closedWindowWaitsForATray()
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
    }

    // A minimised report that comes right after a show answers our own earlier minimise and is
    // undone; a minimise the user asks for right after a show is kept.
    void lateReportsUndoneUsersMinimiseKept()
    {
        QWidget window;
        WindowVisibility visibility(&window, [this] { return now; });
        visibility.setTrayPresent(true);
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
    }
};

QTEST_MAIN(TestWindowVisibility)
#include "test_window_visibility.moc"
