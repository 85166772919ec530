#pragma once

#include "desktop/ClipboardOffer.h"

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <memory>
#include <xcb/xcb.h>

namespace quillora
{

// The X11 clipboard read on a connection of its own, driven by the event loop: the change notices
// come from XFixes, the offered types and then the text are converted into a property of a window
// of ours, large texts arrive in increments. An owner that never answers or never stops sending
// ends the read within ClipboardOffer's caps in time and size; the window never waits for it.
class X11Clipboard : public QObject
{
    Q_OBJECT
public:
    // Null without an X display or its XFixes extension. `ownConnection` is the program's other
    // connection, whose windows hold the program's own copies.
    static std::unique_ptr<X11Clipboard> connectToDisplay(xcb_connection_t* ownConnection,
                                                          QObject* parent = nullptr);
    ~X11Clipboard() override;

    // While watching, every new clipboard is read for ForNotice; switching on reads the current one.
    void setWatching(bool on);
    // Reads the clipboard now; joins a read already running.
    void read(int purposes);

Q_SIGNALS:
    // A read that found text to take or text over the cap; `own` when a window of the program's other
    // connection held the clipboard.
    void readDone(int purposes, quillora::ClipboardRead result, const QString& text, bool own);

private:
    enum class Step { Targets, Hint, Text };
    X11Clipboard(xcb_connection_t* connection, uint8_t firstXFixesEvent, const xcb_setup_t* own,
                 QObject* parent);
    void internAtoms();
    void pump();
    void handle(const xcb_generic_event_t* event);
    void restart();
    void convert(Step step, xcb_atom_t target);
    void onSelectionNotify(const xcb_selection_notify_event_t* event);
    void onPropertyNotify(const xcb_property_notify_event_t* event);
    void stepDone(const QByteArray& bytes);
    void finish(ClipboardRead result, const QString& text = {});
    qint64 stepCap() const;
    xcb_atom_t atom(const QByteArray& name) const { return m_atoms.value(name); }

    xcb_connection_t* m_connection;
    uint8_t m_firstXFixesEvent;
    xcb_window_t m_watcher = 0;
    QHash<QByteArray, xcb_atom_t> m_atoms;
    QSocketNotifier m_notifier;
    QTimer m_timeout;
    bool m_watching = false;
    uint32_t m_ownIdBase;
    uint32_t m_ownIdMask;

    // The read running, if m_requestor is set; each read has a window of its own so that an owner
    // still sending to an abandoned read cannot mix into the next one.
    xcb_window_t m_requestor = 0;
    int m_purposes = 0;
    xcb_window_t m_owner = 0;
    Step m_step = Step::Targets;
    bool m_incremental = false;
    QList<QByteArray> m_types;
    QByteArray m_textType;
    QByteArray m_data;
};

} // namespace quillora
