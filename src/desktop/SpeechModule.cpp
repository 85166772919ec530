#include "desktop/SpeechModule.h"

#include "desktop/SpeechAudio.h"

#include <QDir>
#include <QFileInfo>
#include <QPluginLoader>

namespace quillora
{

QStringList speechModuleCandidates(const QString& programFolder)
{
    const QDir folder(programFolder);
    const QString name = QStringLiteral(QUILLORA_SPEECH_MODULE_NAME);
    return {folder.filePath(name),
            QDir::cleanPath(folder.filePath(QStringLiteral(QUILLORA_SPEECH_MODULE_DIR "/") + name))};
}

SpeechAudioFactory* loadSpeechModule(const QString& programFolder, QString* error)
{
    QStringList reasons;
    for (const QString& path : speechModuleCandidates(programFolder)) {
        if (!QFileInfo::exists(path))
            continue;
        QPluginLoader loader(QFileInfo(path).absoluteFilePath()); // a bare name would be searched for
        if (auto* factory = qobject_cast<SpeechAudioFactory*>(loader.instance()))
            return factory;
        reasons << (loader.errorString().isEmpty() ? path : loader.errorString());
    }
    if (error)
        *error = reasons.isEmpty() ? QStringLiteral("no speech module beside %1").arg(programFolder)
                                   : reasons.join(QStringLiteral("; "));
    return nullptr;
}

} // namespace quillora
