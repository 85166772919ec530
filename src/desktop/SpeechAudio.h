#pragma once

#include <QtPlugin>
#include <functional>
#include <memory>

class QUrl;

namespace quillora
{

// The spoken audio's player. It lives in a module of its own (quillora-speech), loaded on the
// first press of a speaker, so that the sound libraries stay out of the program until then.
class SpeechAudio
{
public:
    virtual ~SpeechAudio() = default;
    // Stops whatever plays and plays the audio at `source`.
    virtual void play(const QUrl& source) = 0;
};

// What the module's root object offers.
class SpeechAudioFactory
{
public:
    virtual ~SpeechAudioFactory() = default;
    // A player that calls `failed` whenever a source cannot be played, or null when nothing on this
    // system can decode audio.
    virtual std::unique_ptr<SpeechAudio> createPlayer(std::function<void()> failed) = 0;
};

} // namespace quillora

#define QUILLORA_SPEECH_AUDIO_IID "org.zelvan.quillora.SpeechAudioFactory/1"
Q_DECLARE_INTERFACE(quillora::SpeechAudioFactory, QUILLORA_SPEECH_AUDIO_IID)
