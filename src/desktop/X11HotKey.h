#pragma once

#include "desktop/ModHotKey.h"

#include <QAbstractNativeEventFilter>
#include <QVector>
#include <cstdint>

struct xcb_connection_t;

namespace quillora
{

// F11 grabbed on the X root windows, with every combination of NumLock and CapsLock so the key
// works whatever their state.
class X11HotKey : public GlobalHotKey, public QAbstractNativeEventFilter
{
    Q_OBJECT
public:
    explicit X11HotKey(xcb_connection_t* connection, QObject* parent = nullptr);
    ~X11HotKey() override;

    void registerKey() override;
    void releaseKey() override;
    bool isRegistered() const { return !m_grabs.isEmpty(); }

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    struct Grab {
        uint32_t root;
        uint8_t keycode;
        uint16_t modifiers;
    };
    QVector<uint16_t> modifierVariants() const;
    void fail(const QString& reason);

    xcb_connection_t* m_connection;
    QVector<Grab> m_grabs;
    bool m_reported = false;
};

} // namespace quillora
