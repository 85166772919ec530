#pragma once

#include <QString>

namespace quillora
{

inline const QString kAutoStartName = QStringLiteral("Zelvan-Quilrun");

// $XDG_CONFIG_HOME/autostart/Zelvan-Quilrun.desktop
QString autostartFilePath();
// The Exec= value: the program's absolute path (quoted per the Desktop Entry rules when needed)
// followed by " mini".
QString startupCommand(const QString& programPath);
// The whole desktop entry file.
QString autostartEntryText(const QString& programPath);
// Creates or removes the entry; returns whether the file system now matches.
bool SetAutoRun(bool enable, const QString& programPath);
// True when the entry exists and its Exec equals startupCommand(programPath) exactly.
bool isAutoRunRegistered(const QString& programPath);

} // namespace quillora
