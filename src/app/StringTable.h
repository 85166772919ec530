#pragma once

#include <QString>

namespace quillora
{

inline constexpr int kInterfaceLanguageCount = 7;

// Offsets into the interface string tables; every table has every one of them. A table, one line a
// place where the texts show.
// clang-format off
enum TextOffset {
    MenuFile = 1, MenuTranslate = 2, MenuOpen = 3, MenuSaveResults = 4, MenuExit = 5, // 2: also a tool tip; 3, 4: dialog titles
    MenuSetting = 6, MenuAutoRun = 7, MenuOptions = 8, MenuLanguage = 9, MenuFont = 117, MenuAutoCopy = 128,
    MenuStyle = 10, MenuStyleOfficeXp = 11, MenuStyleOffice2003 = 114, MenuStyleSkyBlue = 115, MenuStyleSystem = 116,
    MenuHelp = 12, MenuOnlineHelp = 13, MenuHome = 14, MenuAbout = 15, MenuGoogleHome = 16, MenuWebHome = 119,
    MenuShowHide = 18, MenuSites = 126, MenuFamousSites = 127,
    WindowTitle = 17, TrayToolTip = 19, TrayWelcome = 20, // 17: also the tray balloon's title; 20: then the version
    LabelFrom = 21, LabelInto = 22, CheckPhonetic = 23, CheckDictionary = 24, LabelAddress = 120, ButtonGoto = 121,
    ButtonTranslate = 25, ButtonSwap = 109, ButtonBack = 26, ButtonCopy = 27, ButtonPaste = 28, ButtonClear = 29,
    TipSwap = 113, TipBack = 110, TipCopy = 111, TipPaste = 112, // Clear's tip is its caption
    OptionsTitle = 30, OptionsSystemLanguage = 31, OptionsFrom = 32, OptionsInto = 33,
    CheckMonitorClipboard = 34, CheckCaching = 35, ButtonOk = 36, ButtonClose = 37,
    LanguageNames = 38, DetectLanguage = 99, // 38-96: the 59 catalogue names in catalogue order
    NoticeTitle = 100, MsgSaveFailed = 101, MsgNotConnected = 102,
    AboutFirstLine = 103, AboutLastLine = 107, AboutTitle = 108, // 103-107: the About box's lines
    UpdateTitle = 122, MsgNewVersion = 118, ButtonDetails = 123, ButtonDownload = 124, ButtonNextTime = 125,

    // Project-own texts beyond the classic 1-128, mostly for the status line.
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
    MsgTextTooLong = 219,       // more than %1 KiB of text; nothing sent
    MsgUpdaterKept = 220,       // the old updater %1 could not be removed; the program stops

    // Accessible names (and the speakers' tool tips) of controls whose caption does not say what they are.
    NameSpeakSource = 221, NameSpeakTranslation = 222,
    NameSourceBox = 223, NameResultBox = 224, NamePhoneticBox = 225, NameDictionaryBox = 226,
    NamePromotionPage = 227, NamePromotionButton = 228, // 228: %1 the offer's caption
    NameUpdateDetails = 229,
    // The font chooser: its title, row labels, effects and the cancelling button.
    FontTitle = 230, FontFace = 231, FontSize = 232, FontScript = 233, FontColour = 234,
    FontBold = 235, FontItalic = 236, FontUnderline = 237, FontStrikeOut = 238, ButtonCancel = 239,

    // Project-own texts of the first minute.
    MsgKeepsRunning = 240,      // the window went to the tray for the first time: how to quit
    MsgPageNotOpened = 241      // Goto: no browser took the address (with MsgWithReason)
};
// clang-format on

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
