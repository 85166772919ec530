#include "DesktopProbe.h"

#include "TestSupport.h"

#include <QRegularExpression>
#include <QTest>
#include <csignal>

namespace quillora::test
{

namespace xwin
{

namespace
{
QString run(const QString& program, const QStringList& args)
{
    const CommandResult r = runCommand(program, args, {}, 5000);
    return QString::fromUtf8(r.out);
}

QList<quint32> hexIds(const QString& text)
{
    QList<quint32> ids;
    static const QRegularExpression hex(QStringLiteral("0x[0-9a-fA-F]+"));
    for (auto it = hex.globalMatch(text); it.hasNext();)
        ids << it.next().captured().toUInt(nullptr, 16);
    return ids;
}

QString id(quint32 window)
{
    return QString::number(window);
}
} // namespace

QList<quint32> windowsOfPid(qint64 pid, bool onlyVisible)
{
    QStringList args{QStringLiteral("search")};
    if (onlyVisible)
        args << QStringLiteral("--onlyvisible");
    args << QStringLiteral("--pid") << QString::number(pid);
    QList<quint32> ids;
    for (const QString& line :
         run(QStringLiteral("xdotool"), args).split(QLatin1Char('\n'), Qt::SkipEmptyParts))
        ids << line.trimmed().toUInt();
    return ids;
}

QList<quint32> tree(quint32 parent)
{
    const QString out =
        run(QStringLiteral("xwininfo"), {QStringLiteral("-tree"), QStringLiteral("-id"), id(parent)});
    QList<quint32> ids;
    for (const QString& line : out.split(QLatin1Char('\n'))) {
        // Child lines start with the window id; the header lines name the window itself and its parent.
        const QString t = line.trimmed();
        if (t.startsWith(QLatin1String("0x")))
            ids << hexIds(t.section(QLatin1Char(' '), 0, 0)).value(0);
    }
    return ids;
}

QRect geometry(quint32 window)
{
    const QString out = run(QStringLiteral("xwininfo"), {QStringLiteral("-id"), id(window)});
    static const QRegularExpression re(QStringLiteral("Absolute upper-left X:\\s+(-?\\d+).*"
                                                      "Absolute upper-left Y:\\s+(-?\\d+).*"
                                                      "Width:\\s+(\\d+).*Height:\\s+(\\d+)"),
                                       QRegularExpression::DotMatchesEverythingOption);
    const auto m = re.match(out);
    if (!m.hasMatch())
        return {};
    return QRect(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt(), m.captured(4).toInt());
}

bool viewable(quint32 window)
{
    return run(QStringLiteral("xwininfo"), {QStringLiteral("-id"), id(window)})
        .contains(QLatin1String("Map State: IsViewable"));
}

QString property(quint32 window, const QString& name)
{
    const QString out = run(QStringLiteral("xprop"), {QStringLiteral("-id"), id(window), name});
    return out.contains(QLatin1String("not found")) ? QString() : out.trimmed();
}

bool isTooltip(quint32 window)
{
    return property(window, QStringLiteral("_NET_WM_WINDOW_TYPE"))
        .contains(QLatin1String("_NET_WM_WINDOW_TYPE_TOOLTIP"));
}

QList<quint32> clientList()
{
    const QString out =
        run(QStringLiteral("xprop"), {QStringLiteral("-root"), QStringLiteral("_NET_CLIENT_LIST")});
    return hexIds(out.section(QLatin1Char('#'), 1));
}

bool click(quint32 window)
{
    const QRect g = geometry(window);
    if (!g.isValid())
        return false;
    return runCommand(QStringLiteral("xdotool"),
                      {QStringLiteral("mousemove"), QString::number(g.center().x()),
                       QString::number(g.center().y()), QStringLiteral("click"), QStringLiteral("1")})
        .ok();
}

} // namespace xwin

QuilloraProcess::QuilloraProcess(QString program)
    : m_program(std::move(program)), m_env(QProcessEnvironment::systemEnvironment())
{
    m_process.setProcessChannelMode(QProcess::SeparateChannels);
}

QuilloraProcess::~QuilloraProcess()
{
    if (m_process.state() != QProcess::NotRunning) {
        m_process.kill();
        m_process.waitForFinished(5000);
    }
}

QString QuilloraProcess::defaultProgram()
{
    return qEnvironmentVariable("QUILLORA_BUILD_DIR") + QStringLiteral("/src/quillora");
}

void QuilloraProcess::setServiceUrl(const QString& baseUrl)
{
    for (const char* name : {"QUILLORA_SERVICE_URL", "QUILLORA_API_URL", "QUILLORA_SITE_URL"})
        m_env.insert(QString::fromLatin1(name), baseUrl);
}

bool QuilloraProcess::start(const QStringList& arguments, const QStringList& wrapper)
{
    m_process.setProcessEnvironment(m_env);
    if (wrapper.isEmpty())
        m_process.start(m_program, arguments);
    else
        m_process.start(wrapper.first(), wrapper.mid(1) + QStringList{m_program} + arguments);
    return m_process.waitForStarted(5000);
}

bool QuilloraProcess::stopWith(int signal, int timeoutMs)
{
    if (m_process.state() != QProcess::Running)
        return false;
    ::kill(pid_t(m_process.processId()), signal);
    if (!m_process.waitForFinished(timeoutMs))
        return false;
    return m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
}

quint32 QuilloraProcess::mainWindow() const
{
    for (quint32 w : xwin::windowsOfPid(m_process.processId(), false)) {
        // The icon, the balloon and Qt's helper windows are all small.
        if (xwin::geometry(w).width() >= 400 && !xwin::isTooltip(w))
            return w;
    }
    return 0;
}

bool QuilloraProcess::mainViewable() const
{
    const quint32 w = mainWindow();
    return w && xwin::viewable(w);
}

quint32 QuilloraProcess::iconIn(quint32 panel) const
{
    if (!panel)
        return 0;
    const QList<quint32> embedded = xwin::tree(panel);
    for (quint32 w : xwin::windowsOfPid(m_process.processId(), true)) {
        if (embedded.contains(w))
            return w;
    }
    return 0;
}

QSet<quint32> QuilloraProcess::balloons() const
{
    QSet<quint32> found;
    for (quint32 w : xwin::windowsOfPid(m_process.processId(), true)) {
        // A plain tool tip is one line high; the balloon has a title and a text.
        if (xwin::isTooltip(w) && xwin::geometry(w).height() >= 40)
            found.insert(w);
    }
    return found;
}

bool Trayer::start()
{
    m_process.start(QStringLiteral("trayer"),
                    {QStringLiteral("--edge"), QStringLiteral("top"), QStringLiteral("--align"),
                     QStringLiteral("right"), QStringLiteral("--widthtype"), QStringLiteral("request"),
                     QStringLiteral("--height"), QStringLiteral("24"), QStringLiteral("--transparent"),
                     QStringLiteral("false")});
    if (!m_process.waitForStarted(5000))
        return false;
    return QTest::qWaitFor([this] { return panel() != 0; }, 10000);
}

void Trayer::stop()
{
    if (m_process.state() == QProcess::NotRunning)
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(5000)) {
        m_process.kill();
        m_process.waitForFinished(5000);
    }
}

quint32 Trayer::panel() const
{
    const CommandResult r =
        runCommand(QStringLiteral("xdotool"),
                   {QStringLiteral("search"), QStringLiteral("--classname"), QStringLiteral("^panel$")});
    return QString::fromUtf8(r.out).section(QLatin1Char('\n'), 0, 0).trimmed().toUInt();
}

} // namespace quillora::test
