#include "desktop/PortalHotKey.h"
#include "portal/PortalStandin.h"

#include <QCoreApplication>
#include <QSignalSpy>
#include <QTest>

using namespace quillora;

// The portal path against a stand-in GlobalShortcuts service on the test's private session bus.
class HotKeyPortalTest : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<test::PortalStandin> m_portal;

private Q_SLOTS:
    void initTestCase()
    {
        if (!QDBusConnection::sessionBus().isConnected())
            QSKIP("needs a D-Bus session");
    }

    void init()
    {
        m_portal = std::make_unique<test::PortalStandin>();
        QVERIFY(m_portal->start());
    }

    void cleanup() { m_portal.reset(); }

    void bindsF11AndActivates()
    {
        PortalHotKey key(QDBusConnection::sessionBus());
        QSignalSpy activated(&key, &GlobalHotKey::activated);
        QSignalSpy unavailable(&key, &GlobalHotKey::unavailable);
        key.registerKey();
        QTRY_COMPARE(m_portal->boundShortcuts.size(), 1);
        QCOMPARE(m_portal->sessions.size(), 1);
        QCOMPARE(key.sessionHandle(), m_portal->sessions.first());
        QCOMPARE(m_portal->boundSession, key.sessionHandle());
        const PortalShortcut& bound = m_portal->boundShortcuts.first();
        QCOMPARE(bound.id, QStringLiteral("toggle-window"));
        QCOMPARE(bound.properties.value(QStringLiteral("preferred_trigger")).toString(),
                 QStringLiteral("F11"));
        QVERIFY(!bound.properties.value(QStringLiteral("description")).toString().isEmpty());

        // Registering again while bound starts no second session.
        key.registerKey();
        m_portal->emitActivated(key.sessionHandle(), QStringLiteral("toggle-window"));
        QTRY_COMPARE(activated.size(), 1);
        m_portal->emitActivated(key.sessionHandle(), QStringLiteral("something-else"));
        m_portal->emitActivated(QStringLiteral("/org/freedesktop/portal/desktop/session/x/y"),
                                QStringLiteral("toggle-window"));
        m_portal->emitActivated(key.sessionHandle(), QStringLiteral("toggle-window"));
        QTRY_COMPARE(activated.size(), 2);
        QTest::qWait(100);
        QCOMPARE(activated.size(), 2);
        QCOMPARE(unavailable.size(), 0);
        QCOMPARE(m_portal->sessions.size(), 1);
    }

    void releaseClosesTheSession()
    {
        QString session;
        {
            auto key = std::make_unique<PortalHotKey>(QDBusConnection::sessionBus());
            QSignalSpy activated(key.get(), &GlobalHotKey::activated);
            key->registerKey();
            QTRY_COMPARE(m_portal->boundShortcuts.size(), 1);
            session = key->sessionHandle();
            key->releaseKey();
            QTRY_COMPARE(m_portal->closedSessions, QStringList{session});
            m_portal->emitActivated(session, QStringLiteral("toggle-window"));
            QTest::qWait(100);
            QCOMPARE(activated.size(), 0);

            key->registerKey();
            QTRY_COMPARE(m_portal->sessions.size(), 2);
            QTRY_VERIFY(!key->sessionHandle().isEmpty());
        }
        // The destructor closed the second session.
        QTRY_COMPARE(m_portal->closedSessions.size(), 2);
        QCOMPARE(m_portal->closedSessions.last(), m_portal->sessions.last());
    }

    void refusedBinding()
    {
        m_portal->bindResponse = 1;
        PortalHotKey key(QDBusConnection::sessionBus());
        QSignalSpy unavailable(&key, &GlobalHotKey::unavailable);
        key.registerKey();
        QTRY_COMPARE(unavailable.size(), 1);
        QVERIFY(unavailable.at(0).at(0).toString().contains(QLatin1String("response 1")));
    }

    void noPortalOnTheBus()
    {
        m_portal->stop();
        PortalHotKey key(QDBusConnection::sessionBus());
        QSignalSpy activated(&key, &GlobalHotKey::activated);
        QSignalSpy unavailable(&key, &GlobalHotKey::unavailable);
        key.registerKey();
        QTRY_COMPARE(unavailable.size(), 1);
        QVERIFY(unavailable.at(0).at(0).toString().contains(QLatin1String("CreateSession")));
        key.releaseKey();
        key.registerKey();
        QTest::qWait(200);
        QCOMPARE(unavailable.size(), 1);
        QCOMPARE(activated.size(), 0);
    }

    void createdThroughTheEnvironment()
    {
        qputenv("QUILLORA_HOTKEY", "portal");
        auto key = GlobalHotKey::create();
        qunsetenv("QUILLORA_HOTKEY");
        QSignalSpy activated(key.get(), &GlobalHotKey::activated);
        key->registerKey();
        QTRY_COMPARE(m_portal->boundShortcuts.size(), 1);
        m_portal->emitActivated(m_portal->boundSession, QStringLiteral("toggle-window"));
        QTRY_COMPARE(activated.size(), 1);
    }
};

QTEST_GUILESS_MAIN(HotKeyPortalTest)
#include "test_hotkey_portal.moc"
