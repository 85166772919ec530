#include "translate/LanguageGuesser.h"

#include "translate/ApertiumCodes.h"

#include <QDir>
#include <QFile>
#include <QTemporaryFile>
#include <textcat.h>

namespace quillora
{

namespace
{

// The classifier's answer for one clear winner: "[en]".
QString singleCategory(const char* answer)
{
    const QString text = QString::fromLatin1(answer);
    if (!text.startsWith(QLatin1Char('[')) || text.count(QLatin1Char('[')) != 1 ||
        !text.endsWith(QLatin1Char(']')))
        return {};
    return text.mid(1, text.size() - 2);
}

} // namespace

QString LanguageGuesser::defaultFingerprintFolder()
{
    return QStringLiteral(QUILLORA_TEXTCAT_FINGERPRINTS);
}

LanguageGuesser::LanguageGuesser(const QStringList& catalogueCodes, const QString& fingerprintFolder)
{
    // The library reads its language list from a file: one made for just these languages.
    QTemporaryFile config;
    if (!config.open())
        return;
    const QDir folder(fingerprintFolder);
    int listed = 0;
    for (const QString& code : catalogueCodes) {
        const QString fingerprint = folder.filePath(fingerprintName(code) + QStringLiteral(".lm"));
        if (fingerprintName(code).isEmpty() || !QFile::exists(fingerprint))
            continue;
        config.write(QFile::encodeName(fingerprint) + ' ' + code.toLatin1() + '\n');
        ++listed;
    }
    config.close();
    if (listed == 0)
        return;
    m_handle = special_textcat_Init(QFile::encodeName(config.fileName()).constData(), "");
    if (!m_handle)
        return;
    textcat_SetProperty(m_handle, TCPROP_UTF8AWARE, TC_TRUE);
}

LanguageGuesser::~LanguageGuesser()
{
    if (m_handle)
        textcat_Done(m_handle);
}

QString LanguageGuesser::guess(const QString& text) const
{
    if (!m_handle || text.trimmed().size() < kMinimumLength)
        return {};
    const QByteArray bytes = text.toUtf8();
    return singleCategory(textcat_Classify(m_handle, bytes.constData(), size_t(bytes.size())));
}

} // namespace quillora
