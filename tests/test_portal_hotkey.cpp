#include "app/StringTable.h"
#include "x11/ClipboardDesk.h"

#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

using namespace quillora;

namespace
{

const QString kBackend = "org.freedesktop.impl.portal.desktop.test";

// What the back-end was asked: sessions created (with their shortcuts), bindings, sessions closed.
QJsonObject backendRecord()
{
    QDBusInterface control(kBackend, "/org/freedesktop/portal/desktop", "org.zelvan.quillora.PortalBackend");
    const QDBusReply<QString> reply = control.call("Record");
    return QJsonDocument::fromJson(reply.value().toUtf8()).object();
}

bool backendCall(const QString& method, const QVariantList& args)
{
    QDBusInterface control(kBackend, "/org/freedesktop/portal/desktop", "org.zelvan.quillora.PortalBackend");
    return control.callWithArgumentList(QDBus::Block, method, args).type() == QDBusMessage::ReplyMessage;
}

// The window with its key through the portal, as on a Wayland session.
std::unique_ptr<test::ClipboardDesk> portalDesk()
{
    qputenv("QUILLORA_HOTKEY", "portal");
    auto desk = std::make_unique<test::ClipboardDesk>(test::ClipboardDesk::Setup{false, /*hotKey*/ true});
    qunsetenv("QUILLORA_HOTKEY");
    return desk;
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
        const int sessionsBefore = backendRecord()["created"].toArray().size();
        auto desk = portalDesk();
        FormMian& window = desk->window();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        QTRY_COMPARE(backendRecord()["bound"].toArray().size(), sessionsBefore + 1);
        const QJsonObject record = backendRecord();
        const QJsonObject created = record["created"].toArray().last().toObject();
        const QJsonObject bound = record["bound"].toArray().last().toObject();
        // Both where a 1.16 front-end's back-end reads them and where later ones do.
        const QJsonArray wanted{
            QJsonArray{"toggle-window",
                       QJsonObject{{"description", "Show or hide Quillora"}, {"preferred_trigger", "F11"}}}};
        QCOMPARE(created["shortcuts"].toArray(), wanted);
        QCOMPARE(bound["shortcuts"].toArray(), wanted);
        const QString session = created["session"].toString();
        QCOMPARE(bound["session"].toString(), session);
        QVERIFY(window.statusMessage().isEmpty());

        const auto shown = [&window] { return window.isVisible() && !window.isMinimized(); };
        QVERIFY(backendCall("Press", {QVariant::fromValue(QDBusObjectPath(session)), "toggle-window", "t1"}));
        QTRY_VERIFY(!shown());
        QVERIFY(backendCall("Press", {QVariant::fromValue(QDBusObjectPath(session)), "toggle-window", "t2"}));
        QTRY_VERIFY(shown());
        // The press's token is where Qt's Wayland window takes it to come to the front.
        QCOMPARE(qgetenv("XDG_ACTIVATION_TOKEN"), "t2");
        qunsetenv("XDG_ACTIVATION_TOKEN");

        desk.reset();
        QTRY_VERIFY(backendRecord()["closed"].toArray().contains(session));
    }

    void nothingBoundSaysSoOnce_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("reason");
        QTest::newRow("granted, none bound") << "nothing"
                                             << "bound no shortcut for toggle-window";
        QTest::newRow("refused") << "refuse"
                                 << "refused to bind the shortcut \\(response 2\\)";
    }

    void nothingBoundSaysSoOnce()
    {
        QFETCH(QString, answer);
        QFETCH(QString, reason);
        QVERIFY(backendCall("SetAnswer", {answer}));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("^Global key F11 unavailable: .*" + reason));
        QTest::failOnWarning(QRegularExpression("Global key F11"));
        const int bindings = backendRecord()["bound"].toArray().size();
        {
            auto desk = portalDesk();
            QTRY_COMPARE(desk->window().statusMessage(),
                         uiText(desk->window().interfaceLanguage(), MsgHotKeyOff));
            QCOMPARE(backendRecord()["bound"].toArray().size(), bindings + 1);
        }
        QVERIFY(backendCall("SetAnswer", {"bind"}));
    }
};

QTEST_MAIN(PortalHotKeyTest)
#include "test_portal_hotkey.moc"
