#pragma once

#include "desktop/ModHotKey.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QList>
#include <QStringList>
#include <QVariantMap>

class QDBusArgument;
class QDBusPendingCallWatcher;

namespace quillora
{

// One entry of the portal's a(sa{sv}) shortcut list.
struct PortalShortcut {
    QString id;
    QVariantMap properties;
};
QDBusArgument& operator<<(QDBusArgument& arg, const PortalShortcut& shortcut);
const QDBusArgument& operator>>(const QDBusArgument& arg, PortalShortcut& shortcut);
// Makes PortalShortcut and its list known to QtDBus; safe to call repeatedly.
void registerPortalShortcutTypes();

inline const QString kPortalService = QStringLiteral("org.freedesktop.portal.Desktop");
inline const QString kPortalPath = QStringLiteral("/org/freedesktop/portal/desktop");
inline const QString kGlobalShortcutsInterface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
inline const QString kRegistryInterface = QStringLiteral("org.freedesktop.host.portal.Registry");
inline const QString kToggleShortcutId = QStringLiteral("toggle-window");

// The ids of the shortcuts a portal's `shortcuts` result holds; empty when it holds none or
// something of another type.
QStringList boundShortcutIds(const QVariantMap& results);

// The toggle bound through the desktop portal's GlobalShortcuts (Wayland sessions): the application
// id is registered where the portal asks for it, a session is created, "toggle-window" is bound with
// F11 as the preferred trigger, and Activated for it becomes activated(). The key is the desktop's to
// give; the user may be asked or pick another one. A portal that binds nothing makes it unavailable.
class PortalHotKey : public GlobalHotKey
{
    Q_OBJECT
public:
    PortalHotKey(const QDBusConnection& bus, const QString& appId, QObject* parent = nullptr);
    ~PortalHotKey() override;

    void registerKey() override;
    void releaseKey() override;
    // The session handle once the portal has created it; empty before.
    QString sessionHandle() const { return m_session; }

private Q_SLOTS:
    void onSessionCreated(uint response, const QVariantMap& results);
    void onShortcutsBound(uint response, const QVariantMap& results);
    void onActivated(const QDBusObjectPath& session, const QString& id, qulonglong timestamp,
                     const QVariantMap& options);

private:
    void createSession();
    QString nextToken();
    QString requestPath(const QString& token) const;
    // Listens for the Response of the request at `path` and makes the call; `slot` receives it.
    void callWithRequest(const QString& method, const QVariantList& args, const QString& token,
                         const char* slot);
    void watchRequest(const QString& path, const char* slot);
    void unwatchRequest();
    void fail(const QString& reason);

    QDBusConnection m_bus;
    QString m_appId;
    QString m_session;
    QString m_requestPath;
    const char* m_requestSlot = nullptr;
    bool m_active = false;
    bool m_registering = false;
    bool m_reported = false;
    int m_tokens = 0;
};

} // namespace quillora
