#pragma once

#include "desktop/PortalHotKey.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QStringList>

namespace quillora::test
{

// A stand-in for the desktop portal's GlobalShortcuts on its own bus connection: it answers
// CreateSession and BindShortcuts through Request objects and Response signals and can emit
// Activated, recording what the client asked for.
class PortalStandin : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.GlobalShortcuts")
public:
    explicit PortalStandin(QObject* parent = nullptr);
    ~PortalStandin() override;

    // Takes the portal's name on the session bus; false when that fails.
    bool start();
    void stop();

    // Response code for BindShortcuts; 0 grants, 1 is "cancelled by the user".
    uint bindResponse = 0;

    QStringList sessions;       // created session handles
    QStringList closedSessions; // sessions the client closed
    QList<PortalShortcut> boundShortcuts;
    QString boundSession;

    void emitActivated(const QString& session, const QString& id);

public Q_SLOTS:
    QDBusObjectPath CreateSession(const QVariantMap& options);
    QDBusObjectPath BindShortcuts(const QDBusObjectPath& session,
                                  const QList<quillora::PortalShortcut>& shortcuts,
                                  const QString& parentWindow, const QVariantMap& options);

private:
    QString requestPath(const QVariantMap& options) const;
    void respondLater(const QString& requestPath, uint response, const QVariantMap& results);

    QDBusConnection m_bus;
    QObject* m_sessionObjects;
};

} // namespace quillora::test
