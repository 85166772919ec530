#include "SysTray.h"

#include "Version.h"
#include "app/FormMian.h"
#include "app/StringTable.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusServiceWatcher>
#include <QGuiApplication>
#include <QMenu>
#include <xcb/xcb.h>

namespace quillora
{

namespace
{

const QString kSniWatcher = QStringLiteral("org.kde.StatusNotifierWatcher");

// Qt picks the StatusNotifier tray once, when a watcher with a host is on the bus at the
// first tray call; the same test here keeps the watch on the protocol Qt really uses.
bool statusNotifierHostRegistered()
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.interface()->isServiceRegistered(kSniWatcher).value())
        return false;
    QDBusInterface watcher(kSniWatcher, QStringLiteral("/StatusNotifierWatcher"), kSniWatcher, bus);
    return watcher.property("IsStatusNotifierHostRegistered").toBool();
}

xcb_connection_t* x11Connection()
{
    auto* x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

xcb_atom_t internAtom(xcb_connection_t* c, const QByteArray& name)
{
    xcb_intern_atom_reply_t* reply =
        xcb_intern_atom_reply(c, xcb_intern_atom(c, 0, quint16(name.size()), name.constData()), nullptr);
    const xcb_atom_t atom = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    free(reply);
    return atom;
}

void addEventMask(xcb_connection_t* c, xcb_window_t window, quint32 mask)
{
    xcb_get_window_attributes_reply_t* attrs =
        xcb_get_window_attributes_reply(c, xcb_get_window_attributes(c, window), nullptr);
    if (!attrs)
        return;
    const quint32 values[] = {attrs->your_event_mask | mask};
    free(attrs);
    xcb_change_window_attributes(c, window, XCB_CW_EVENT_MASK, values);
}

} // namespace

TrayHostWatch::TrayHostWatch(QObject* parent) : QObject(parent)
{
    if (statusNotifierHostRegistered()) {
        m_present = true;
        m_watcher = new QDBusServiceWatcher(kSniWatcher, QDBusConnection::sessionBus(),
                                            QDBusServiceWatcher::WatchForOwnerChange, this);
        connect(m_watcher, &QDBusServiceWatcher::serviceRegistered, this, [this] {
            setPresent(true);
            Q_EMIT hostReturned();
        });
        connect(m_watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this] { setPresent(false); });
        return;
    }
    if (xcb_connection_t* c = x11Connection()) {
        watchXEmbed(c);
        return;
    }
    m_present = QSystemTrayIcon::isSystemTrayAvailable();
}

TrayHostWatch::~TrayHostWatch()
{
    if (m_connection)
        QCoreApplication::instance()->removeNativeEventFilter(this);
}

// A tray manager announces itself with a MANAGER message on the root window; its selection
// window dies with it. A restarted tray may well get the very same window id, so only these
// events tell a restart apart.
void TrayHostWatch::watchXEmbed(xcb_connection_t* c)
{
    m_connection = c;
    m_managerAtom = internAtom(c, QByteArrayLiteral("MANAGER"));
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(c));
    for (int n = 0; screens.rem; ++n, xcb_screen_next(&screens)) {
        m_selections.append(internAtom(c, "_NET_SYSTEM_TRAY_S" + QByteArray::number(n)));
        addEventMask(c, screens.data->root, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    }
    QCoreApplication::instance()->installNativeEventFilter(this);
    for (const xcb_atom_t selection : std::as_const(m_selections)) {
        xcb_get_selection_owner_reply_t* reply =
            xcb_get_selection_owner_reply(c, xcb_get_selection_owner(c, selection), nullptr);
        const xcb_window_t owner = reply ? reply->owner : xcb_window_t(XCB_WINDOW_NONE);
        free(reply);
        if (owner) {
            followOwner(owner);
            break;
        }
    }
    m_present = m_owner != XCB_WINDOW_NONE;
}

void TrayHostWatch::followOwner(quint32 owner)
{
    m_owner = owner;
    addEventMask(m_connection, owner, XCB_EVENT_MASK_STRUCTURE_NOTIFY);
    xcb_flush(m_connection);
}

