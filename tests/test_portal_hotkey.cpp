#include "app/StringTable.h"
#include "x11/ClipboardDesk.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

using namespace quillora;

namespace
{

const QString kBackend = "org.freedesktop.impl.portal.desktop.test";

// Asks the back-end's control interface; Record answers what it was asked so far, as JSON.
QDBusMessage backend(const QString& method, const QVariantList& args = {})
{
    // A plain call: QDBusInterface would introspect and keep a meta-object Qt never frees.
    QDBusMessage call = QDBusMessage::createMethodCall(kBackend, "/org/freedesktop/portal/desktop",
                                                       "org.zelvan.quillora.PortalBackend", method);
    call.setArguments(args);
    return QDBusConnection::sessionBus().call(call);
}

QJsonArray recorded(const char* what)
{
    return QJsonDocument::fromJson(backend("Record").arguments().value(0).toByteArray())[what].toArray();
}

} // namespace

// The real main window against the real xdg-desktop-portal front-end, which the session bus starts
// on the first call, and the tests' own back-end behind it (tests/portal/backend.py).
class PortalHotKeyTest : public QObject
{
    Q_OBJECT
    QProcess m_backend;

private Q_SLOTS:
    void initTestCase()
    {
        if (!QFile::exists("/usr/libexec/xdg-desktop-portal"))
            QSKIP("xdg-desktop-portal is not installed");
        qputenv("QUILLORA_HOTKEY", "portal"); // the key through the portal, as on a Wayland session
        m_backend.setProcessChannelMode(QProcess::ForwardedChannels);
        m_backend.start("/usr/bin/python3", {qEnvironmentVariable("XDG_DESKTOP_PORTAL_DIR") + "/backend.py"});
        // The front-end looks for its back-ends when it starts: this one must be there first.
        QTRY_VERIFY_WITH_TIMEOUT(m_backend.state() == QProcess::NotRunning ||
                                     QDBusConnection::sessionBus().interface()->isServiceRegistered(kBackend),
                                 10000);
        if (m_backend.state() == QProcess::NotRunning && m_backend.exitCode() == 77)
            QSKIP("python3-gi is not installed");
        QCOMPARE(m_backend.state(), QProcess::Running);
    }

    void cleanupTestCase()
    {
        m_backend.kill();
        m_backend.waitForFinished();
    }

    void f11IsBoundAndToggles()
    {
        auto desk = std::make_unique<test::ClipboardDesk>(false, /*hotKey*/ true);
        FormMian& window = desk->window();
        QVERIFY(test::shownOnScreen(window));
        QTRY_COMPARE(recorded("bound").size(), 1);
        // Both where a 1.16 front-end's back-end reads it and where later ones do.
        const QJsonArray wanted{
            QJsonArray{"toggle-window",
                       QJsonObject{{"description", "Show or hide Quillora"}, {"preferred_trigger", "F11"}}}};
        for (const char* call : {"created", "bound"})
            QCOMPARE(recorded(call)[0].toObject()["shortcuts"].toArray(), wanted);
        const QString session = recorded("created")[0].toObject()["session"].toString();
        QCOMPARE(recorded("bound")[0].toObject()["session"].toString(), session);
        QVERIFY(window.statusMessage().isEmpty());

        for (const QString token : {"t-hidden", "t-shown"}) {
            backend("Press", {QVariant::fromValue(QDBusObjectPath(session)), "toggle-window", token});
            QTRY_COMPARE(window.isVisible() && !window.isMinimized(), token == "t-shown");
            // Where Qt's Wayland window takes it to come to the front.
            QCOMPARE(qEnvironmentVariable("XDG_ACTIVATION_TOKEN"), token);
        }
        desk.reset();
        QTRY_VERIFY(recorded("closed").contains(session));
    }

    void nothingBoundSaysSoOnce()
    {
        // Granted, as KDE 5.27 answers a client that sent its shortcut only to BindShortcuts.
        backend("SetAnswer", {"nothing"});
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression("^Global key F11 unavailable: .*bound no shortcut"));
        QTest::failOnWarning(QRegularExpression("Global key F11"));
        test::ClipboardDesk desk(false, /*hotKey*/ true);
        QTRY_COMPARE(desk.window().statusMessage(), uiText(desk.window().interfaceLanguage(), MsgHotKeyOff));
        backend("SetAnswer", {"bind"});
    }
};

QTEST_MAIN(PortalHotKeyTest)
#include "test_portal_hotkey.moc"
