#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTest>
#include <functional>
#include <memory>
#include <optional>

namespace quillora::test
{

// Starts a call that answers through a callback and waits, the event loop running, for the answer;
// nullopt when none came within the time.
template <typename T>
std::optional<T> awaitAnswer(const std::function<void(std::function<void(const T&)>)>& start,
                             int timeoutMs = 30000)
{
    const auto got = std::make_shared<std::optional<T>>();
    start([got](const T& value) { *got = value; });
    return QTest::qWaitFor([&got] { return got->has_value(); }, timeoutMs) ? *got : std::nullopt;
}

struct CommandResult {
    bool started = false;
    int exitCode = -1;
    QByteArray out;
    QByteArray err;
    bool ok() const { return started && exitCode == 0; }
};

// Runs an external program to completion, feeding `input` on its standard input and adding `environment`
// ("NAME=value" entries) to this process's; the event loop keeps running meanwhile, so an in-process
// stand-in can answer.
CommandResult runCommand(const QString& program, const QStringList& arguments, const QByteArray& input = {},
                         int timeoutMs = 10000, const QStringList& environment = {});

// Runs the built quillora-cli against the service at `serviceUrl`, feeding `input`.
inline CommandResult runCli(const QStringList& arguments, const QString& serviceUrl,
                            const QByteArray& input = {})
{
    return runCommand(qEnvironmentVariable("QUILLORA_BUILD_DIR") + QStringLiteral("/src/quillora-cli"),
                      arguments, input, 30000,
                      {QStringLiteral("QUILLORA_SERVICE_URL=") + serviceUrl,
                       QStringLiteral("QUILLORA_API_URL=") + serviceUrl});
}

// `text` converted to `codec` by iconv, the way another program would write it; empty on failure.
QByteArray iconvEncode(const QString& text, const QString& codec);

// Writes `bytes` to `path` (creating folders); returns whether every byte landed.
bool writeFile(const QString& path, const QByteArray& bytes);
// The whole file, or an empty array when it cannot be read.
QByteArray readFile(const QString& path);

// The longest a window may take to answer while it works: 100 ms. A sanitized build slows every
// allocation, first uses of Qt's widgets most, so there only freezes of a second or more count.
#if defined(__SANITIZE_ADDRESS__)
inline constexpr double kAnswerLimitMs = 1000;
#else
inline constexpr double kAnswerLimitMs = 100;
#endif

// Raises this process's threads (and the threads they start later) above ordinary load where allowed
// (as root), so that a responsiveness measurement shows the window's own stalls, not the machine's.
void raiseOwnPriority();

} // namespace quillora::test
