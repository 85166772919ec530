#pragma once

#include <QString>
#include <QUrl>

namespace quillora
{

inline constexpr int kSpeechTextLimit = 100;

QString SpeechEncode(const QString& text);
bool isSpeechLanguage(const QString& code); // the 42-code list, exact
// The page text, one line plus CR LF.
QString speechPageText(const QString& text, const QString& code, const QString& serviceBase);
// soun(0).tmp / soun(1).tmp in `folder`.
QString speechPagePath(const QString& folder, int slot);
// Writes the page for `slot` (0 translation, 1 source), or deletes it when the code has no speech.
// Returns whether the speaker shows: for every code with speech, written or not.
bool BuildSpeechPage(const QString& text, const QString& code, int slot, const QString& folder,
                     const QString& serviceBase);
// The service's spoken audio for a text.
QUrl speechAudioUrl(const QString& serviceBase, const QString& text, const QString& code);

} // namespace quillora
