#include "translate/SpeechPage.h"

#include "translate/ServiceAddresses.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QStringList>

namespace quillora
{

namespace
{

void appendHexByte(QString& out, unsigned value)
{
    out += QLatin1Char('%');
    out += QString::number(value, 16).toUpper();
}

} // namespace

QString SpeechEncode(const QString& text)
{
    QString out;
    out.reserve(text.size() * 3);
    for (const QChar ch : text) {
        const unsigned c = ch.unicode();
        if ((c & 0xFF80) == 0) {
            out += ch;
        } else if ((c & 0xF000) == 0) {
            // The mask is 0xF000, not 0xF800: U+0800 to U+0FFF come out as two bytes, as these pages
            // have always carried them.
            appendHexByte(out, 0xC0 | (c / 64));
            appendHexByte(out, 0x80 | (c & 63));
        } else {
            appendHexByte(out, 0xE0 | (c / 4096));
            appendHexByte(out, 0x80 | ((c / 64) & 63));
            appendHexByte(out, 0x80 | (c & 63));
        }
    }
    return out;
}

bool isSpeechLanguage(const QString& code)
{
    static const QStringList codes = {
        QStringLiteral("sq"), QStringLiteral("en"),   QStringLiteral("ar"), QStringLiteral("is"),
        QStringLiteral("pl"), QStringLiteral("af"),   QStringLiteral("da"), QStringLiteral("de"),
        QStringLiteral("ru"), QStringLiteral("fr"),   QStringLiteral("fi"), QStringLiteral("ht"),
        QStringLiteral("ko"), QStringLiteral("nl"),   QStringLiteral("ca"), QStringLiteral("cs"),
        QStringLiteral("hr"), QStringLiteral("la"),   QStringLiteral("lv"), QStringLiteral("ro"),
        QStringLiteral("mk"), QStringLiteral("no"),   QStringLiteral("pt"), QStringLiteral("ja"),
        QStringLiteral("sv"), QStringLiteral("sr"),   QStringLiteral("sk"), QStringLiteral("sw"),
        QStringLiteral("tr"), QStringLiteral("cy"),   QStringLiteral("el"), QStringLiteral("es"),
        QStringLiteral("hu"), QStringLiteral("hy"),   QStringLiteral("it"), QStringLiteral("hi"),
        QStringLiteral("ta"), QStringLiteral("id"),   QStringLiteral("vi"), QStringLiteral("zh-CN"),
        QStringLiteral("zh"), QStringLiteral("zh-TW")};
    return codes.contains(code, Qt::CaseSensitive);
}

QString speechPageText(const QString& text, const QString& code, const QString& serviceBase)
{
    const QString object =
        QStringLiteral("<object classid=\"clsid:D27CDB6E-AE6D-11cf-96B8-444553540000\" codebase=\"") +
        SpeechPluginDownload +
        QStringLiteral("\" width=\"18\" height=\"18\" id=\"input_tts_flash\"><param value=\"") +
        speechPlayerAddress(serviceBase) +
        QStringLiteral("\" name=\"movie\"/><param value=\"sound_name=translate_tts%3Fq%3D") +
        SpeechEncode(text) + QStringLiteral("%26tl%3D") + code +
        QStringLiteral("&sound_name_cb=_inputTTSSoundFile\" name=\"flashvars\"/><param value=\"transparent\" "
                       "name=\"wmode\"/><param value=\"always\" name=\"allowScriptAccess\"/></object>");
    return QStringLiteral("<html><head><base target='_blank' href='") + serviceBase +
           QStringLiteral("'></head><body scroll=no leftmargin=0   topmargin=0   style=") +
           QStringLiteral("border-width=0;border-style:none>") + object +
           QStringLiteral("</body></html>\r\n");
}

QString speechPagePath(const QString& folder, int slot)
{
    return QDir(folder).filePath(slot == 0 ? QStringLiteral("soun(0).tmp") : QStringLiteral("soun(1).tmp"));
}

bool BuildSpeechPage(const QString& text, const QString& code, int slot, const QString& folder,
                     const QString& serviceBase)
{
    const QString path = speechPagePath(folder, slot);
    if (!isSpeechLanguage(code)) {
        QFile::remove(path);
        return false;
    }
    // A page that cannot be written is not reported: the speaker shows all the same.
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(speechPageText(text, code, serviceBase).toUtf8());
        file.commit();
    }
    return true;
}

QUrl speechAudioUrl(const QString& serviceBase, const QString& text, const QString& code)
{
    QUrl url(serviceBase + QStringLiteral("/translate_tts"));
    url.setQuery(QStringLiteral("ie=UTF-8&client=tw-ob&tl=") +
                     QString::fromLatin1(QUrl::toPercentEncoding(code)) + QStringLiteral("&q=") +
                     QString::fromLatin1(QUrl::toPercentEncoding(text)),
                 QUrl::StrictMode);
    return url;
}

} // namespace quillora
