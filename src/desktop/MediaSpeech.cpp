// The quillora-speech module: plays the spoken audio through Qt Multimedia.
#include "desktop/SpeechAudio.h"

#include <QAudioOutput>
#include <QMediaFormat>
#include <QMediaPlayer>
#include <QObject>
#include <QUrl>

namespace quillora
{

namespace
{

class MediaSpeech : public SpeechAudio
{
public:
    explicit MediaSpeech(std::function<void()> failed)
    {
        m_player.setAudioOutput(&m_output);
        QObject::connect(&m_player, &QMediaPlayer::errorOccurred, &m_player,
                         [failed = std::move(failed)] { failed(); });
    }

    void play(const QUrl& source) override
    {
        m_player.stop();
        m_player.setSource(source);
        m_player.play();
    }

private:
    QAudioOutput m_output; // outlives the player that plays into it
    QMediaPlayer m_player;
};

} // namespace

class MediaSpeechFactory : public QObject, public SpeechAudioFactory
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QUILLORA_SPEECH_AUDIO_IID)
    Q_INTERFACES(quillora::SpeechAudioFactory)

public:
    std::unique_ptr<SpeechAudio> createPlayer(std::function<void()> failed) override
    {
        // Without media framework plug-ins there is no decoder, and nothing could ever play.
        if (QMediaFormat().supportedAudioCodecs(QMediaFormat::Decode).isEmpty())
            return nullptr;
        return std::make_unique<MediaSpeech>(std::move(failed));
    }
};

} // namespace quillora

#include "MediaSpeech.moc"
