#include "desktop/SpeakerButtons.h"

#include "app/StringTable.h"
#include "desktop/SpeechAudio.h"
#include "desktop/SpeechModule.h"
#include "translate/SpeechPage.h"
#include "ui/LayoutScale.h"

#include <QCoreApplication>
#include <QIcon>
#include <QToolButton>
#include <QUrl>
#include <QtDebug>

namespace quillora
{

namespace
{

// Right of the 710-pixel-wide boxes; level with the tops of the result box and the source box.
constexpr int kLeft = 710 + 3;
constexpr int kSize = 18;
constexpr int kIconSize = 16;
constexpr std::array<int, 2> kTop{188, 0};

} // namespace

SpeakerButtons::SpeakerButtons(QWidget* container, const QString& serviceBase, const QString& programFolder)
    : QObject(container), m_serviceBase(serviceBase),
      m_programFolder(programFolder.isEmpty() ? QCoreApplication::applicationDirPath() : programFolder)
{
    const LayoutScale scale = LayoutScale::of(container);
    for (int slot = 0; slot < 2; ++slot) {
        auto* button = new QToolButton(container);
        button->setObjectName(QStringLiteral("WebBrowser2_%1").arg(slot));
        button->setAutoRaise(true);
        button->setGeometry(scale(QRect(kLeft, kTop[slot], kSize, kSize)));
        button->setIconSize({scale(kIconSize), scale(kIconSize)});
        button->hide();
        connect(button, &QToolButton::clicked, this, [this, slot] { play(slot); });
        m_buttons[slot] = button;
    }
}

SpeakerButtons::~SpeakerButtons() = default;

void SpeakerButtons::applyCaptions(int language)
{
    for (int slot = 0; slot < 2; ++slot) {
        const QString name = StringTable::text(language, slot == 0 ? NameSpeakTranslation : NameSpeakSource);
        m_buttons[slot]->setAccessibleName(name);
        m_buttons[slot]->setToolTip(name);
    }
}

void SpeakerButtons::showSpeaker(int slot, bool shown, const SpokenText& text)
{
    m_spoken[slot] = text;
    // A vector picture, drawn at the screen's pixel ratio when painted; start-up need not load it.
    if (shown && m_buttons[slot]->icon().isNull())
        m_buttons[slot]->setIcon(QIcon(QStringLiteral(":/icons/speaker.svg")));
    m_buttons[slot]->setVisible(shown);
}

void SpeakerButtons::play(int slot)
{
    if (!m_audio) {
        QString error;
        if (SpeechAudioFactory* factory = loadSpeechModule(m_programFolder, &error))
            m_audio = factory->createPlayer([this] { Q_EMIT speechFailed(); });
        else
            qWarning("quillora: speech: %s", qUtf8Printable(error));
    }
    if (!m_audio) {
        Q_EMIT speechFailed();
        return;
    }
    m_audio->play(speechAudioUrl(m_serviceBase, m_spoken[slot].text, m_spoken[slot].code));
}

} // namespace quillora
