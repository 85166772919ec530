#include "desktop/ButtonRow.h"

#include "app/StringTable.h"
#include "ui/LayoutScale.h"

#include <QPushButton>

namespace quillora
{

namespace
{

constexpr std::array<TextOffset, ButtonRow::Count> kCaption{ButtonTranslate, ButtonSwap,  ButtonBack,
                                                            ButtonCopy,      ButtonPaste, ButtonClear};
constexpr std::array<TextOffset, ButtonRow::Count> kToolTip{MenuTranslate, TipSwap,  TipBack,
                                                            TipCopy,       TipPaste, ButtonClear};

} // namespace

ButtonRow::ButtonRow(QWidget* pic1) : QObject(pic1)
{
    constexpr int top = 164, width = 114, step = 119, height = 22;
    const LayoutScale scale = LayoutScale::of(pic1);
    for (int i = 0; i < Count; ++i) {
        auto* button = new QPushButton(pic1);
        button->setObjectName(QStringLiteral("jcbutton_%1").arg(i)); // "jcbutton1" is the address button
        button->setGeometry(scale(QRect(i * step, top, width, height)));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, i] { Q_EMIT clicked(i); });
        m_buttons[i] = button;
    }
}

void ButtonRow::applyCaptions(int language)
{
    for (int i = 0; i < Count; ++i) {
        m_buttons[i]->setText(StringTable::text(language, kCaption[i]));
        m_buttons[i]->setToolTip(StringTable::text(language, kToolTip[i]));
    }
}

QList<QWidget*> ButtonRow::buttons() const
{
    return {m_buttons.begin(), m_buttons.end()};
}

void ButtonRow::press(Index index)
{
    m_buttons[index]->click();
}

void ButtonRow::setSwapEnabled(bool enabled)
{
    m_buttons[Swap]->setEnabled(enabled);
}

bool ButtonRow::swapEnabled() const
{
    return m_buttons[Swap]->isEnabled();
}

} // namespace quillora
