#pragma once

#include <QString>
#include <QVector>
#include <array>
#include <functional>
#include <optional>

namespace quillora
{

// Field indexes of the "Options" string, in stored order.
enum OptionField {
    OptSourceRow = 0,
    OptTargetRow = 1,
    OptShowPhonetic = 2,
    OptShowDictionary = 3,
    OptInterfaceLanguageRow = 4,
    OptMonitorClipboard = 5,
    OptCaching = 6,
    OptionFieldCount = 7
};

using OptionValues = std::array<int, OptionFieldCount>;

inline const QString kDefaultOptions = QStringLiteral("0|15|1|1|15|1|1");
inline const QString kDefaultFont = QStringLiteral("Tahoma|400|False|12|0|False|False|0");

// The leading fields of an "Options" string that could be read. A short or hand-edited string
// stops at the first missing or non-numeric field; stoppedAt() says where.
struct ParsedOptions {
    QVector<int> fields;
    bool complete() const { return fields.size() == OptionFieldCount; }
    int stoppedAt() const { return int(fields.size()); }
    bool has(OptionField f) const { return f < fields.size(); }
};

ParsedOptions parseOptions(const QString& text);
// One field read on its own, whatever the fields before it hold.
std::optional<int> optionField(const QString& text, OptionField field);
QString formatOptions(const OptionValues& values);

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

    QString optionsText() const; // kDefaultOptions when missing
    ParsedOptions options() const { return parseOptions(optionsText()); }
    void setOptions(const OptionValues& values);

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
