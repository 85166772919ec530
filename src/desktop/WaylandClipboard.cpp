#include "desktop/WaylandClipboard.h"

#include "desktop/PipeTransfer.h"
#include "wlr-data-control-unstable-v1-client-protocol.h"

#include <QCoreApplication>
#include <QList>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>
#include <utility>
#include <wayland-client.h>

namespace quillora
{

namespace
{

// Marks the clipboard sources this object made, so their notices can be told from other copies,
// those of another running Quillora included.
QByteArray ownType(const void* owner)
{
    return QByteArrayLiteral("application/x-quillora-own-") +
           QByteArray::number(QCoreApplication::applicationPid()) + '-' +
           QByteArray::number(quintptr(owner), 16);
}
// Offered for the program's own copies; the first ones are UTF-8 by definition.
constexpr std::array<const char*, 4> kTextTypes{"text/plain;charset=utf-8", "UTF8_STRING", "text/plain",
                                                "TEXT"};

struct Globals {
    zwlr_data_control_manager_v1* manager = nullptr;
    wl_seat* seat = nullptr;
};

void registryGlobal(void* data, wl_registry* registry, uint32_t name, const char* interface, uint32_t)
{
    auto* globals = static_cast<Globals*>(data);
    if (!globals->manager && std::strcmp(interface, zwlr_data_control_manager_v1_interface.name) == 0)
        globals->manager = static_cast<zwlr_data_control_manager_v1*>(
            wl_registry_bind(registry, name, &zwlr_data_control_manager_v1_interface, 1));
    else if (!globals->seat && std::strcmp(interface, wl_seat_interface.name) == 0)
        globals->seat = static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
}

void registryGlobalRemove(void*, wl_registry*, uint32_t) {}

const wl_registry_listener kRegistryListener{registryGlobal, registryGlobalRemove};

// The manager and a seat of the compositor behind `display`; both null or both set.
Globals findGlobals(wl_display* display)
{
    Globals globals;
    wl_registry* registry = wl_display_get_registry(display);
    wl_registry_add_listener(registry, &kRegistryListener, &globals);
    wl_display_roundtrip(display);
    wl_registry_destroy(registry);
    if (globals.manager && globals.seat)
        return globals;
    if (globals.manager)
        zwlr_data_control_manager_v1_destroy(globals.manager);
    if (globals.seat)
        wl_seat_destroy(globals.seat);
    return {};
}

} // namespace

struct WaylandClipboard::Offer {
    explicit Offer(zwlr_data_control_offer_v1* p) : proxy(p) {}
    ~Offer() { zwlr_data_control_offer_v1_destroy(proxy); }
    Offer(const Offer&) = delete;
    Offer& operator=(const Offer&) = delete;

