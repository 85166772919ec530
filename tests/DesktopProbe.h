#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QRect>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QTest>

namespace quillora::test
{

// Polls `condition` until it holds, at most 10 s. Unlike QTRY_VERIFY it does not ask again after
// success: what other clients show on the X server may flicker while a tray rearranges itself.
template <typename Condition> bool eventually(Condition condition, int timeoutMs = 10000)
{
    return QTest::qWaitFor(condition, timeoutMs);
}

// Looks at the X server the way another client would (xdotool, xwininfo, xprop).
namespace xwin
{
QList<quint32> windowsOfPid(qint64 pid, bool onlyVisible);
QList<quint32> tree(quint32 parent); // every descendant
QRect geometry(quint32 window);
bool viewable(quint32 window);
QString property(quint32 window, const QString& name); // xprop's line, "" when absent
bool isTooltip(quint32 window);
QList<quint32> clientList(); // the window manager's _NET_CLIENT_LIST
bool click(quint32 window);  // left button near the window's top-left corner
} // namespace xwin

// The real program, started as another process would start it.
class QuilloraProcess
{
public:
    explicit QuilloraProcess(QString program = defaultProgram());
    ~QuilloraProcess();

    static QString defaultProgram(); // $QUILLORA_BUILD_DIR/src/quillora
    // Every address the program knows points at baseUrl, so nothing leaves the machine.
    void setServiceUrl(const QString& baseUrl);
    void setEnv(const QString& name, const QString& value) { m_env.insert(name, value); }
    // `wrapper` runs in front of the program (e.g. to drop privileges).
    bool start(const QStringList& arguments, const QStringList& wrapper = {});

    QProcess& process() { return m_process; }
    qint64 pid() const { return m_process.processId(); }
    bool running() const { return m_process.state() == QProcess::Running; }
    // Sends a signal and waits for the end; true when it ended normally with exit code 0.
    bool stopWith(int signal, int timeoutMs = 10000);

    quint32 mainWindow() const; // the big "Quillora" window, 0 while none exists
    bool mainViewable() const;
    quint32 iconIn(quint32 panel) const; // the program's window inside the tray panel, or 0
    QSet<quint32> balloons() const;      // visible balloon windows

private:
    QString m_program;
    QProcessEnvironment m_env;
    QProcess m_process;
};

// An XEmbed tray (trayer) run by the test.
class Trayer
{
public:
    ~Trayer() { stop(); }
    bool start();
    void stop();
    quint32 panel() const; // the window icons are embedded in, 0 when the tray is not up

private:
    QProcess m_process;
};

} // namespace quillora::test
