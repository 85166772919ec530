#include "TestSupport.h"
#include "app/StringTable.h"
#include "desktop/AutoStart.h"
#include "desktop/ModmonClip.h"
#include "x11/ClipboardDesk.h"

#include <QAction>
#include <QApplication>
#include <QBuffer>
#include <QClipboard>
#include <QFile>
#include <QImage>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <X11/keysym.h>
#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>

using namespace quillora;
using quillora::test::ClipboardDesk;
using quillora::test::StandinService;
using quillora::test::Xclip;

namespace
{

QString french(const QString& text)
{
    return StandinService::translate(text, QStringLiteral("fr"));
}

QByteArray smallPng()
{
    QImage image(8, 8, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

// A second X client holding F11 the way another program would.
class F11Holder
{
public:
    F11Holder() : m_c(xcb_connect(nullptr, nullptr))
    {
        const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_c)).data->root;
        xcb_key_symbols_t* symbols = xcb_key_symbols_alloc(m_c);
        xcb_keycode_t* codes = xcb_key_symbols_get_keycode(symbols, XK_F11);
        xcb_key_symbols_free(symbols);
        if (!codes)
            return;
        xcb_generic_error_t* error = xcb_request_check(
            m_c, xcb_grab_key_checked(m_c, 0, root, 0, codes[0], XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC));
        m_held = !error;
        free(error);
        free(codes);
    }
    ~F11Holder() { xcb_disconnect(m_c); }
    bool held() const { return m_held; }

private:
    xcb_connection_t* m_c;
    bool m_held = false;
};

bool pressF11()
{
    return test::runCommand(QStringLiteral("xdotool"), {QStringLiteral("key"), QStringLiteral("F11")}).ok();
}

} // namespace

