#pragma once

#include <QAbstractNativeEventFilter>
#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QRect>
#include <QSystemTrayIcon>
#include <QTimer>

class QDBusServiceWatcher;
struct xcb_connection_t;

namespace quillora
{

class FormMian;

// Follows the desktop's tray host (an XEmbed tray manager or a StatusNotifier watcher). Qt
// re-announces its icon when a host comes back; this tells the program so it can greet again.
class TrayHostWatch : public QObject, public QAbstractNativeEventFilter
{
    Q_OBJECT
public:
    explicit TrayHostWatch(QObject* parent = nullptr);
    ~TrayHostWatch() override;

    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    bool present() const { return m_present; }
    bool xembed() const { return m_connection != nullptr; }

Q_SIGNALS:
    void presenceChanged(bool present);
    // A host took over (again): a tray that restarted or one that appeared late.
    void hostReturned();

private:
    void watchXEmbed(xcb_connection_t* c);
    void followOwner(quint32 owner);
    void setPresent(bool present);

    bool m_present = false;
    QDBusServiceWatcher* m_watcher = nullptr;
    xcb_connection_t* m_connection = nullptr;
    quint32 m_managerAtom = 0;
    QList<quint32> m_selections; // "_NET_SYSTEM_TRAY_S<n>" per screen
    quint32 m_owner = 0;         // the tray manager's selection window
};

// The notification-area icon of the main window: tool tip, welcome balloon, left click toggles
// the window, right click opens "SYSMENU".
class SysTray : public QObject
{
    Q_OBJECT
public:
    explicit SysTray(FormMian* window, QObject* parent = nullptr);

    // Puts the icon in place and shows the welcome balloon; again whenever the tray host returns.
    void AddTrayIcon();
    void showWelcome();

    QSystemTrayIcon* icon() { return &m_icon; }
    TrayHostWatch* hostWatch() { return &m_host; }

    static constexpr int kBalloonMs = 10000;

private:
    void refreshToolTip();
    void welcomeOncePlaced();
    void onActivated(QSystemTrayIcon::ActivationReason reason);
    void onPresenceChanged(bool present);

    FormMian* m_window;
    QSystemTrayIcon m_icon;
    TrayHostWatch m_host;
    bool m_embedded = false;
    // A freshly shown icon still sits where it was created until the tray takes it in; a balloon
    // shown then would point at the wrong corner of the screen.
    QRect m_unplaced;
    QElapsedTimer m_placeWait;
    QTimer m_placePoll;
};

} // namespace quillora
