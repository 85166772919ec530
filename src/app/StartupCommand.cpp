#include "StartupCommand.h"

#include <QFile>
#include <QFileInfo>

namespace quillora
{

StartupCommand::StartupCommand(const QStringList& argumentsAfterProgram)
    : m_line(argumentsAfterProgram.join(QLatin1Char(' ')))
{
}

bool StartupCommand::keepsUpdater() const
{
    return m_line == QLatin1String("UP");
}

bool StartupCommand::startsHidden() const
{
    return m_line == QLatin1String("mini");
}

QString updaterPath(const QString& programFolder)
{
    if (programFolder.endsWith(QLatin1Char('/')))
        return programFolder + kUpdaterFileName;
    return programFolder + QLatin1Char('/') + kUpdaterFileName;
}

QString removeLeftoverUpdater(const QString& programFolder, const StartupCommand& command)
{
    if (command.keepsUpdater())
        return {};
    const QString path = updaterPath(programFolder);
    const QFileInfo info(path);
    // Only a file counts: a folder of that name is not ours. A dangling link is still a leftover.
    if (info.isDir() || (!info.exists() && !info.isSymLink()))
        return {};
    QFile file(path);
    if (!file.remove())
        return file.errorString();
    return {};
}

} // namespace quillora