class ClipboardX11Test : public QObject
{
    Q_OBJECT

private:
    Xclip m_xclip;

private Q_SLOTS:
    void initTestCase()
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            QSKIP("needs an X server");
    }

    void init()
    {
        // Nothing from the last case may be taken at load.
        QGuiApplication::clipboard()->clear();
        QTRY_VERIFY(Xclip::read(2000).isEmpty());
    }

    void cleanup() { m_xclip.endAll(); }

    void copyIsTranslatedOnce()
    {
        ClipboardDesk desk({});
        desk.window().sourceBox()->setPlainText(QStringLiteral("earlier text"));
        m_xclip.copy("hello world");
        QTRY_COMPARE(desk.window().resultBox()->toPlainText(), french(QStringLiteral("hello world")));
        QCOMPARE(desk.window().sourceBox()->toPlainText(), QStringLiteral("hello world"));
        QVERIFY(!desk.window().phoneticBox()->toPlainText().isEmpty());
        QTest::qWait(800);
        QCOMPARE(desk.translationRequests(), 1);
        QCOMPARE(desk.lastRequestText(), QStringLiteral("hello world"));
        QVERIFY(desk.notices.isEmpty());
    }

    void autoCopyDoesNotFeedBack()
    {
        ClipboardDesk desk({/*autoCopy*/ true});
        m_xclip.copy("hello");
        QTRY_COMPARE(Xclip::read(), french(QStringLiteral("hello")));
        QTest::qWait(1500);
        QCOMPARE(desk.translationRequests(), 1);

        // The next copy elsewhere takes the clipboard back from the program and is translated.
        m_xclip.copy("world");
        QTRY_COMPARE(Xclip::read(), french(QStringLiteral("world")));
        QTest::qWait(1500);
        QCOMPARE(desk.translationRequests(), 2);
        QCOMPARE(desk.lastRequestText(), QStringLiteral("world"));
        QCOMPARE(desk.window().sourceBox()->toPlainText(), QStringLiteral("world"));
    }

    void textAlreadyThereIsTakenAtLoad()
    {
        m_xclip.copy("good morning");
        QTRY_COMPARE(Xclip::read(), QStringLiteral("good morning"));
        ClipboardDesk desk({});
        QTRY_COMPARE(desk.window().resultBox()->toPlainText(), french(QStringLiteral("good morning")));
        QTest::qWait(500);
        QCOMPARE(desk.translationRequests(), 1);
    }

    // Clearing before the copy, as the classic Copy did, reports the clear late under X11.
    void ownCopyAfterClearIsSwallowed()
    {
        ClipboardMonitor monitor(QGuiApplication::clipboard());
        monitor.setMonitoring(true);
        QSignalSpy copied(&monitor, &ClipboardMonitor::textCopied);
        QSignalSpy changed(QGuiApplication::clipboard(), &QClipboard::dataChanged);
        for (int i = 0; i < 3; ++i) {
            m_xclip.copy(QStringLiteral("other %1").arg(i).toUtf8());
            QTRY_COMPARE(copied.size(), i + 1);
            const int before = changed.size();
            QGuiApplication::clipboard()->clear();
            monitor.markOwnCopy();
            QGuiApplication::clipboard()->setText(QStringLiteral("own %1").arg(i));
            QTest::qWait(300);
            QVERIFY(changed.size() > before);
            QCOMPARE(copied.size(), i + 1);
            QCOMPARE(Xclip::read(), QStringLiteral("own %1").arg(i));
        }
        qInfo() << "clipboard notices for three copies by others and three own:" << changed.size();
    }

    void lateRepeatOfTheOwnCopyIsSwallowed()
    {
        ClipboardMonitor monitor(QGuiApplication::clipboard());
        monitor.setMonitoring(true);
        QSignalSpy copied(&monitor, &ClipboardMonitor::textCopied);
        monitor.markOwnCopy();
        QGuiApplication::clipboard()->setText(QStringLiteral("own result"));
        QVERIFY(QGuiApplication::clipboard()->ownsClipboard());
        Q_EMIT QGuiApplication::clipboard()->dataChanged();
        QTest::qWait(100);
        QCOMPARE(copied.size(), 0);
        // Another program copying the very same text is a new copy.
        m_xclip.copy("own result");
        QTRY_COMPARE(copied.size(), 1);
        QCOMPARE(copied.at(0).at(0).toString(), QStringLiteral("own result"));
    }

    void picturesAndFilesSendNothing_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QString>("type");
        QTest::newRow("png") << smallPng() << QStringLiteral("image/png");
        QTest::newRow("file list") << QByteArray("file:///tmp/notes.txt\r\n")
                                   << QStringLiteral("text/uri-list");
    }

    void picturesAndFilesSendNothing()
    {
        QFETCH(QByteArray, data);
        QFETCH(QString, type);
        ClipboardDesk desk({});
        desk.window().sourceBox()->setPlainText(QStringLiteral("keep me"));
        QSignalSpy changed(QGuiApplication::clipboard(), &QClipboard::dataChanged);
        m_xclip.copy(data, type);
        QTRY_VERIFY(changed.size() >= 1);
        QTest::qWait(800);
        QCOMPARE(desk.translationRequests(), 0);
        QCOMPARE(desk.window().sourceBox()->toPlainText(), QStringLiteral("keep me"));
        // Monitoring was on all along.
        m_xclip.copy("hello");
        QTRY_COMPARE(desk.translationRequests(), 1);
    }

    void copiesDuringASlowTranslation()
    {
        ClipboardDesk desk({false, false, /*serviceDelayMs*/ 1500});
        // The translation waits in the window's own event loop, so the ten copies are driven from
        // timers that run inside it, started when the first request arrives.
        QTimer series;
        int started = 0;
        int startedBeforeSecondRequest = -1;
        connect(&series, &QTimer::timeout, this, [&] {
            m_xclip.copy(QStringLiteral("copy %1").arg(started++).toUtf8());
            if (started == 10)
                series.stop();
        });
        connect(&desk.service(), &StandinService::requestReceived, this, [&] {
            if (desk.translationRequests() == 1)
                series.start(60);
            else if (startedBeforeSecondRequest < 0)
                startedBeforeSecondRequest = started;
        });
        m_xclip.copy("first");
        QTRY_COMPARE_WITH_TIMEOUT(desk.translationRequests(), 2, 15000);
        QCOMPARE(startedBeforeSecondRequest, 10);
        QCOMPARE(desk.lastRequestText(), QStringLiteral("copy 9"));
        QCOMPARE(Xclip::read(), QStringLiteral("copy 9"));
        QTRY_COMPARE_WITH_TIMEOUT(desk.window().resultBox()->toPlainText(), french(QStringLiteral("copy 9")),
                                  10000);
        QTest::qWait(2000);
        QCOMPARE(desk.translationRequests(), 2);
    }

    void f11TogglesTheWindow()
    {
        ClipboardDesk desk({false, /*hotKey*/ true});
        FormMian& window = desk.window();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QVERIFY(window.statusMessage().isEmpty());
        QVERIFY(pressF11());
        QTRY_VERIFY(window.isMinimized() || !window.isVisible());
        QVERIFY(pressF11());
        QTRY_VERIFY(window.isVisible() && !window.isMinimized());
        QVERIFY(pressF11());
        QTRY_VERIFY(window.isMinimized() || !window.isVisible());
    }

    void f11HeldByAnotherProgram()
    {
        F11Holder holder;
        QVERIFY(holder.held());
        ClipboardDesk desk({false, /*hotKey*/ true});
        FormMian& window = desk.window();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QCOMPARE(window.statusMessage(), uiText(window.interfaceLanguage(), MsgHotKeyTaken));
        QVERIFY(pressF11());
        QTest::qWait(300);
        QVERIFY(window.isVisible() && !window.isMinimized());
        // Nothing else is affected.
        m_xclip.copy("hello");
        QTRY_COMPARE(window.resultBox()->toPlainText(), french(QStringLiteral("hello")));
    }

    void autoRunMenuItem()
    {
        ClipboardDesk desk({});
        QAction* item = desk.window().action(QStringLiteral("menuS0"));
        QVERIFY(item && item->isCheckable());
        QVERIFY(!item->isChecked());
        const QString path = autostartFilePath();
        QVERIFY(!QFile::exists(path));

        item->trigger();
        QVERIFY(item->isChecked());
        QVERIFY(QFile::exists(path));
        QVERIFY(isAutoRunRegistered(desk.programPath()));
        QVERIFY(
            QString::fromUtf8(test::readFile(path))
                .contains(QLatin1String("\nExec=") + startupCommand(desk.programPath()) + QLatin1Char('\n')));
        const test::CommandResult valid = test::runCommand(QStringLiteral("desktop-file-validate"), {path});
        QVERIFY2(valid.ok(), valid.out.constData());

        item->trigger();
        QVERIFY(!item->isChecked());
        QVERIFY(!QFile::exists(path));
    }
};

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    ClipboardX11Test test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_clipboard_x11.moc"
