#include "desktop/DesktopOpener.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryFile>
#include <QUrl>

namespace quillora
{

void openWithDesktop(const QString& address, const std::function<bool(const QUrl&)>& fallback,
                     const OpenFailed& failed)
{
    // xdg-open may wait for the browser it started; the process goes with the program at the latest.
    auto* opener = new QProcess(QCoreApplication::instance());
    // Standard error goes to a file, not a pipe: a browser that outlives xdg-open keeps writing there.
    auto* said = new QTemporaryFile(opener);
    opener->setStandardInputFile(QProcess::nullDevice());
    opener->setStandardOutputFile(QProcess::nullDevice());
    opener->setStandardErrorFile(said->open() ? said->fileName() : QProcess::nullDevice());
    QObject::connect(opener, &QProcess::errorOccurred, opener, [=](QProcess::ProcessError error) {
        if (error != QProcess::FailedToStart)
            return;
        const QString reason = opener->errorString();
        opener->deleteLater();
        if (!fallback || !fallback(QUrl(address, QUrl::TolerantMode)))
            failed(reason);
    });
    QObject::connect(opener, &QProcess::finished, opener, [=](int code, QProcess::ExitStatus status) {
        opener->deleteLater();
        if (status == QProcess::NormalExit && code == 0)
            return;
        said->seek(0);
        // xdg-open's verdict is its last line; the ones before are the browsers it tried.
        const QStringList lines =
            QString::fromLocal8Bit(said->readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        QString reason = lines.isEmpty() ? QString() : lines.constLast().trimmed();
        if (reason.isEmpty() && status == QProcess::NormalExit)
            reason = QStringLiteral("xdg-open: exit code %1").arg(code);
        failed(reason.isEmpty() ? opener->errorString() : reason);
    });
    opener->start(QStringLiteral("xdg-open"), {address});
}

} // namespace quillora
