#pragma once

#include <QObject>
#include <QString>
#include <memory>

namespace quillora
{

// One global key (F11) bound to the show/hide toggle. The platform's way is chosen at run time:
// an X11 grab on the root window in an X11 session, the desktop portal's GlobalShortcuts in a
// Wayland session (on XWayland too).
class GlobalHotKey : public QObject
{
    Q_OBJECT
public:
    using QObject::QObject;
    ~GlobalHotKey() override = default;

    // The implementation for this session; never null (a no-op one when nothing is available).
    // The environment variable QUILLORA_HOTKEY forces a choice: "x11" (needs the xcb platform),
    // "portal" (the session bus's desktop portal, also usable under X11) or "none".
    static std::unique_ptr<GlobalHotKey> create(QObject* parent = nullptr);

    // Grabs F11. On failure unavailable() is emitted once with an English reason for logs;
    // keyTaken() comes first when the reason is another program holding the key.
    virtual void registerKey() = 0;
    // Gives the key back; also done by the destructor of each implementation.
    virtual void releaseKey() = 0;

Q_SIGNALS:
    void activated();
    void keyTaken();
    void unavailable(const QString& reason);
};

} // namespace quillora