bool TrayHostWatch::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto* event = static_cast<xcb_generic_event_t*>(message);
    switch (event->response_type & 0x7f) {
    case XCB_CLIENT_MESSAGE: {
        const auto* cm = reinterpret_cast<const xcb_client_message_event_t*>(event);
        if (cm->type == m_managerAtom && cm->format == 32 && m_selections.contains(cm->data.data32[1])) {
            followOwner(cm->data.data32[2]);
            setPresent(true);
            Q_EMIT hostReturned();
        }
        break;
    }
    case XCB_DESTROY_NOTIFY: {
        const auto* dn = reinterpret_cast<const xcb_destroy_notify_event_t*>(event);
        if (m_owner && dn->window == m_owner) {
            m_owner = XCB_WINDOW_NONE;
            setPresent(false);
        }
        break;
    }
    default:
        break;
    }
    return false;
}

void TrayHostWatch::setPresent(bool present)
{
    if (present == m_present)
        return;
    m_present = present;
    Q_EMIT presenceChanged(present);
}

SysTray::SysTray(FormMian* window, QObject* parent) : QObject(parent), m_window(window)
{
    QIcon icon = window->windowIcon();
    if (icon.isNull())
        icon = QGuiApplication::windowIcon();
    m_icon.setIcon(icon);
    m_icon.setContextMenu(window->systemMenu());
    refreshToolTip();
    window->setTrayPresent(m_host.present());

    connect(&m_icon, &QSystemTrayIcon::activated, this, &SysTray::onActivated);
    connect(window, &FormMian::hiddenToTray, this, &SysTray::showWelcome);
    connect(window, &FormMian::interfaceLanguageChanged, this, &SysTray::refreshToolTip);
    connect(window, &FormMian::exiting, &m_icon, &QSystemTrayIcon::hide);
    connect(&m_host, &TrayHostWatch::presenceChanged, this, &SysTray::onPresenceChanged);
    connect(&m_host, &TrayHostWatch::hostReturned, this, &SysTray::AddTrayIcon);
    m_placePoll.setInterval(50);
    connect(&m_placePoll, &QTimer::timeout, this, &SysTray::welcomeOncePlaced);
}

void SysTray::AddTrayIcon()
{
    refreshToolTip();
    // Qt embeds the icon only if a host exists when it is shown, and follows that host's restarts
    // from then on; an icon shown while there was none has to be shown anew.
    if (!m_embedded) {
        m_icon.hide();
        m_icon.show();
        m_embedded = m_host.present();
    }
    m_unplaced = m_icon.geometry();
    m_placeWait.start();
    welcomeOncePlaced();
}

void SysTray::welcomeOncePlaced()
{
    // A StatusNotifier host places the balloon itself; an XEmbed icon has to be in the tray first.
    const QRect now = m_icon.geometry();
    const bool placed = !m_host.xembed() || (now.isValid() && now != m_unplaced);
    if (!placed && m_placeWait.elapsed() < 1500) {
        m_placePoll.start();
        return;
    }
    m_placePoll.stop();
    showWelcome();
}

void SysTray::showWelcome()
{
    const QString language = m_window->interfaceLanguage();
    refreshToolTip();
    m_icon.showMessage(uiText(language, WindowTitle),
                       uiText(language, TrayWelcome) + QLatin1Char(' ') + versionText(),
                       QSystemTrayIcon::Information, kBalloonMs);
}

void SysTray::refreshToolTip()
{
    m_icon.setToolTip(uiText(m_window->interfaceLanguage(), TrayToolTip));
}

void SysTray::onActivated(QSystemTrayIcon::ActivationReason reason)
{
    if (reason == QSystemTrayIcon::Trigger)
        m_window->toggleShowHide();
}

void SysTray::onPresenceChanged(bool present)
{
    m_window->setTrayPresent(present);
    // A window hidden in a tray that went away could no longer be reached: park it in the task bar.
    if (!present && m_window->isHidden() && !m_window->exitRequested()) {
        // Minimised after showing: set before, Qt maps the window in the normal state, and a window
        // that went to the tray minimised already is still marked so.
        m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
        m_window->show();
        m_window->setWindowState(m_window->windowState() | Qt::WindowMinimized);
    }
}

} // namespace quillora
