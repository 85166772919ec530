#pragma once

#include <QList>
#include <QObject>
#include <array>

class QPushButton;
class QWidget;

namespace quillora
{

// The row of six `jcbutton`s under the pickers: 0 Translate, 1 Swap, 2 Back, 3 Copy, 4 Paste, 5 Clear.
// Object names "jcbutton_0" ... "jcbutton_5".
class ButtonRow : public QObject
{
    Q_OBJECT
public:
    enum Index { Translate, Swap, Back, Copy, Paste, Clear, Count };

    explicit ButtonRow(QWidget* pic1);

    void applyCaptions(int language);
    QList<QWidget*> buttons() const;
    // As a click of the button: nothing while it is disabled.
    void press(Index index);
    void setSwapEnabled(bool enabled);
    bool swapEnabled() const;

Q_SIGNALS:
    void clicked(int index);

private:
    std::array<QPushButton*, Count> m_buttons{};
};

} // namespace quillora
