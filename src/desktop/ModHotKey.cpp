#include "desktop/ModHotKey.h"

#include "Version.h"
#include "desktop/PortalHotKey.h"
#include "desktop/X11HotKey.h"

#include <QDBusConnection>
#include <QGuiApplication>
#include <utility>

namespace quillora
{

namespace
{

// Where no global key can be had: says so once when asked to register.
class NoHotKey : public GlobalHotKey
{
public:
    NoHotKey(const QString& reason, QObject* parent) : GlobalHotKey(parent), m_reason(reason) {}
    void registerKey() override
    {
        if (!std::exchange(m_reported, true))
            Q_EMIT unavailable(m_reason);
    }
    void releaseKey() override {}

private:
    QString m_reason;
    bool m_reported = false;
};

xcb_connection_t* x11Connection()
{
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

} // namespace

std::unique_ptr<GlobalHotKey> GlobalHotKey::create(QObject* parent)
{
    const QString forced = qEnvironmentVariable("QUILLORA_HOTKEY");
    if (forced == QLatin1String("none"))
        return std::make_unique<NoHotKey>(QStringLiteral("global key switched off by QUILLORA_HOTKEY"),
                                          parent);
    if (forced == QLatin1String("portal"))
        return std::make_unique<PortalHotKey>(QDBusConnection::sessionBus(),
                                              QString::fromLatin1(kApplicationId), parent);
    // Under XWayland an X11 grab sees only keys typed into X11 windows: the portal serves there too.
    const bool waylandSession = qEnvironmentVariable("XDG_SESSION_TYPE") == QLatin1String("wayland") ||
                                qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    xcb_connection_t* connection = x11Connection();
    if (connection && (!waylandSession || forced == QLatin1String("x11")))
        return std::make_unique<X11HotKey>(connection, parent);
    if (forced == QLatin1String("x11"))
        return std::make_unique<NoHotKey>(QStringLiteral("no X11 connection for the global key"), parent);
    if (waylandSession)
        return std::make_unique<PortalHotKey>(QDBusConnection::sessionBus(),
                                              QString::fromLatin1(kApplicationId), parent);
    return std::make_unique<NoHotKey>(
        QStringLiteral("no global key on the %1 platform").arg(QGuiApplication::platformName()), parent);
}

} // namespace quillora
