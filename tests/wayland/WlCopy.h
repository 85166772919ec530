#pragma once

#include <QProcess>
#include <QTest>
#include <memory>
#include <vector>

namespace quillora::test
{

// wl-copy standing in for other Wayland programs; each copy serves the clipboard until it is ended.
class WlCopy
{
public:
    ~WlCopy() { endAll(); }
    void copy(const QByteArray& data, const QString& type = "text/plain;charset=utf-8")
    {
        auto& process = m_running.emplace_back(std::make_unique<QProcess>());
        process->start("wl-copy", {"--foreground", "--type", type});
        process->waitForStarted();
        process->write(data);
        process->closeWriteChannel();
    }
    void endAll()
    {
        for (auto& process : m_running) {
            process->kill();
            process->waitForFinished(2000);
        }
        m_running.clear();
    }
    // What another program reads now, or the offered types with `listTypes`; the event loop runs
    // meanwhile so this program can answer.
    static QString read(bool listTypes = false)
    {
        QProcess process;
        process.start("wl-paste", {listTypes ? "--list-types" : "--no-newline"});
        if (QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, 5000))
            return QString::fromUtf8(process.readAllStandardOutput());
        process.kill();
        process.waitForFinished();
        return {};
    }

private:
    std::vector<std::unique_ptr<QProcess>> m_running;
};

} // namespace quillora::test
