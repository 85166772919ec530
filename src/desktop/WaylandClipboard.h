#pragma once

#include "desktop/ClipboardOffer.h"

#include <QByteArray>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <memory>

struct wl_display;
struct wl_registry;
struct wl_seat;
struct zwlr_data_control_manager_v1;
struct zwlr_data_control_device_v1;
struct zwlr_data_control_offer_v1;
struct zwlr_data_control_source_v1;

namespace quillora
{

class PipeReader;

// The Wayland session's clipboard through the compositor's data-control protocol, on a connection
// of its own: unlike an ordinary window it sees every copy and may set the clipboard while none of
// the program's windows has the focus. Text only; the connection never blocks the event loop.
class WaylandClipboard : public QObject
{
    Q_OBJECT
public:
    // Null when there is no Wayland session or its compositor offers no data-control.
    static std::unique_ptr<WaylandClipboard> connectToSession(QObject* parent = nullptr);
    // Whether the session's compositor offers data-control; asks it once, before any window exists.
    static bool sessionOffersDataControl();
    ~WaylandClipboard() override;

    // Makes `text` the clipboard; its notice comes back marked as the program's own.
    void setText(const QString& text);
    // While watching, every new clipboard is read for ForNotice; switching on reads the current one.
    void setWatching(bool on);
    // Reads the clipboard now; joins a read already running.
    void read(int purposes);

Q_SIGNALS:
    // A read that found text to take or text over the cap; `own` when setText() put the text there.
    void readDone(int purposes, quillora::ClipboardRead result, const QString& text, bool own);

private:
    struct Offer;
    WaylandClipboard(wl_display* display, zwlr_data_control_manager_v1* manager, wl_seat* seat,
                     QObject* parent);
    void pump();
    void flush();
    void readSelection();
    void receive(const QByteArray& type, qint64 maxBytes);
    void finish(ClipboardRead result, const QString& text = {}, bool own = false);

    static void deviceDataOffer(void* data, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1* id);
    static void deviceSelection(void* data, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1* id);
    static void deviceFinished(void* data, zwlr_data_control_device_v1*);
    static void devicePrimarySelection(void*, zwlr_data_control_device_v1*, zwlr_data_control_offer_v1* id);
    static void offerType(void* data, zwlr_data_control_offer_v1*, const char* mimeType);
    static void sourceSend(void* data, zwlr_data_control_source_v1*, const char* mimeType, int32_t fd);
    static void sourceCancelled(void* data, zwlr_data_control_source_v1* source);

    wl_display* m_display;
    zwlr_data_control_manager_v1* m_manager;
    wl_seat* m_seat;
    zwlr_data_control_device_v1* m_device = nullptr;
    std::unique_ptr<Offer> m_pending; // announced, not yet the selection
    std::unique_ptr<Offer> m_current; // the clipboard now
    zwlr_data_control_source_v1* m_source = nullptr;
    QByteArray m_ownType;
    QByteArray m_ownBytes;
    PipeReader* m_reader = nullptr;
    QByteArray m_textType;
    int m_purposes = 0;
    bool m_watching = false;
    QSocketNotifier m_notifier;
};

} // namespace quillora
