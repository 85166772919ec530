#pragma once

#include <QObject>
#include <QString>
#include <array>
#include <memory>

class QToolButton;
class QWidget;

namespace quillora
{

class SpeechAudio;

// What a speaker button reads aloud: the text and its service language code.
struct SpokenText {
    QString text;
    QString code;
};

// The window's two speaker buttons, "WebBrowser2_0" beside the translation and "WebBrowser2_1"
// beside the source text, 18 by 18 pixels at the right edge of the text boxes. Each stays hidden
// until a speech page exists for its text; a press plays the service's audio of that text. The
// player is loaded from the speech module on the first press.
class SpeakerButtons : public QObject
{
    Q_OBJECT
public:
    // Buttons on `container` (the window's text-box area), speaking through the service at
    // `serviceBase`; the speech module is looked for from `programFolder` (the program's own by
    // default).
    SpeakerButtons(QWidget* container, const QString& serviceBase, const QString& programFolder = {});
    ~SpeakerButtons() override;

    // Names and tool tips in the interface language.
    void applyCaptions(int language);
    // Slot 0 the translation, 1 the source.
    void showSpeaker(int slot, bool shown, const SpokenText& text);

Q_SIGNALS:
    // The audio could not be played: no speech module, no audio decoder, or the player's error.
    void speechFailed();

private:
    void play(int slot);

    QString m_serviceBase;
    QString m_programFolder;
    std::array<QToolButton*, 2> m_buttons{};
    std::array<SpokenText, 2> m_spoken;
    std::unique_ptr<SpeechAudio> m_audio;
};

} // namespace quillora
