#pragma once

#include "translate/LanguageCatalogue.h"

#include <QList>
#include <QObject>

class QComboBox;
class QLabel;
class QWidget;

namespace quillora
{

// "Translate from:" (`Combo2`: detection, a separator, the catalogue) and "Translate into:" (`Combo1`:
// the catalogue) with their labels, filled in the interface language. Every change of a row, by the
// user or the program, says what the row means.
class LanguagePickers : public QObject
{
    Q_OBJECT
public:
    explicit LanguagePickers(QWidget* pic1);

    // Fills both pickers in interface language 1-7; a refill keeps the chosen rows, the first one
    // starts from the default rows.
    void applyCaptions(int language);
    // A row the picker does not have is not set; the meaning of the current row is said again.
    void setSourceRow(int row);
    void setTargetRow(int row);
    int sourceRow() const;
    int targetRow() const;
    // Labels and pickers in screen order, for fitting the row they share.
    QList<QWidget*> rowWidgets() const;
    QList<QWidget*> pickers() const;

Q_SIGNALS:
    void sourceChosen(int row, const quillora::SourceRowEffect& effect);
    void targetChosen(int row, const quillora::TargetRowEffect& effect);

private:
    void sourceChanged();
    void targetChanged();

    QLabel* m_fromLabel;
    QComboBox* m_combo2;
    QLabel* m_intoLabel;
    QComboBox* m_combo1;
};

// The source picker's separator row cannot be chosen with the keys, the mouse or the wheel.
void disableSeparatorRow(QComboBox* picker);

} // namespace quillora
