#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QRect>
#include <QSystemTrayIcon>
#include <QTimer>

class QDBusServiceWatcher;

namespace quillora
{

class FormMian;

// Follows the desktop's tray host. Qt re-announces its icon by itself when a host comes back;
// this tells the program that it happened so the welcome can be shown again.
class TrayHostWatch : public QObject
{
    Q_OBJECT
public:
    explicit TrayHostWatch(QObject* parent = nullptr);

    bool present() const { return m_present; }

Q_SIGNALS:
    void presenceChanged(bool present);
    // A host took over (again): a tray that restarted or one that appeared late.
    void hostReturned();

private:
    void pollXEmbed();
    void setPresent(bool present);

    bool m_present = false;
    quint32 m_owner = 0; // window owning the XEmbed tray selection
    QTimer m_poll;
    QDBusServiceWatcher* m_watcher = nullptr;
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
    // A freshly shown icon still sits where it was created until the tray takes it in; a balloon
    // shown then would point at the wrong corner of the screen.
    QRect m_unplaced;
    QElapsedTimer m_placeWait;
    QTimer m_placePoll;
};

} // namespace quillora
