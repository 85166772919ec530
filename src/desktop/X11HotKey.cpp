#include "desktop/X11HotKey.h"

#include <QCoreApplication>
#include <X11/keysym.h>
#include <memory>
#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>

namespace quillora
{

namespace
{

constexpr uint8_t kBadAccess = 10;

struct FreeDeleter {
    void operator()(void* p) const { free(p); }
};
template <typename T> using XcbReply = std::unique_ptr<T, FreeDeleter>;

// The modifier bit that NumLock is mapped to; 0 when no modifier carries it.
uint16_t numLockMask(xcb_connection_t* c)
{
    xcb_key_symbols_t* symbols = xcb_key_symbols_alloc(c);
    XcbReply<xcb_keycode_t> numLock(xcb_key_symbols_get_keycode(symbols, XK_Num_Lock));
    xcb_key_symbols_free(symbols);
    XcbReply<xcb_get_modifier_mapping_reply_t> map(
        xcb_get_modifier_mapping_reply(c, xcb_get_modifier_mapping(c), nullptr));
    if (!numLock || !map)
        return 0;
    const xcb_keycode_t* codes = xcb_get_modifier_mapping_keycodes(map.get());
    const int perModifier = map->keycodes_per_modifier;
    for (int mod = 0; mod < 8; ++mod) {
        for (int k = 0; k < perModifier; ++k) {
            const xcb_keycode_t code = codes[mod * perModifier + k];
            for (const xcb_keycode_t* n = numLock.get(); code != XCB_NO_SYMBOL && *n != XCB_NO_SYMBOL; ++n) {
                if (*n == code)
                    return uint16_t(1u << mod);
            }
        }
    }
    return 0;
}

} // namespace

X11HotKey::X11HotKey(xcb_connection_t* connection, QObject* parent)
    : GlobalHotKey(parent), m_connection(connection)
{
}

X11HotKey::~X11HotKey()
{
    releaseKey();
}

QVector<uint16_t> X11HotKey::modifierVariants() const
{
    QVector<uint16_t> variants{0, XCB_MOD_MASK_LOCK};
    const uint16_t numLock = numLockMask(m_connection);
    if (numLock != 0 && numLock != XCB_MOD_MASK_LOCK)
        variants << numLock << uint16_t(numLock | XCB_MOD_MASK_LOCK);
    return variants;
}

void X11HotKey::fail(const QString& reason)
{
    if (m_reported)
        return;
    m_reported = true;
    Q_EMIT unavailable(reason);
}

void X11HotKey::registerKey()
{
    if (isRegistered())
        return;
    if (!m_connection)
        return fail(QStringLiteral("no X11 connection"));

    xcb_key_symbols_t* symbols = xcb_key_symbols_alloc(m_connection);
    XcbReply<xcb_keycode_t> keycodes(xcb_key_symbols_get_keycode(symbols, XK_F11));
    xcb_key_symbols_free(symbols);
    if (!keycodes || *keycodes == XCB_NO_SYMBOL)
        return fail(QStringLiteral("F11 has no key code in the keyboard map"));

    const QVector<uint16_t> variants = modifierVariants();
    QString error;
    bool taken = false;
    for (auto it = xcb_setup_roots_iterator(xcb_get_setup(m_connection)); it.rem && error.isEmpty();
         xcb_screen_next(&it)) {
        for (const xcb_keycode_t* code = keycodes.get(); *code != XCB_NO_SYMBOL && error.isEmpty(); ++code) {
            for (const uint16_t modifiers : variants) {
                const xcb_void_cookie_t cookie =
                    xcb_grab_key_checked(m_connection, 0, it.data->root, modifiers, *code,
                                         XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
                XcbReply<xcb_generic_error_t> err(xcb_request_check(m_connection, cookie));
                if (err) {
                    taken = err->error_code == kBadAccess;
                    error = taken
                                ? QStringLiteral("F11 is already grabbed by another program")
                                : QStringLiteral("grabbing F11 failed with X error %1").arg(err->error_code);
                    break;
                }
                m_grabs.append({it.data->root, *code, modifiers});
            }
        }
    }
    if (!error.isEmpty()) {
        releaseKey();
        if (taken && !m_reported)
            Q_EMIT keyTaken();
        return fail(error);
    }
    QCoreApplication::instance()->installNativeEventFilter(this);
}

void X11HotKey::releaseKey()
{
    if (m_grabs.isEmpty())
        return;
    if (QCoreApplication::instance())
        QCoreApplication::instance()->removeNativeEventFilter(this);
    for (const Grab& g : std::as_const(m_grabs))
        xcb_ungrab_key(m_connection, g.keycode, g.root, g.modifiers);
    xcb_flush(m_connection);
    m_grabs.clear();
}

bool X11HotKey::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != XCB_KEY_PRESS)
        return false;
    const auto* press = static_cast<const xcb_key_press_event_t*>(message);
    for (const Grab& g : std::as_const(m_grabs)) {
        if (g.keycode == press->detail && g.root == press->event) {
            Q_EMIT activated();
            return true;
        }
    }
    return false;
}

} // namespace quillora
