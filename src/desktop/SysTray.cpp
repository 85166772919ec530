#include "SysTray.h"

#include "Version.h"
#include "app/FormMian.h"
#include "app/StringTable.h"

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

// The window that owns "_NET_SYSTEM_TRAY_S<n>" on any screen, 0 when there is no tray.
quint32 xembedTrayOwner(xcb_connection_t* c)
{
    const xcb_setup_t* setup = xcb_get_setup(c);
    const int screens = xcb_setup_roots_length(setup);
    for (int n = 0; n < screens; ++n) {
        const QByteArray name = "_NET_SYSTEM_TRAY_S" + QByteArray::number(n);
        xcb_intern_atom_reply_t* atom =
            xcb_intern_atom_reply(c, xcb_intern_atom(c, 0, quint16(name.size()), name.constData()), nullptr);
        if (!atom)
            continue;
        xcb_get_selection_owner_reply_t* owner =
            xcb_get_selection_owner_reply(c, xcb_get_selection_owner(c, atom->atom), nullptr);
        free(atom);
        const quint32 window = owner ? owner->owner : 0;
        free(owner);
        if (window)
            return window;
    }
    return 0;
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
        m_owner = xembedTrayOwner(c);
        m_present = m_owner != 0;
        // The X server says nothing to us when a tray restarts unless we listen on the root
        // window; a one-round-trip look every second is simpler and costs nothing measurable.
        m_poll.setInterval(1000);
        connect(&m_poll, &QTimer::timeout, this, &TrayHostWatch::pollXEmbed);
        m_poll.start();
        return;
    }
    m_present = QSystemTrayIcon::isSystemTrayAvailable();
}

void TrayHostWatch::pollXEmbed()
{
    xcb_connection_t* c = x11Connection();
    if (!c)
        return;
    const quint32 owner = xembedTrayOwner(c);
    if (owner == m_owner)
        return;
    m_owner = owner;
    setPresent(owner != 0);
    if (owner)
        Q_EMIT hostReturned();
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
    // Without a host at the first show Qt never embeds the icon; a fresh show asks anew.
    m_icon.hide();
    m_icon.show();
    m_unplaced = m_icon.geometry();
    m_placeWait.start();
    welcomeOncePlaced();
}

void SysTray::welcomeOncePlaced()
{
    // No geometry at all: a StatusNotifier host places the balloon itself.
    const bool waiting =
        m_unplaced.isValid() && m_icon.geometry() == m_unplaced && m_placeWait.elapsed() < 1500;
    if (waiting) {
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
    m_icon.showMessage(uiText(language, 17), uiText(language, 20) + QLatin1Char(' ') + versionText(),
                       QSystemTrayIcon::Information, kBalloonMs);
}

void SysTray::refreshToolTip()
{
    m_icon.setToolTip(uiText(m_window->interfaceLanguage(), 19));
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
    if (!present && m_window->isHidden() && !m_window->exitRequested())
        m_window->showMinimized();
}

} // namespace quillora
