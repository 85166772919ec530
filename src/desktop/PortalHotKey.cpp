#include "desktop/PortalHotKey.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace quillora
{

namespace
{

const QString kRequestInterface = QStringLiteral("org.freedesktop.portal.Request");
const QString kSessionInterface = QStringLiteral("org.freedesktop.portal.Session");

// QtDBus names receiving slots by signature, with the slot marker '1' in front.
constexpr const char* kSessionCreatedSlot = "1onSessionCreated(uint,QVariantMap)";
constexpr const char* kShortcutsBoundSlot = "1onShortcutsBound(uint,QVariantMap)";
constexpr const char* kActivatedSlot = "1onActivated(QDBusObjectPath,QString,qulonglong,QVariantMap)";

// Sent with CreateSession too: some back-ends bind only what comes there.
QList<PortalShortcut> wantedShortcuts()
{
    return {{kToggleShortcutId,
             {{QStringLiteral("description"), QStringLiteral("Show or hide Quillora")},
              {QStringLiteral("preferred_trigger"), QStringLiteral("F11")}}}};
}

} // namespace

QDBusArgument& operator<<(QDBusArgument& arg, const PortalShortcut& shortcut)
{
    arg.beginStructure();
    arg << shortcut.id << shortcut.properties;
    arg.endStructure();
    return arg;
}

const QDBusArgument& operator>>(const QDBusArgument& arg, PortalShortcut& shortcut)
{
    arg.beginStructure();
    arg >> shortcut.id >> shortcut.properties;
    arg.endStructure();
    return arg;
}

QStringList boundShortcutIds(const QVariantMap& results)
{
    const QVariant value = results.value(QStringLiteral("shortcuts"));
    if (value.metaType() != QMetaType::fromType<QDBusArgument>())
        return {};
    // Only a list of shortcuts is read; an answer of any other type binds nothing.
    const auto arg = value.value<QDBusArgument>();
    if (arg.currentSignature() != QLatin1String("a(sa{sv})"))
        return {};
    QStringList ids;
    for (const PortalShortcut& shortcut : qdbus_cast<QList<PortalShortcut>>(arg))
        ids << shortcut.id;
    return ids;
}

void registerPortalShortcutTypes()
{
    qDBusRegisterMetaType<PortalShortcut>();
    qDBusRegisterMetaType<QList<PortalShortcut>>();
}

PortalHotKey::PortalHotKey(const QDBusConnection& bus, const QString& appId, QObject* parent)
    : GlobalHotKey(parent), m_bus(bus), m_appId(appId)
{
    registerPortalShortcutTypes();
}

PortalHotKey::~PortalHotKey()
{
    releaseKey();
}

QString PortalHotKey::nextToken()
{
    return QStringLiteral("quillora%1").arg(++m_tokens);
}

QString PortalHotKey::requestPath(const QString& token) const
{
    QString sender = m_bus.baseService().mid(1);
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    return kPortalPath + QLatin1String("/request/") + sender + QLatin1Char('/') + token;
}

void PortalHotKey::watchRequest(const QString& path, const char* slot)
{
    unwatchRequest();
    m_requestPath = path;
    m_requestSlot = slot;
    m_bus.connect(kPortalService, path, kRequestInterface, QStringLiteral("Response"), this, slot);
}

void PortalHotKey::unwatchRequest()
{
    if (m_requestPath.isEmpty())
        return;
    m_bus.disconnect(kPortalService, m_requestPath, kRequestInterface, QStringLiteral("Response"), this,
                     m_requestSlot);
    m_requestPath.clear();
    m_requestSlot = nullptr;
}

void PortalHotKey::fail(const QString& reason)
{
    unwatchRequest();
    if (m_reported)
        return;
    m_reported = true;
    Q_EMIT unavailable(reason);
}

void PortalHotKey::callWithRequest(const QString& method, const QVariantList& args, const QString& token,
                                   const char* slot)
{
    // Subscribing before the call keeps a fast Response from slipping past.
    watchRequest(requestPath(token), slot);
    QDBusMessage call =
        QDBusMessage::createMethodCall(kPortalService, kPortalPath, kGlobalShortcutsInterface, method);
    call.setArguments(args);
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this, slot, method](QDBusPendingCallWatcher* w) {
                w->deleteLater();
                const QDBusPendingReply<QDBusObjectPath> reply = *w;
                if (reply.isError())
                    return fail(QStringLiteral("the desktop portal's %1 failed: %2")
                                    .arg(method, reply.error().message()));
                // Older portals choose the request path themselves.
                const QString path = reply.value().path();
                if (m_active && path != m_requestPath && m_requestSlot == slot)
                    watchRequest(path, slot);
            });
}

