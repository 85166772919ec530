#include "TestSupport.h"
#include "desktop/PortalHotKey.h"
#include "desktop/X11HotKey.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>
#include <X11/keysym.h>
#include <memory>
#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>

using namespace quillora;

namespace
{

bool xdotool(const QStringList& args)
{
    return test::runCommand(QStringLiteral("xdotool"), args).ok();
}

// Another X client on its own connection, the way a second program would hold keys.
class OtherClient
{
public:
    OtherClient() : m_c(xcb_connect(nullptr, nullptr))
    {
        m_root = xcb_setup_roots_iterator(xcb_get_setup(m_c)).data->root;
        xcb_key_symbols_t* symbols = xcb_key_symbols_alloc(m_c);
        xcb_keycode_t* codes = xcb_key_symbols_get_keycode(symbols, XK_F11);
        m_f11 = codes ? codes[0] : 0;
        free(codes);
        xcb_key_symbols_free(symbols);
    }
    ~OtherClient() { xcb_disconnect(m_c); }

    // Grabs F11 with `modifiers`; the X error code, 0 on success.
    int grabF11(uint16_t modifiers)
    {
        const auto cookie =
            xcb_grab_key_checked(m_c, 0, m_root, modifiers, m_f11, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
        xcb_generic_error_t* error = xcb_request_check(m_c, cookie);
        const int code = error ? error->error_code : 0;
        free(error);
        return code;
    }
    void ungrabF11(uint16_t modifiers)
    {
        xcb_ungrab_key(m_c, m_f11, m_root, modifiers);
        xcb_flush(m_c);
    }
    bool valid() const { return !xcb_connection_has_error(m_c) && m_f11 != 0; }

private:
    xcb_connection_t* m_c;
    xcb_window_t m_root = 0;
    xcb_keycode_t m_f11 = 0;
};

constexpr uint16_t kNumLock = XCB_MOD_MASK_2; // where Xvfb's default map puts NumLock

} // namespace

class HotKeyX11Test : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        if (QGuiApplication::platformName() != QLatin1String("xcb"))
            QSKIP("needs an X server");
        QVERIFY(OtherClient().valid());
    }

    void createPicksByPlatformAndEnvironment()
    {
        qunsetenv("QUILLORA_HOTKEY");
        QVERIFY(dynamic_cast<X11HotKey*>(GlobalHotKey::create().get()));
        qputenv("QUILLORA_HOTKEY", "x11");
        QVERIFY(dynamic_cast<X11HotKey*>(GlobalHotKey::create().get()));
        qputenv("QUILLORA_HOTKEY", "portal");
        QVERIFY(dynamic_cast<PortalHotKey*>(GlobalHotKey::create().get()));
        qputenv("QUILLORA_HOTKEY", "none");
        auto none = GlobalHotKey::create();
        QSignalSpy unavailable(none.get(), &GlobalHotKey::unavailable);
        none->registerKey();
        none->registerKey();
        QCOMPARE(unavailable.size(), 1);
        qunsetenv("QUILLORA_HOTKEY");
    }

    void keyPressAnywhereActivates_data()
    {
        QTest::addColumn<QStringList>("locks");
        QTest::newRow("plain") << QStringList();
        QTest::newRow("NumLock") << QStringList{QStringLiteral("Num_Lock")};
        QTest::newRow("CapsLock") << QStringList{QStringLiteral("Caps_Lock")};
        QTest::newRow("both") << QStringList{QStringLiteral("Num_Lock"), QStringLiteral("Caps_Lock")};
    }

    void keyPressAnywhereActivates()
    {
        QFETCH(QStringList, locks);
        auto key = GlobalHotKey::create();
        QSignalSpy activated(key.get(), &GlobalHotKey::activated);
        QSignalSpy unavailable(key.get(), &GlobalHotKey::unavailable);
        key->registerKey();
        QCOMPARE(unavailable.size(), 0);
        for (const QString& lock : locks)
            QVERIFY(xdotool({QStringLiteral("key"), lock}));
        QVERIFY(xdotool({QStringLiteral("key"), QStringLiteral("F11")}));
        QTRY_COMPARE(activated.size(), 1);
        QVERIFY(xdotool({QStringLiteral("key"), QStringLiteral("F10")}));
        QVERIFY(xdotool({QStringLiteral("key"), QStringLiteral("F11")}));
        QTRY_COMPARE(activated.size(), 2);
        QTest::qWait(100);
        QCOMPARE(activated.size(), 2);
        for (const QString& lock : locks)
            QVERIFY(xdotool({QStringLiteral("key"), lock}));
    }

    void keyHeldByAnotherProgram()
    {
        OtherClient other;
        QCOMPARE(other.grabF11(0), 0);
        auto key = GlobalHotKey::create();
        QSignalSpy activated(key.get(), &GlobalHotKey::activated);
        QSignalSpy unavailable(key.get(), &GlobalHotKey::unavailable);
        key->registerKey();
        QCOMPARE(unavailable.size(), 1);
        QVERIFY(unavailable.at(0).at(0).toString().contains(QLatin1String("another program")));
        key->registerKey();
        QCOMPARE(unavailable.size(), 1);
        QVERIFY(!static_cast<X11HotKey*>(key.get())->isRegistered());
        // The partial grabs were given back: the other program can take every variant.
        QCOMPARE(other.grabF11(XCB_MOD_MASK_LOCK), 0);
        QCOMPARE(other.grabF11(kNumLock), 0);
        QCOMPARE(other.grabF11(kNumLock | XCB_MOD_MASK_LOCK), 0);
        QVERIFY(xdotool({QStringLiteral("key"), QStringLiteral("F11")}));
        QTest::qWait(150);
        QCOMPARE(activated.size(), 0);
    }

    void releaseGivesEveryVariantBack()
    {
        OtherClient other;
        {
            auto key = GlobalHotKey::create();
            key->registerKey();
            QVERIFY(static_cast<X11HotKey*>(key.get())->isRegistered());
            QCOMPARE(other.grabF11(0), 10);
            QCOMPARE(other.grabF11(kNumLock | XCB_MOD_MASK_LOCK), 10);
            key->releaseKey();
            QVERIFY(!static_cast<X11HotKey*>(key.get())->isRegistered());
            QCOMPARE(other.grabF11(0), 0);
            other.ungrabF11(0);
            key->registerKey();
            QVERIFY(static_cast<X11HotKey*>(key.get())->isRegistered());
        }
        // The destructor released it.
        for (const uint16_t m :
             {uint16_t(0), uint16_t(XCB_MOD_MASK_LOCK), kNumLock, uint16_t(kNumLock | XCB_MOD_MASK_LOCK)})
            QCOMPARE(other.grabF11(m), 0);
    }
};

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    HotKeyX11Test test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_hotkey_x11.moc"
