#include "app/Settings.h"

#include "desktop/FileReplace.h"

#include <QFile>
#include <QSettings>
#include <QStandardPaths>
#include <QStringList>
#include <cerrno>
#include <functional>

namespace quillora
{

namespace
{

const QString kGroup = QStringLiteral("Setup");
const QString kTrue = QStringLiteral("True");
const QString kFalse = QStringLiteral("False");

bool readInt(const QString& text, int* out)
{
    bool ok = false;
    const int v = text.trimmed().toInt(&ok, 10);
    if (ok)
        *out = v;
    return ok;
}

template <typename T> bool readRange(const QString& text, int lo, int hi, T* out)
{
    int v = 0;
    if (!readInt(text, &v) || v < lo || v > hi)
        return false;
    *out = T(v);
    return true;
}

// "True"/"False" in any case, or a number where non-zero is true.
bool readBool(const QString& text, bool* out)
{
    const QString t = text.trimmed();
    if (t.compare(kTrue, Qt::CaseInsensitive) == 0) {
        *out = true;
        return true;
    }
    if (t.compare(kFalse, Qt::CaseInsensitive) == 0) {
        *out = false;
        return true;
    }
    int n = 0;
    if (!readInt(t, &n))
        return false;
    *out = n != 0;
    return true;
}

QString boolText(bool on)
{
    return on ? kTrue : kFalse;
}

} // namespace

bool FontSetting::operator==(const FontSetting& o) const
{
    return face == o.face && weight == o.weight && italic == o.italic && pointSize == o.pointSize &&
           charset == o.charset && underline == o.underline && strikeOut == o.strikeOut &&
           colorBgr == o.colorBgr;
}

ParsedFont parseFont(const QString& text)
{
    ParsedFont parsed;
    FontSetting& f = parsed.font;
    const std::function<bool(const QString&)> readers[] = {
        [&](const QString& s) {
            if (s.trimmed().isEmpty())
                return false;
            f.face = s.trimmed();
            return true;
        },
        [&](const QString& s) { return readRange(s, 0, 1000, &f.weight); },
        [&](const QString& s) { return readBool(s, &f.italic); },
        [&](const QString& s) { return readRange(s, 1, 1638, &f.pointSize); },
        [&](const QString& s) { return readRange(s, 0, 255, &f.charset); },
        [&](const QString& s) { return readBool(s, &f.underline); },
        [&](const QString& s) { return readBool(s, &f.strikeOut); },
        [&](const QString& s) { return readRange(s, 0, 0xFFFFFF, &f.colorBgr); },
    };
    const QStringList parts = text.split(QLatin1Char('|'));
    for (const auto& read : readers) {
        if (parsed.fieldsRead >= parts.size() || !read(parts.at(parsed.fieldsRead)))
            break;
        ++parsed.fieldsRead;
    }
    return parsed;
}

QString formatFont(const FontSetting& font)
{
    return QStringList{font.face,
                       QString::number(font.weight),
                       boolText(font.italic),
                       QString::number(font.pointSize),
                       QString::number(font.charset),
                       boolText(font.underline),
                       boolText(font.strikeOut),
                       QString::number(font.colorBgr)}
        .join(QLatin1Char('|'));
}

QString Settings::defaultFilePath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/Quillora/Quillora.conf");
}

Settings::Settings(QString filePath) : m_path(std::move(filePath)) {}

QString Settings::value(const QString& key, const QString& fallback) const
{
    QSettings store(m_path, QSettings::IniFormat);
    store.beginGroup(kGroup);
    if (!store.contains(key))
        return fallback;
    const QVariant v = store.value(key);
    // A hand-edited value with unquoted commas comes back as a list.
    if (v.typeId() == QMetaType::QStringList)
        return v.toStringList().join(QLatin1Char(','));
    return v.toString();
}

void Settings::setValue(const QString& key, const QString& text)
{
    QSettings store(m_path, QSettings::IniFormat);
    store.beginGroup(kGroup);
    store.setValue(key, text);
    store.sync();
    const bool failed = store.status() != QSettings::NoError;
    if (failed && !m_writeFailing && m_onWriteFailure)
        m_onWriteFailure(failureReason((key + QLatin1Char('=') + text).toUtf8()));
    m_writeFailing = failed;
}

// QSettings only says that it failed. Writing what it had to write to a file of its own beside it,
// the safe way, finds out why without touching the settings.
QString Settings::failureReason(const QByteArray& line) const
{
    QFile file(m_path);
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    const QString probe = m_path + QStringLiteral(".probe");
    const WriteOutcome outcome = replaceFileContents(probe, bytes + line);
    QFile::remove(probe);
    return outcome ? qt_error_string(EIO) : outcome.reason;
}

QString Settings::optionsText() const
{
    return value(QStringLiteral("Options"), Options::defaults().toText());
}

void Settings::setOptions(const Options& options)
{
    setValue(QStringLiteral("Options"), options.toText());
}

QString Settings::language() const
{
    return value(QStringLiteral("Language"), QStringLiteral("1"));
}

void Settings::setLanguage(const QString& number)
{
    setValue(QStringLiteral("Language"), number);
}

int Settings::style() const
{
    int v = 0;
    return readInt(value(QStringLiteral("Style"), QStringLiteral("2")), &v) ? v : -1;
}

void Settings::setStyle(int style)
{
    setValue(QStringLiteral("Style"), QString::number(style));
}

bool Settings::autoCopy() const
{
    bool on = false;
    return readBool(value(QStringLiteral("AutoCopy"), kFalse), &on) && on;
}

void Settings::setAutoCopy(bool on)
{
    setValue(QStringLiteral("AutoCopy"), boolText(on));
}

QString Settings::fontText() const
{
    return value(QStringLiteral("Font"), kDefaultFont);
}

void Settings::setFontText(const QString& text)
{
    setValue(QStringLiteral("Font"), text);
}

} // namespace quillora