void PortalHotKey::registerKey()
{
    if (m_active)
        return;
    if (!m_bus.isConnected())
        return fail(QStringLiteral("no D-Bus session bus"));
    m_active = true;
    if (m_registering)
        return;
    // Portals that key shortcuts on the application id take it only before any other call; older
    // ones have no such interface, and any answer lets the session go ahead.
    m_registering = true;
    QDBusMessage call = QDBusMessage::createMethodCall(kPortalService, kPortalPath, kRegistryInterface,
                                                       QStringLiteral("Register"));
    call << m_appId << QVariantMap();
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [this](QDBusPendingCallWatcher* w) {
        w->deleteLater();
        m_registering = false;
        if (m_active)
            createSession();
    });
}

void PortalHotKey::createSession()
{
    const QString token = nextToken();
    const QVariantMap options{{QStringLiteral("handle_token"), token},
                              {QStringLiteral("session_handle_token"), nextToken()},
                              {QStringLiteral("shortcuts"), QVariant::fromValue(wantedShortcuts())}};
    callWithRequest(QStringLiteral("CreateSession"), {options}, token, kSessionCreatedSlot);
}

void PortalHotKey::onSessionCreated(uint response, const QVariantMap& results)
{
    unwatchRequest();
    const QVariant handle = results.value(QStringLiteral("session_handle"));
    const QString session = handle.metaType() == QMetaType::fromType<QDBusObjectPath>()
                                ? handle.value<QDBusObjectPath>().path()
                                : handle.toString();
    if (!m_active) {
        if (response == 0 && !session.isEmpty())
            m_bus.send(QDBusMessage::createMethodCall(kPortalService, session, kSessionInterface,
                                                      QStringLiteral("Close")));
        return;
    }
    m_session = session;
    if (response != 0 || m_session.isEmpty())
        return fail(
            QStringLiteral("the desktop portal refused a shortcut session (response %1)").arg(response));
    m_bus.connect(kPortalService, kPortalPath, kGlobalShortcutsInterface, QStringLiteral("Activated"), this,
                  kActivatedSlot);

    const QString token = nextToken();
    callWithRequest(QStringLiteral("BindShortcuts"),
                    {QVariant::fromValue(QDBusObjectPath(m_session)), QVariant::fromValue(wantedShortcuts()),
                     QString(), QVariantMap{{QStringLiteral("handle_token"), token}}},
                    token, kShortcutsBoundSlot);
}

void PortalHotKey::onShortcutsBound(uint response, const QVariantMap& results)
{
    unwatchRequest();
    if (response != 0)
        fail(QStringLiteral("the desktop portal refused to bind the shortcut (response %1)").arg(response));
    else if (!boundShortcutIds(results).contains(kToggleShortcutId))
        fail(QStringLiteral("the desktop portal bound no shortcut for %1").arg(kToggleShortcutId));
}

void PortalHotKey::onActivated(const QDBusObjectPath& session, const QString& id, qulonglong,
                               const QVariantMap& options)
{
    if (session.path() != m_session || id != kToggleShortcutId)
        return;
    // Newer portals hand over an xdg-activation token with the key press; Qt's Wayland window
    // takes it from the environment on its next activation, so the window may come to the front.
    const QString token = options.value(QStringLiteral("activation_token")).toString();
    if (!token.isEmpty())
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
    Q_EMIT activated();
}

void PortalHotKey::releaseKey()
{
    unwatchRequest();
    if (!m_active)
        return;
    m_active = false;
    if (m_session.isEmpty())
        return;
    m_bus.disconnect(kPortalService, kPortalPath, kGlobalShortcutsInterface, QStringLiteral("Activated"),
                     this, kActivatedSlot);
    m_bus.send(QDBusMessage::createMethodCall(kPortalService, m_session, kSessionInterface,
                                              QStringLiteral("Close")));
    m_session.clear();
}

} // namespace quillora
