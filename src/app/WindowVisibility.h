#pragma once

#include <QObject>
#include <functional>

class QWidget;

namespace quillora
{

// When the main window shows, minimises and goes into the tray. Where there is a tray the window hides
// there when minimised or closed; without one it stays minimised in the task bar so it can always be
// reached. Decided by the program's own idea of the window, since window managers report late.
class WindowVisibility : public QObject
{
    Q_OBJECT
public:
    using Clock = std::function<qint64()>; // milliseconds, monotonic
    explicit WindowVisibility(QWidget* window, Clock clock = {});

    // The toggle shared by the tray icon, F11 and "menuSYS1".
    void toggle();
    // The close box without the exit flag.
    void minimise();
    void setTrayPresent(bool present);
    bool trayPresent() const { return m_trayPresent; }

Q_SIGNALS:
    void hiddenToTray();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void stateChanged();
    void askMinimised();
    // A minimised report that contradicts a show answers a minimise we asked for a moment ago; one the
    // user asks for right after a show is not one.
    bool lateReport() const;

    QWidget* m_window;
    bool m_trayPresent = false;
    bool m_meantShown = false;
    Clock m_clock;
    qint64 m_minimiseAsked = -1; // when we last asked for a minimise
};

} // namespace quillora
