#pragma once

#include "app/Options.h"

#include <QString>
#include <functional>

namespace quillora
{

inline const QString kDefaultFont = QStringLiteral("Tahoma|400|False|12|0|False|False|0");

// The eight "Font" fields. colorBgr is the stored 24-bit blue-green-red number.
struct FontSetting {
    QString face = QStringLiteral("Tahoma");
    int weight = 400;
    bool italic = false;
    int pointSize = 12;
    int charset = 0;
    bool underline = false;
    bool strikeOut = false;
    quint32 colorBgr = 0;
    bool operator==(const FontSetting& o) const;
};

// Fields that fail to read keep their defaults; fieldsRead says how many leading fields were used.
struct ParsedFont {
    FontSetting font;
    int fieldsRead = 0;
};

ParsedFont parseFont(const QString& text);
QString formatFont(const FontSetting& font);

// The per-user settings file: INI, group "Setup". Every value is stored as a string.
// Nothing here throws or crashes on a hand-edited file.
class Settings
{
public:
    // $XDG_CONFIG_HOME/Quillora/Quillora.conf
    static QString defaultFilePath();

    explicit Settings(QString filePath = defaultFilePath());
    const QString& filePath() const { return m_path; }

    QString optionsText() const; // "0|15|1|1|15|1|1" when missing
    Options options() const { return Options::fromText(optionsText()); }
    void setOptions(const Options& options);

    // "1" when the key is missing, "" when it exists but is empty (then the locale decides).
    QString language() const;
    void setLanguage(const QString& number);

    // 2 when missing; -1 when the stored text is not a number.
    int style() const;
    void setStyle(int style);

    bool autoCopy() const; // "True"/"False", false when missing
    void setAutoCopy(bool on);

    QString fontText() const; // kDefaultFont when missing
    void setFontText(const QString& text);

    // Told, with the system's reason, when a value could not be stored: once, until a write succeeds.
    using WriteFailureHandler = std::function<void(const QString& reason)>;
    void setWriteFailureHandler(WriteFailureHandler handler) { m_onWriteFailure = std::move(handler); }
    bool lastWriteFailed() const { return m_writeFailing; }

private:
    QString value(const QString& key, const QString& fallback) const;
    void setValue(const QString& key, const QString& text);
    QString failureReason(const QByteArray& line) const;
    QString m_path;
    WriteFailureHandler m_onWriteFailure;
    bool m_writeFailing = false;
};

} // namespace quillora