    zwlr_data_control_offer_v1* proxy;
    QList<QByteArray> types;
};

bool WaylandClipboard::sessionOffersDataControl()
{
    wl_display* display = wl_display_connect(nullptr);
    if (!display)
        return false;
    const Globals globals = findGlobals(display);
    const bool offered = globals.manager != nullptr;
    if (offered) {
        zwlr_data_control_manager_v1_destroy(globals.manager);
        wl_seat_destroy(globals.seat);
    }
    wl_display_disconnect(display);
    return offered;
}

std::unique_ptr<WaylandClipboard> WaylandClipboard::connectToSession(QObject* parent)
{
    wl_display* display = wl_display_connect(nullptr);
    if (!display)
        return nullptr;
    const Globals globals = findGlobals(display);
    if (!globals.manager) {
        wl_display_disconnect(display);
        return nullptr;
    }
    // A program that asks for the clipboard and closes its end early must not end this one.
    std::signal(SIGPIPE, SIG_IGN);
    return std::unique_ptr<WaylandClipboard>(
        new WaylandClipboard(display, globals.manager, globals.seat, parent));
}

WaylandClipboard::WaylandClipboard(wl_display* display, zwlr_data_control_manager_v1* manager, wl_seat* seat,
                                   QObject* parent)
    : QObject(parent), m_display(display), m_manager(manager), m_seat(seat), m_ownType(ownType(this)),
      m_notifier(wl_display_get_fd(display), QSocketNotifier::Read)
{
    static const zwlr_data_control_device_v1_listener deviceListener{deviceDataOffer, deviceSelection,
                                                                     deviceFinished, devicePrimarySelection};
    m_device = zwlr_data_control_manager_v1_get_data_device(m_manager, m_seat);
    zwlr_data_control_device_v1_add_listener(m_device, &deviceListener, this);
    connect(&m_notifier, &QSocketNotifier::activated, this, &WaylandClipboard::pump);
    flush();
}

WaylandClipboard::~WaylandClipboard()
{
    delete m_reader;
    m_pending.reset();
    m_current.reset();
    if (m_source)
        zwlr_data_control_source_v1_destroy(m_source);
    if (m_device)
        zwlr_data_control_device_v1_destroy(m_device);
    zwlr_data_control_manager_v1_destroy(m_manager);
    wl_seat_destroy(m_seat);
    wl_display_flush(m_display);
    wl_display_disconnect(m_display);
}

void WaylandClipboard::pump()
{
    if (wl_display_prepare_read(m_display) == 0 && wl_display_read_events(m_display) != 0 &&
        errno != EAGAIN) {
        // The compositor went away: nothing more will come.
        m_notifier.setEnabled(false);
        return;
    }
    wl_display_dispatch_pending(m_display);
    flush();
}

void WaylandClipboard::flush()
{
    // A full socket keeps the rest queued; it goes out with the next call.
    wl_display_flush(m_display);
}

void WaylandClipboard::deviceDataOffer(void* data, zwlr_data_control_device_v1*,
                                       zwlr_data_control_offer_v1* id)
{
    static const zwlr_data_control_offer_v1_listener offerListener{offerType};
    auto* self = static_cast<WaylandClipboard*>(data);
    self->m_pending = std::make_unique<Offer>(id);
    zwlr_data_control_offer_v1_add_listener(id, &offerListener, self->m_pending.get());
}

void WaylandClipboard::offerType(void* data, zwlr_data_control_offer_v1*, const char* mimeType)
{
    static_cast<Offer*>(data)->types.append(QByteArray(mimeType));
}

void WaylandClipboard::deviceSelection(void* data, zwlr_data_control_device_v1*,
                                       zwlr_data_control_offer_v1* id)
{
    auto* self = static_cast<WaylandClipboard*>(data);
    if (!self->m_current || self->m_current->proxy != id)
        self->m_current =
            self->m_pending && self->m_pending->proxy == id ? std::move(self->m_pending) : nullptr;
    if (self->m_watching)
        self->m_purposes |= ForNotice;
    if (self->m_purposes)
        self->readSelection();
}

void WaylandClipboard::deviceFinished(void* data, zwlr_data_control_device_v1*)
{
    auto* self = static_cast<WaylandClipboard*>(data);
    self->m_current.reset();
    zwlr_data_control_device_v1_destroy(self->m_device);
    self->m_device = nullptr;
}

void WaylandClipboard::devicePrimarySelection(void* data, zwlr_data_control_device_v1*,
                                              zwlr_data_control_offer_v1*)
{
    static_cast<WaylandClipboard*>(data)->m_pending.reset();
}

void WaylandClipboard::setWatching(bool on)
{
    m_watching = on;
    if (on)
        read(ForNotice);
    else if (m_reader && (m_purposes &= ~ForNotice) == 0)
        finish(ClipboardRead::Nothing);
}

void WaylandClipboard::read(int purposes)
{
    const bool running = m_reader != nullptr;
    m_purposes |= purposes;
    if (!running)
        readSelection();
}

void WaylandClipboard::readSelection()
{
    // Only the newest clipboard counts: a read still running for an older one is dropped.
    delete m_reader;
    m_reader = nullptr;
    const Offer* offer = m_current.get();
    m_textType = offer ? ClipboardOffer::textType(offer->types) : QByteArray();
    if (m_textType.isEmpty())
        return finish(ClipboardRead::Nothing);
    if (offer->types.contains(m_ownType))
        return finish(ClipboardRead::Text, QString::fromUtf8(m_ownBytes), true);
    if (ClipboardOffer::hasSecretHint(offer->types))
        receive(ClipboardOffer::kSecretHintType, ClipboardOffer::kMaxHintBytes);
    else
        receive(m_textType, ClipboardOffer::kMaxBytes);
}

void WaylandClipboard::receive(const QByteArray& type, qint64 maxBytes)
{
    int fds[2];
    if (::pipe2(fds, O_CLOEXEC) != 0)
        return finish(ClipboardRead::Nothing);
    zwlr_data_control_offer_v1_receive(m_current->proxy, type.constData(), fds[1]);
    ::close(fds[1]);
    flush();
    m_reader = new PipeReader(fds[0], maxBytes, ClipboardOffer::kTimeoutMs, this);
    const bool hint = type != m_textType;
    connect(m_reader, &PipeReader::finished, this, [this, hint](bool ok, const QByteArray& bytes) {
        const bool overflowed = m_reader->overflowed();
        m_reader->deleteLater();
        m_reader = nullptr;
        // A hint that cannot be read counts as a secret.
        if (!ok)
            return finish(overflowed && !hint ? ClipboardRead::TooLarge : ClipboardRead::Nothing);
        if (hint)
            return ClipboardOffer::isSecret(bytes) ? finish(ClipboardRead::Nothing)
                                                   : receive(m_textType, ClipboardOffer::kMaxBytes);
        if (bytes.isEmpty())
            return finish(ClipboardRead::Nothing);
        finish(ClipboardRead::Text, ClipboardOffer::decode(bytes, m_textType));
    });
}

void WaylandClipboard::finish(ClipboardRead result, const QString& text, bool own)
{
    const int purposes = std::exchange(m_purposes, 0);
    if (purposes && result != ClipboardRead::Nothing)
        Q_EMIT readDone(purposes, result, text, own);
}

void WaylandClipboard::setText(const QString& text)
{
    static const zwlr_data_control_source_v1_listener sourceListener{sourceSend, sourceCancelled};
    if (!m_device)
        return;
    zwlr_data_control_source_v1* source = zwlr_data_control_manager_v1_create_data_source(m_manager);
    zwlr_data_control_source_v1_add_listener(source, &sourceListener, this);
    for (const char* type : kTextTypes)
        zwlr_data_control_source_v1_offer(source, type);
    zwlr_data_control_source_v1_offer(source, m_ownType.constData());
    zwlr_data_control_device_v1_set_selection(m_device, source);
    if (m_source)
        zwlr_data_control_source_v1_destroy(m_source);
    m_source = source;
    m_ownBytes = text.toUtf8();
    flush();
}

void WaylandClipboard::sourceSend(void* data, zwlr_data_control_source_v1*, const char*, int32_t fd)
{
    auto* self = static_cast<WaylandClipboard*>(data);
    new PipeWriter(fd, self->m_ownBytes, ClipboardOffer::kTimeoutMs, self);
}

void WaylandClipboard::sourceCancelled(void* data, zwlr_data_control_source_v1* source)
{
    auto* self = static_cast<WaylandClipboard*>(data);
    if (self->m_source == source)
        self->m_source = nullptr;
    zwlr_data_control_source_v1_destroy(source);
}

} // namespace quillora
