#include "desktop/ModFont.h"

#include "app/StringTable.h"
#include "ui/TabOrder.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFontComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QPalette>
#include <QPixmap>
#include <QPushButton>
#include <QSpinBox>
#include <QWidget>

namespace quillora
{

namespace
{

constexpr int kNormalWeight = 400;
constexpr int kBoldWeight = 700;
constexpr int kLargestSize = 72;

quint32 toBgr(const QColor& color)
{
    return quint32(color.red()) | quint32(color.green()) << 8 | quint32(color.blue()) << 16;
}

} // namespace

QFont toQFont(const FontSetting& setting)
{
    QFont font(setting.face);
    font.setWeight(QFont::Weight(qBound(1, setting.weight, 1000)));
    font.setItalic(setting.italic);
    font.setPointSize(setting.pointSize > 0 ? setting.pointSize : FontSetting().pointSize);
    font.setUnderline(setting.underline);
    font.setStrikeOut(setting.strikeOut);
    return font;
}

QColor toQColor(quint32 colorBgr)
{
    return QColor(int(colorBgr & 0xff), int((colorBgr >> 8) & 0xff), int((colorBgr >> 16) & 0xff));
}

FontSetting fromQFont(const QFont& font, const QColor& color, int charset)
{
    FontSetting setting;
    setting.face = font.family();
    setting.weight = font.weight();
    setting.italic = font.italic();
    setting.pointSize = font.pointSize() > 0 ? font.pointSize() : qRound(font.pointSizeF());
    setting.charset = charset;
    setting.underline = font.underline();
    setting.strikeOut = font.strikeOut();
    setting.colorBgr = toBgr(color);
    return setting;
}

void ApplyFont(const FontSetting& setting, const QList<QWidget*>& boxes)
{
    const QFont font = toQFont(setting);
    const QColor colour = toQColor(setting.colorBgr);
    for (QWidget* box : boxes) {
        if (!box)
            continue;
        box->setFont(font);
        QPalette palette = box->palette();
        palette.setColor(QPalette::Text, colour);
        box->setPalette(palette);
    }
}

const QList<CharsetChoice>& charsetChoices()
{
    static const QList<CharsetChoice> choices = {
        {0, QStringLiteral("Default")},
        {238, QStringLiteral("Central European")},
        {204, QStringLiteral("Cyrillic")},
        {161, QStringLiteral("Greek")},
        {177, QStringLiteral("Hebrew")},
        {178, QStringLiteral("Arabic")},
        {222, QStringLiteral("Thai")},
        {134, QStringLiteral("Chinese Simplified (GB2312)")},
        {136, QStringLiteral("Chinese Traditional (Big5)")},
    };
    return choices;
}

FontChooser::FontChooser(const FontSetting& current, int language, QWidget* parent)
    : QDialog(parent), m_start(current), m_face(new QFontComboBox(this)), m_size(new QSpinBox(this)),
      m_bold(new QCheckBox(StringTable::text(language, FontBold), this)),
      m_italic(new QCheckBox(StringTable::text(language, FontItalic), this)),
      m_underline(new QCheckBox(StringTable::text(language, FontUnderline), this)),
      m_strikeOut(new QCheckBox(StringTable::text(language, FontStrikeOut), this)),
      m_charset(new QComboBox(this)), m_colourButton(new QPushButton(this))
{
    const auto text = [language](int offset) { return StringTable::text(language, offset); };
    setObjectName(QStringLiteral("FontChooser"));
    setWindowTitle(text(FontTitle));
    m_face->setObjectName(QStringLiteral("fontFace"));
    m_size->setObjectName(QStringLiteral("fontSize"));
    m_bold->setObjectName(QStringLiteral("fontBold"));
    m_italic->setObjectName(QStringLiteral("fontItalic"));
    m_underline->setObjectName(QStringLiteral("fontUnderline"));
    m_strikeOut->setObjectName(QStringLiteral("fontStrikeOut"));
    m_charset->setObjectName(QStringLiteral("fontCharset"));
    m_colourButton->setObjectName(QStringLiteral("fontColour"));

    m_face->setCurrentFont(toQFont(current));
    m_shownFace = m_face->currentText();
    m_size->setRange(1, kLargestSize);
    m_size->setValue(current.pointSize);
    m_bold->setChecked(current.weight >= 600);
    m_italic->setChecked(current.italic);
    m_underline->setChecked(current.underline);
    m_strikeOut->setChecked(current.strikeOut);
    for (const CharsetChoice& choice : charsetChoices())
        m_charset->addItem(choice.name, choice.charset);
    // A stored number outside the list is kept selectable so OK does not lose it.
    if (m_charset->findData(current.charset) < 0)
        m_charset->addItem(QString::number(current.charset), current.charset);
    m_charset->setCurrentIndex(m_charset->findData(current.charset));
    setColour(toQColor(current.colorBgr));

    auto* effects = new QHBoxLayout;
    for (QCheckBox* box : {m_bold, m_italic, m_underline, m_strikeOut})
        effects->addWidget(box);
    auto* form = new QFormLayout;
    // Each label names its field for screen readers; the colour button shows only a swatch.
    form->addRow(text(FontFace), m_face);
    form->addRow(text(FontSize), m_size);
    form->addRow(effects);
    form->addRow(text(FontScript), m_charset);
    form->addRow(text(FontColour), m_colourButton);
    m_colourButton->setAccessibleName(text(FontColour));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->setObjectName(QStringLiteral("fontButtons"));
    buttons->button(QDialogButtonBox::Ok)->setText(text(ButtonOk));
    buttons->button(QDialogButtonBox::Cancel)->setText(text(ButtonCancel));
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(buttons);

    connect(m_colourButton, &QPushButton::clicked, this, &FontChooser::pickColour);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    orderTabsByScreen(this);
}

void FontChooser::setColour(const QColor& colour)
{
    m_colour = colour;
    QPixmap swatch(24, 12);
    swatch.fill(colour);
    m_colourButton->setIcon(QIcon(swatch));
    m_colourButton->setText(colour.name());
}

void FontChooser::pickColour()
{
    const QColor chosen = QColorDialog::getColor(m_colour, this);
    if (chosen.isValid())
        setColour(chosen);
}

FontSetting FontChooser::setting() const
{
    FontSetting chosen;
    // A face this system lacks shows as a substitute; unless the user picks another, keep the stored one.
    chosen.face = m_face->currentText() == m_shownFace ? m_start.face : m_face->currentFont().family();
    // An untouched bold box keeps the stored weight (300, 600, ...) instead of rounding it.
    const bool startedBold = m_start.weight >= 600;
    chosen.weight = m_bold->isChecked() == startedBold ? m_start.weight
                                                       : (m_bold->isChecked() ? kBoldWeight : kNormalWeight);
    chosen.italic = m_italic->isChecked();
    chosen.pointSize = m_size->value();
    chosen.charset = m_charset->currentData().toInt();
    chosen.underline = m_underline->isChecked();
    chosen.strikeOut = m_strikeOut->isChecked();
    chosen.colorBgr = toBgr(m_colour);
    return chosen;
}

FontSetting ChooseFontFor(const FontSetting& current, int language, QWidget* parent)
{
    FontChooser chooser(current, language, parent);
    if (chooser.exec() != QDialog::Accepted)
        return current;
    return chooser.setting();
}

} // namespace quillora
