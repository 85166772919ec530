#include "desktop/X11Clipboard.h"

#include <cstdlib>
#include <utility>
#include <vector>
#include <xcb/xfixes.h>

namespace quillora
{

namespace
{

using Reply = std::unique_ptr<xcb_get_property_reply_t, decltype(&std::free)>;

// Fetches at most `maxBytes` (and a little more, to tell an overflow) of a property of ours and deletes
// it, which also asks an incremental sender for its next piece. A round trip to the X server only.
Reply takeProperty(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property, qint64 maxBytes)
{
    const auto units = uint32_t(maxBytes / 4 + 1);
    return Reply(xcb_get_property_reply(
                     connection,
                     xcb_get_property(connection, 1, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, units),
                     nullptr),
                 std::free);
}

constexpr qint64 kMaxTargetsBytes = 64 * 1024;
constexpr char kProperty[] = "QUILLORA_CLIPBOARD";
constexpr const char* kProtocolAtoms[] = {"CLIPBOARD", "TARGETS", "INCR", kProperty};

} // namespace

std::unique_ptr<X11Clipboard> X11Clipboard::connectToDisplay(xcb_connection_t* ownConnection, QObject* parent)
{
    if (!ownConnection)
        return nullptr;
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    if (xcb_connection_has_error(connection)) {
        xcb_disconnect(connection);
        return nullptr;
    }
    const xcb_query_extension_reply_t* xfixes = xcb_get_extension_data(connection, &xcb_xfixes_id);
    std::unique_ptr<xcb_xfixes_query_version_reply_t, decltype(&std::free)> version(
        xfixes && xfixes->present
            ? xcb_xfixes_query_version_reply(connection, xcb_xfixes_query_version(connection, 1, 0), nullptr)
            : nullptr,
        std::free);
    if (!version) {
        xcb_disconnect(connection);
        return nullptr;
    }
    return std::unique_ptr<X11Clipboard>(
        new X11Clipboard(connection, xfixes->first_event, xcb_get_setup(ownConnection), parent));
}

X11Clipboard::X11Clipboard(xcb_connection_t* connection, uint8_t firstXFixesEvent, const xcb_setup_t* own,
                           QObject* parent)
    : QObject(parent), m_connection(connection), m_firstXFixesEvent(firstXFixesEvent),
      m_notifier(xcb_get_file_descriptor(connection), QSocketNotifier::Read),
      m_ownIdBase(own->resource_id_base), m_ownIdMask(own->resource_id_mask)
{
    internAtoms();
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    m_watcher = xcb_generate_id(m_connection);
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_watcher, screen->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_xfixes_select_selection_input(m_connection, m_watcher, atom("CLIPBOARD"),
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    xcb_flush(m_connection);
    connect(&m_notifier, &QSocketNotifier::activated, this, &X11Clipboard::pump);
    m_timeout.setSingleShot(true);
    connect(&m_timeout, &QTimer::timeout, this, [this] { finish(ClipboardRead::Nothing); });
    // Events that came in with the replies above are already off the socket.
    QTimer::singleShot(0, this, &X11Clipboard::pump);
}

X11Clipboard::~X11Clipboard()
{
    m_notifier.setEnabled(false);
    if (m_requestor)
        xcb_destroy_window(m_connection, m_requestor);
    xcb_destroy_window(m_connection, m_watcher);
    xcb_flush(m_connection);
    xcb_disconnect(m_connection);
}

// Round trips to the X server only, once; no other program takes part.
void X11Clipboard::internAtoms()
{
    QList<QByteArray> names = ClipboardOffer::typesConsidered();
    for (const char* name : kProtocolAtoms)
        names.append(name);
    std::vector<xcb_intern_atom_cookie_t> cookies;
    for (const QByteArray& name : names)
        cookies.push_back(xcb_intern_atom(m_connection, 0, uint16_t(name.size()), name.constData()));
    for (qsizetype i = 0; i < names.size(); ++i) {
        xcb_intern_atom_reply_t* reply = xcb_intern_atom_reply(m_connection, cookies[size_t(i)], nullptr);
        m_atoms.insert(names[i], reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE));
        std::free(reply);
    }
}

void X11Clipboard::setWatching(bool on)
{
    m_watching = on;
    if (on)
        read(ForNotice);
    else if (m_requestor && (m_purposes &= ~ForNotice) == 0)
        finish(ClipboardRead::Nothing);
}

void X11Clipboard::read(int purposes)
{
    const bool running = m_requestor != 0;
    m_purposes |= purposes;
    if (!running)
        restart();
}

void X11Clipboard::pump()
{
    while (xcb_generic_event_t* event = xcb_poll_for_event(m_connection)) {
        handle(event);
        std::free(event);
    }
    if (xcb_connection_has_error(m_connection)) {
        // The X server went away: nothing more will come.
        m_notifier.setEnabled(false);
        finish(ClipboardRead::Nothing);
        return;
    }
    xcb_flush(m_connection);
}

void X11Clipboard::handle(const xcb_generic_event_t* event)
{
    const uint8_t type = event->response_type & 0x7f;
    if (type == m_firstXFixesEvent + XCB_XFIXES_SELECTION_NOTIFY) {
        // Only the newest clipboard counts: a read running for an older one starts over.
        const int purposes = m_purposes | (m_watching ? ForNotice : 0);
        if (purposes) {
            m_purposes = purposes;
            restart();
        }
    } else if (type == XCB_SELECTION_NOTIFY) {
        onSelectionNotify(reinterpret_cast<const xcb_selection_notify_event_t*>(event));
    } else if (type == XCB_PROPERTY_NOTIFY) {
        onPropertyNotify(reinterpret_cast<const xcb_property_notify_event_t*>(event));
    }
}

void X11Clipboard::restart()
{
    if (m_requestor)
        xcb_destroy_window(m_connection, m_requestor);
    const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;
    m_requestor = xcb_generate_id(m_connection);
    const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(m_connection, XCB_COPY_FROM_PARENT, m_requestor, screen->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    // Whose clipboard this is, asked of the X server: the program's other connection may not have
    // heard yet that another program took the clipboard from it.
    const std::unique_ptr<xcb_get_selection_owner_reply_t, decltype(&std::free)> owner(
        xcb_get_selection_owner_reply(m_connection, xcb_get_selection_owner(m_connection, atom("CLIPBOARD")),
                                      nullptr),
        std::free);
    m_owner = owner ? owner->owner : 0;
    m_types.clear();
    m_textType.clear();
    m_timeout.start(ClipboardOffer::kTimeoutMs);
    convert(Step::Targets, atom("TARGETS"));
}

void X11Clipboard::convert(Step step, xcb_atom_t target)
{
    m_step = step;
    m_incremental = false;
    m_data.clear();
    xcb_convert_selection(m_connection, m_requestor, atom("CLIPBOARD"), target, atom(kProperty),
                          XCB_CURRENT_TIME);
    xcb_flush(m_connection);
}

qint64 X11Clipboard::stepCap() const
{
    switch (m_step) {
    case Step::Targets:
        return kMaxTargetsBytes;
    case Step::Hint:
        return ClipboardOffer::kMaxHintBytes;
    case Step::Text:
        break;
    }
    return ClipboardOffer::kMaxBytes;
}

void X11Clipboard::onSelectionNotify(const xcb_selection_notify_event_t* event)
{
    if (!m_requestor || event->requestor != m_requestor)
        return;
    if (event->property == XCB_ATOM_NONE)
        return finish(ClipboardRead::Nothing);
    // The property lives in the X server; only up to the cap of it is fetched.
    const Reply reply = takeProperty(m_connection, m_requestor, event->property, stepCap());
    if (!reply)
        return finish(ClipboardRead::Nothing);
    if (reply->type == atom("INCR")) {
        // Deleting the property (done by the fetch) asks the owner for the first piece.
        m_incremental = true;
        xcb_flush(m_connection);
        return;
    }
    const int length = xcb_get_property_value_length(reply.get());
    if (reply->bytes_after > 0 || length > stepCap())
        return finish(m_step == Step::Text ? ClipboardRead::TooLarge : ClipboardRead::Nothing);
    stepDone(QByteArray(static_cast<const char*>(xcb_get_property_value(reply.get())), length));
}

void X11Clipboard::onPropertyNotify(const xcb_property_notify_event_t* event)
{
    if (!m_incremental || event->window != m_requestor || event->atom != atom(kProperty) ||
        event->state != XCB_PROPERTY_NEW_VALUE)
        return;
    const Reply reply = takeProperty(m_connection, m_requestor, event->atom, stepCap() - m_data.size());
    if (!reply)
        return finish(ClipboardRead::Nothing);
    const int length = xcb_get_property_value_length(reply.get());
    if (length == 0 && reply->bytes_after == 0)
        return stepDone(std::exchange(m_data, {}));
    // Past the cap nothing more is asked for: the piece stays, and the owner waits in vain.
    if (reply->bytes_after > 0 || m_data.size() + length > stepCap())
        return finish(m_step == Step::Text ? ClipboardRead::TooLarge : ClipboardRead::Nothing);
    m_data.append(static_cast<const char*>(xcb_get_property_value(reply.get())), length);
    xcb_flush(m_connection);
}

void X11Clipboard::stepDone(const QByteArray& bytes)
{
    switch (m_step) {
    case Step::Targets: {
        const auto* atoms = reinterpret_cast<const xcb_atom_t*>(bytes.constData());
        for (qsizetype i = 0; i < bytes.size() / qsizetype(sizeof(xcb_atom_t)); ++i) {
            const QByteArray name = m_atoms.key(atoms[i]);
            if (!name.isEmpty())
                m_types.append(name);
        }
        m_textType = ClipboardOffer::textType(m_types);
        if (m_textType.isEmpty())
            return finish(ClipboardRead::Nothing);
        if (ClipboardOffer::hasSecretHint(m_types))
            return convert(Step::Hint, atom(ClipboardOffer::kSecretHintType));
        return convert(Step::Text, atom(m_textType));
    }
    case Step::Hint:
        if (ClipboardOffer::isSecret(bytes))
            return finish(ClipboardRead::Nothing);
        return convert(Step::Text, atom(m_textType));
    case Step::Text:
        if (bytes.isEmpty())
            return finish(ClipboardRead::Nothing);
        return finish(ClipboardRead::Text, ClipboardOffer::decode(bytes, m_textType));
    }
}

void X11Clipboard::finish(ClipboardRead result, const QString& text)
{
    if (!m_requestor)
        return;
    m_timeout.stop();
    xcb_destroy_window(m_connection, m_requestor);
    xcb_flush(m_connection);
    m_requestor = 0;
    m_incremental = false;
    m_data.clear();
    m_data.squeeze();
    const int purposes = std::exchange(m_purposes, 0);
    if (purposes && result != ClipboardRead::Nothing)
        Q_EMIT readDone(purposes, result, text, m_owner && (m_owner & ~m_ownIdMask) == m_ownIdBase);
}

} // namespace quillora
