#pragma once

#include <QString>
#include <QStringList>

namespace quillora
{

class SpeechAudioFactory;

// Where the speech module is looked for: beside the program (the build tree), then in the library
// folder of the installed tree, relative to the program so that any install prefix works.
QStringList speechModuleCandidates(const QString& programFolder);

// The module's factory from the first candidate that loads (Qt keeps it loaded from then on), or
// null with the loader's reasons in `error`.
SpeechAudioFactory* loadSpeechModule(const QString& programFolder, QString* error = nullptr);

} // namespace quillora
