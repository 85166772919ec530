#pragma once

#include <QString>

namespace quillora
{

inline constexpr int kInterfaceLanguageCount = 7;

// Project-own offsets beyond the classic 1-128, present in all seven tables: status-line texts.
enum StatusOffset {
    MsgServiceRefused = 201,    // the service answers 429/503
    MsgTimedOut = 202,          // no answer within the time limit
    MsgNetworkFailed = 203,     // connection failed / TLS error
    MsgBadAnswer = 204,         // an answer that cannot be read
    MsgCancelled = 205,         // the user pressed Escape
    MsgSpeechFailed = 206,      // the spoken audio could not be played
    MsgHotKeyTaken = 207,       // F11 is held by another program
    MsgNoTranslation = 208,     // an answer with nothing in it
    MsgTranslating = 209,       // shown while a request runs
    MsgOffline = 210,           // translated by an installed Apertium pair, %1
    MsgClipboardFocus = 211,    // copies are seen only while the window has the focus
    MsgClipboardTooLarge = 212, // a copy over the cap, %1 in KB
    MsgHotKeyOff = 213,         // the desktop gave no global key (a portal that bound nothing or failed)
    MsgWithReason = 214,        // "%1" a sentence, "%2" the system's reason for it
    MsgSettingsNotSaved = 215,  // the settings could not be stored, %1 the system's reason
    MsgRefusedUntil = 216,      // the service refused; asked again at %1
    MsgHumanCheck = 217,        // the service wants a person; asked again at %1
    MsgOfflineTimedOut = 218,   // Apertium did not answer within the time limit
    MsgTextTooLong = 219        // more than %1 KiB of text; nothing sent
};

// The interface string tables, one UTF-8 file per language in resources/strings, loaded on first use.
// id = language number x 1000 + offset.
class StringTable
{
public:
    // The table text, or an empty string (with a warning) when the id does not exist.
    static QString text(int id);
    static QString text(int language, int offset) { return text(language * 1000 + offset); }
    static bool contains(int id);
};

// UniStrings-style convenience for callers holding the language as "1".."7".
inline QString uiText(const QString& language, int offset)
{
    return StringTable::text(language.toInt() * 1000 + offset);
}

} // namespace quillora
