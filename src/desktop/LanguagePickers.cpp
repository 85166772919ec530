#include "desktop/LanguagePickers.h"

#include "app/Settings.h"
#include "app/StringTable.h"
#include "ui/LayoutScale.h"

#include <QComboBox>
#include <QLabel>
#include <QStandardItemModel>

namespace quillora
{

namespace
{

constexpr int kTop = 139;
constexpr int kHeight = 22;

QComboBox* picker(QWidget* parent, const QString& name, int left)
{
    auto* combo = new QComboBox(parent);
    combo->setObjectName(name);
    combo->setGeometry(LayoutScale::of(parent)(QRect(left, kTop, 170, kHeight)));
    return combo;
}

QLabel* label(QWidget* parent, int left, QWidget* buddy)
{
    auto* caption = new QLabel(parent);
    caption->setGeometry(LayoutScale::of(parent)(QRect(left, kTop, 44, kHeight)));
    caption->setBuddy(buddy);
    return caption;
}

void setRow(QComboBox* combo, int row)
{
    if (row >= 0 && row < combo->count()) {
        const QSignalBlocker block(combo);
        combo->setCurrentIndex(row);
    }
}

} // namespace

// The row keeps its place: rows are the stored codes. Only the program may still choose it.
void disableSeparatorRow(QComboBox* picker)
{
    if (auto* model = qobject_cast<QStandardItemModel*>(picker->model())) {
        if (QStandardItem* row = model->item(kSourcePickerOffset - 1))
            row->setFlags(row->flags() & ~(Qt::ItemIsSelectable | Qt::ItemIsEnabled));
    }
}

LanguagePickers::LanguagePickers(QWidget* pic1)
    : QObject(pic1), m_combo2(picker(pic1, QStringLiteral("Combo2"), 46)),
      m_combo1(picker(pic1, QStringLiteral("Combo1"), 272))
{
    m_fromLabel = label(pic1, 0, m_combo2);
    m_fromLabel->setObjectName(QStringLiteral("fromLabel"));
    m_intoLabel = label(pic1, 226, m_combo1);
    m_intoLabel->setObjectName(QStringLiteral("intoLabel"));
    connect(m_combo2, &QComboBox::currentIndexChanged, this, &LanguagePickers::sourceChanged);
    connect(m_combo1, &QComboBox::currentIndexChanged, this, &LanguagePickers::targetChanged);
}

void LanguagePickers::applyCaptions(int language)
{
    m_fromLabel->setText(StringTable::text(language, LabelFrom));
    m_intoLabel->setText(StringTable::text(language, LabelInto));
    const Options defaults = Options::defaults();
    const int target = m_combo1->count() > 0 ? m_combo1->currentIndex() : *defaults.targetRow;
    const int source = m_combo2->count() > 0 ? m_combo2->currentIndex() : *defaults.sourceRow;
    {
        const QSignalBlocker blockTarget(m_combo1);
        const QSignalBlocker blockSource(m_combo2);
        m_combo1->clear();
        m_combo1->addItems(targetPickerNames(language));
        m_combo2->clear();
        m_combo2->addItems(sourcePickerNames(language));
        disableSeparatorRow(m_combo2);
        m_combo1->setCurrentIndex(target);
        m_combo2->setCurrentIndex(source);
    }
    sourceChanged();
    targetChanged();
}

void LanguagePickers::setSourceRow(int row)
{
    setRow(m_combo2, row);
    sourceChanged();
}

void LanguagePickers::setTargetRow(int row)
{
    setRow(m_combo1, row);
    targetChanged();
}

int LanguagePickers::sourceRow() const
{
    return m_combo2->currentIndex();
}

int LanguagePickers::targetRow() const
{
    return m_combo1->currentIndex();
}

QList<QWidget*> LanguagePickers::rowWidgets() const
{
    return {m_fromLabel, m_combo2, m_intoLabel, m_combo1};
}

QList<QWidget*> LanguagePickers::pickers() const
{
    return {m_combo2, m_combo1};
}

void LanguagePickers::sourceChanged()
{
    const int row = m_combo2->currentIndex();
    if (row >= 0)
        Q_EMIT sourceChosen(row, sourceRowEffect(row));
}

void LanguagePickers::targetChanged()
{
    const int row = m_combo1->currentIndex();
    if (row >= 0)
        Q_EMIT targetChosen(row, targetRowEffect(row));
}

} // namespace quillora
