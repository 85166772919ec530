#pragma once

#include "app/Settings.h"

#include <QColor>
#include <QDialog>
#include <QFont>
#include <QList>

class QCheckBox;
class QComboBox;
class QFontComboBox;
class QPushButton;
class QSpinBox;
class QWidget;

namespace quillora
{

QFont toQFont(const FontSetting& setting);
QColor toQColor(quint32 colorBgr);
FontSetting fromQFont(const QFont& font, const QColor& color, int charset);

// Gives the boxes the stored font and colour (done once, at start).
void ApplyFont(const FontSetting& setting, const QList<QWidget*>& boxes);
// The font chooser (face, weight, italic, size up to 72, charset, underline, strike-out, colour) in
// the interface language. Returns the chosen setting, or `current` unchanged when cancelled.
FontSetting ChooseFontFor(const FontSetting& current, int language, QWidget* parent);

// Windows character-set numbers offered by the chooser, with their names.
struct CharsetChoice {
    int charset;
    QString name;
};
const QList<CharsetChoice>& charsetChoices();

// The chooser behind ChooseFontFor. Children: "fontFace", "fontSize", "fontBold", "fontItalic",
// "fontUnderline", "fontStrikeOut", "fontCharset", "fontColour", "fontButtons".
class FontChooser : public QDialog
{
    Q_OBJECT
public:
    FontChooser(const FontSetting& current, int language, QWidget* parent = nullptr);

    FontSetting setting() const;
    QColor colour() const { return m_colour; }
    void setColour(const QColor& colour);

private:
    void pickColour();

    FontSetting m_start;
    QString m_shownFace;
    QColor m_colour;
    QFontComboBox* m_face;
    QSpinBox* m_size;
    QCheckBox* m_bold;
    QCheckBox* m_italic;
    QCheckBox* m_underline;
    QCheckBox* m_strikeOut;
    QComboBox* m_charset;
    QPushButton* m_colourButton;
};

} // namespace quillora
