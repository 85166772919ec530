#pragma once

#include "app/Settings.h"
#include "desktop/ResultsFile.h"
#include "ui/LayoutScale.h"

#include <QList>
#include <QObject>
#include <functional>

class QCheckBox;
class QPlainTextEdit;
class QWidget;

namespace quillora
{

// The four text boxes in their fixed places (grown with the font, see LayoutScale), the two check boxes that
// show the romanization and dictionary panes with the tiling of the result area, their font and their reading
// direction. Object names: "sourceBox", "resultBox", "phoneticBox", "dictionaryBox", "Check1", "Check2".
class TextPanes : public QObject
{
    Q_OBJECT
public:
    // `paste` is the source box's paste (keys and context menu).
    TextPanes(QWidget* pic1, std::function<void()> paste);

    QPlainTextEdit* source() const { return m_source; }
    QPlainTextEdit* result() const { return m_result; }
    QPlainTextEdit* phonetic() const { return m_phonetic; }
    QPlainTextEdit* dictionary() const { return m_dictionary; }
    QList<QWidget*> checkBoxes() const;
    QList<QWidget*> boxes() const;

    void applyCaptions(int language);
    // Ticks the boxes without their change running twice, then tiles once.
    void setPhoneticShown(bool shown);
    void setDictionaryShown(bool shown);
    void applyFont(const FontSetting& font);
    void setSourceRightToLeft(bool rightToLeft);
    void setTargetRightToLeft(bool rightToLeft);

    // What the four boxes hold, for the results file.
    ResultTexts texts() const;
    void showResults(const QString& translation, const QString& romanization, const QString& dictionary);
    void clearResults();

private:
    void tile();

    LayoutScale m_scale;
    QPlainTextEdit* m_source;
    QPlainTextEdit* m_result;
    QPlainTextEdit* m_phonetic;
    QPlainTextEdit* m_dictionary;
    QCheckBox* m_check1;
    QCheckBox* m_check2;
};

} // namespace quillora
