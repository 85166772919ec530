#include "portal/PortalStandin.h"

#include <QDBusMessage>
#include <QTimer>

namespace quillora::test
{

namespace
{

// One org.freedesktop.portal.Session object; Close reports back and unregisters it.
class StandinSession : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Session")
public:
    StandinSession(const QString& path, QDBusConnection bus, QStringList* closed, QObject* parent)
        : QObject(parent), m_path(path), m_bus(bus), m_closed(closed)
    {
    }

public Q_SLOTS:
    void Close()
    {
        m_closed->append(m_path);
        m_bus.unregisterObject(m_path);
        deleteLater();
    }

private:
    QString m_path;
    QDBusConnection m_bus;
    QStringList* m_closed;
};

} // namespace

PortalStandin::PortalStandin(QObject* parent)
    : QObject(parent),
      m_bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("portal-standin"))),
      m_sessionObjects(new QObject(this))
{
    registerPortalShortcutTypes();
}

PortalStandin::~PortalStandin()
{
    stop();
    QDBusConnection::disconnectFromBus(QStringLiteral("portal-standin"));
}

bool PortalStandin::start()
{
    return m_bus.isConnected() && m_bus.registerObject(kPortalPath, this, QDBusConnection::ExportAllSlots) &&
           m_bus.registerService(kPortalService);
}

void PortalStandin::stop()
{
    m_bus.unregisterService(kPortalService);
    m_bus.unregisterObject(kPortalPath);
}

QString PortalStandin::requestPath(const QVariantMap& options) const
{
    QString sender = message().service().mid(1);
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    return kPortalPath + QLatin1String("/request/") + sender + QLatin1Char('/') +
           options.value(QStringLiteral("handle_token")).toString();
}

void PortalStandin::respondLater(const QString& path, uint response, const QVariantMap& results)
{
    QTimer::singleShot(10, this, [this, path, response, results] {
        QDBusMessage signal = QDBusMessage::createSignal(
            path, QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
        signal << response << results;
        m_bus.send(signal);
    });
}

QDBusObjectPath PortalStandin::CreateSession(const QVariantMap& options)
{
    QString sender = message().service().mid(1);
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    const QString session = kPortalPath + QLatin1String("/session/") + sender + QLatin1Char('/') +
                            options.value(QStringLiteral("session_handle_token")).toString();
    m_bus.registerObject(session, new StandinSession(session, m_bus, &closedSessions, m_sessionObjects),
                         QDBusConnection::ExportAllSlots);
    sessions.append(session);
    const QString request = requestPath(options);
    respondLater(request, 0, {{QStringLiteral("session_handle"), session}});
    return QDBusObjectPath(request);
}

QDBusObjectPath PortalStandin::BindShortcuts(const QDBusObjectPath& session,
                                             const QList<PortalShortcut>& shortcuts, const QString&,
                                             const QVariantMap& options)
{
    boundSession = session.path();
    boundShortcuts = shortcuts;
    QList<PortalShortcut> granted;
    for (PortalShortcut s : shortcuts) {
        s.properties.insert(QStringLiteral("trigger_description"),
                            s.properties.value(QStringLiteral("preferred_trigger")));
        granted.append(s);
    }
    const QString request = requestPath(options);
    respondLater(request, bindResponse, {{QStringLiteral("shortcuts"), QVariant::fromValue(granted)}});
    return QDBusObjectPath(request);
}

void PortalStandin::emitActivated(const QString& session, const QString& id)
{
    QDBusMessage signal =
        QDBusMessage::createSignal(kPortalPath, kGlobalShortcutsInterface, QStringLiteral("Activated"));
    signal << QVariant::fromValue(QDBusObjectPath(session)) << id << qulonglong(1234) << QVariantMap();
    m_bus.send(signal);
}

} // namespace quillora::test

#include "PortalStandin.moc"
