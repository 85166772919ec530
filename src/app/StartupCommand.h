#pragma once

#include <QString>
#include <QStringList>

namespace quillora
{

// The program's command line: the arguments after the program name joined by single blanks,
// kept whole (no trimming). Only two exact, case-sensitive words mean anything.
class StartupCommand
{
public:
    explicit StartupCommand(const QStringList& argumentsAfterProgram);

    const QString& line() const { return m_line; }
    // "UP": the updater that just ran is still in use; leave its file alone.
    bool keepsUpdater() const;
    // "mini": the log-on autostart; start hidden in the tray.
    bool startsHidden() const;

private:
    QString m_line;
};

inline const QString kUpdaterFileName = QStringLiteral("Update.exe");

// "Update.exe" in programFolder, joined with exactly one "/".
QString updaterPath(const QString& programFolder);

// Deletes a leftover updater file (a file, not a folder) in programFolder unless the command keeps
// it. Returns an empty text when nothing is left to do, else the system's reason the file stays.
QString removeLeftoverUpdater(const QString& programFolder, const StartupCommand& command);

} // namespace quillora
