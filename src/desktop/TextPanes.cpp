#include "desktop/TextPanes.h"

#include "app/PasteRoute.h"
#include "app/StringTable.h"
#include "app/UniTextBox.h"
#include "desktop/ModFont.h"
#include "ui/LayoutScale.h"

#include <QCheckBox>
#include <QPlainTextEdit>
#include <array>

namespace quillora
{

namespace
{

constexpr int kWidth = 710;
const QRect kSourceRect(0, 0, kWidth, 135);
const QRect kResultRect(0, 188, kWidth, 135);
const QRect kResultTallRect(0, 188, kWidth, 239);
const QRect kPhoneticRect(0, 325, 400, 102);
const QRect kDictionaryRect(403, 325, 307, 102);
const QRect kLowerPaneWideRect(0, 325, kWidth, 102);

QPlainTextEdit* namedBox(QWidget* parent, const QRect& rect, const QString& name)
{
    QPlainTextEdit* box = createTextBox(parent, rect);
    box->setObjectName(name);
    return box;
}

QCheckBox* checkBox(QWidget* parent, const QString& name, const QRect& rect)
{
    auto* box = new QCheckBox(parent);
    box->setObjectName(name);
    box->setGeometry(rect);
    box->setChecked(true);
    return box;
}

} // namespace

TextPanes::TextPanes(QWidget* pic1, std::function<void()> paste)
    : QObject(pic1), m_scale(LayoutScale::of(pic1)),
      m_source(namedBox(pic1, m_scale(kSourceRect), QStringLiteral("sourceBox"))),
      m_result(namedBox(pic1, m_scale(kResultRect), QStringLiteral("resultBox"))),
      m_phonetic(namedBox(pic1, m_scale(kPhoneticRect), QStringLiteral("phoneticBox"))),
      m_dictionary(namedBox(pic1, m_scale(kDictionaryRect), QStringLiteral("dictionaryBox"))),
      m_check1(checkBox(pic1, QStringLiteral("Check1"), m_scale(QRect(452, 139, 128, 22)))),
      m_check2(checkBox(pic1, QStringLiteral("Check2"), m_scale(QRect(584, 139, 126, 22))))
{
    new PasteRoute(m_source, std::move(paste));
    connect(m_check1, &QCheckBox::toggled, this, &TextPanes::tile);
    connect(m_check2, &QCheckBox::toggled, this, &TextPanes::tile);
}

QList<QWidget*> TextPanes::checkBoxes() const
{
    return {m_check1, m_check2};
}

QList<QWidget*> TextPanes::boxes() const
{
    return {m_source, m_result, m_phonetic, m_dictionary};
}

void TextPanes::applyCaptions(int language)
{
    m_check1->setText(StringTable::text(language, CheckPhonetic));
    m_check2->setText(StringTable::text(language, CheckDictionary));
    const std::array<TextOffset, 4> names{NameSourceBox, NameResultBox, NamePhoneticBox, NameDictionaryBox};
    const QList<QWidget*> all = boxes();
    for (int i = 0; i < 4; ++i)
        all[i]->setAccessibleName(StringTable::text(language, names[i]));
}

void TextPanes::setPhoneticShown(bool shown)
{
    {
        const QSignalBlocker block(m_check1);
        m_check1->setChecked(shown);
    }
    tile();
}

void TextPanes::setDictionaryShown(bool shown)
{
    {
        const QSignalBlocker block(m_check2);
        m_check2->setChecked(shown);
    }
    tile();
}

void TextPanes::tile()
{
    const bool phonetic = m_check1->isChecked();
    const bool dictionary = m_check2->isChecked();
    if (phonetic && dictionary) {
        m_result->setGeometry(m_scale(kResultRect));
        m_phonetic->setGeometry(m_scale(kPhoneticRect));
        m_dictionary->setGeometry(m_scale(kDictionaryRect));
    } else if (phonetic || dictionary) {
        m_result->setGeometry(m_scale(kResultRect));
        (phonetic ? m_phonetic : m_dictionary)->setGeometry(m_scale(kLowerPaneWideRect));
    } else {
        m_result->setGeometry(m_scale(kResultTallRect));
    }
    m_phonetic->setVisible(phonetic);
    m_dictionary->setVisible(dictionary);
}

void TextPanes::applyFont(const FontSetting& font)
{
    ApplyFont(font, boxes());
}

// Left to right is the dictionary box's layout, which never changes.
void TextPanes::setSourceRightToLeft(bool rightToLeft)
{
    if (rightToLeft)
        setRightToLeft(m_source);
    else
        copyLayout(m_source, m_dictionary);
}

void TextPanes::setTargetRightToLeft(bool rightToLeft)
{
    for (QPlainTextEdit* box : {m_result, m_phonetic}) {
        if (rightToLeft)
            setRightToLeft(box);
        else
            copyLayout(box, m_dictionary);
    }
}

void TextPanes::showResults(const QString& translation, const QString& romanization,
                            const QString& dictionary)
{
    setBoxText(m_result, translation);
    setBoxText(m_phonetic, romanization);
    setBoxText(m_dictionary, dictionary);
}

ResultTexts TextPanes::texts() const
{
    return {boxText(m_source), boxText(m_result), boxText(m_phonetic), boxText(m_dictionary)};
}

void TextPanes::clearResults()
{
    for (QPlainTextEdit* box : {m_result, m_phonetic, m_dictionary})
        box->clear();
}

} // namespace quillora
