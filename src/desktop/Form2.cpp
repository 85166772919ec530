#include "desktop/Form2.h"

#include "app/Settings.h"
#include "app/StringTable.h"
#include "desktop/LanguagePickers.h"
#include "translate/LanguageCatalogue.h"
#include "ui/AccessKeyGroups.h"
#include "ui/RowFit.h"
#include "ui/TabOrder.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace quillora
{

namespace
{

QComboBox* makeCombo(const QString& name, const QStringList& rows, QWidget* parent)
{
    auto* combo = new QComboBox(parent);
    combo->setObjectName(name);
    combo->addItems(rows);
    combo->setMaxVisibleItems(20);
    combo->setMinimumSize(widestItemSize(combo));
    return combo;
}

// The label names its picker for screen readers.
QLabel* makeLabel(const QString& name, const QString& text, QWidget* buddy)
{
    auto* label = new QLabel(text, buddy->parentWidget());
    label->setObjectName(name);
    label->setBuddy(buddy);
    return label;
}

void setRow(QComboBox* combo, int row)
{
    if (row >= 0 && row < combo->count())
        combo->setCurrentIndex(row);
}

} // namespace

Form2::Form2(Settings* settings, int interfaceLanguage, QWidget* parent)
    : QDialog(parent), m_settings(settings)
{
    const auto text = [interfaceLanguage](int offset) {
        return StringTable::text(interfaceLanguage, offset);
    };
    setObjectName(QStringLiteral("Form2"));
    setWindowTitle(text(OptionsTitle));
    setModal(true);

    m_combo1 = makeCombo(QStringLiteral("Combo1"), targetPickerNames(interfaceLanguage), this);
    m_combo2 = makeCombo(QStringLiteral("Combo2"), sourcePickerNames(interfaceLanguage), this);
    disableSeparatorRow(m_combo2);
    m_combo3 = makeCombo(QStringLiteral("Combo3"), targetPickerNames(interfaceLanguage), this);
    const int captions[4] = {CheckMonitorClipboard, CheckCaching, CheckPhonetic, CheckDictionary};
    for (int i = 0; i < 4; ++i) {
        m_checks[i] = new QCheckBox(text(captions[i]), this);
        m_checks[i]->setObjectName(QStringLiteral("Check%1").arg(i + 1));
    }

    auto* grid = new QGridLayout;
    grid->addWidget(makeLabel(QStringLiteral("Label1"), text(OptionsFrom), m_combo2), 0, 0);
    grid->addWidget(m_combo2, 0, 1);
    grid->addWidget(makeLabel(QStringLiteral("Label2"), text(OptionsInto), m_combo3), 1, 0);
    grid->addWidget(m_combo3, 1, 1);
    grid->addWidget(m_checks[2], 2, 0);
    grid->addWidget(m_checks[3], 2, 1);
    grid->addWidget(makeLabel(QStringLiteral("EruLabel1"),
                              QLatin1Char(' ') + text(OptionsSystemLanguage) + QStringLiteral("  "),
                              m_combo1),
                    3, 0);
    grid->addWidget(m_combo1, 3, 1);
    grid->addWidget(m_checks[0], 4, 0, 1, 2);
    grid->addWidget(m_checks[1], 5, 0, 1, 2);

    auto* ok = new QPushButton(text(ButtonOk), this);
    ok->setObjectName(QStringLiteral("Command1"));
    ok->setDefault(true);
    auto* close = new QPushButton(text(ButtonClose), this);
    close->setObjectName(QStringLiteral("Command2"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(close);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addLayout(buttons);

    assignControlAccessKeys(this);
    connect(ok, &QPushButton::clicked, this, &Form2::onOk);
    connect(close, &QPushButton::clicked, this, &QDialog::reject);

    // A hand-edited setting applies as far as it reads; the rest keeps the defaults.
    load(Options::defaults());
    load(m_settings->options());
    orderTabsByScreen(this);
}

QCheckBox* Form2::check(int n) const
{
    return n >= 1 && n <= 4 ? m_checks[n - 1] : nullptr;
}

// In stored order, up to the first field that did not read.
void Form2::load(const Options& options)
{
    const auto check = [this](int box) { return [this, box](bool on) { m_checks[box]->setChecked(on); }; };
    applied(options.sourceRow, [this](int row) { setRow(m_combo2, row); }) &&
        applied(options.targetRow, [this](int row) { setRow(m_combo3, row); }) &&
        applied(options.showPhonetic, check(2)) && applied(options.showDictionary, check(3)) &&
        applied(options.interfaceLanguageRow, [this](int row) { setRow(m_combo1, row); }) &&
        applied(options.monitorClipboard, check(0)) && applied(options.caching, check(1));
}

void Form2::onOk()
{
    m_settings->setOptions({m_combo2->currentIndex(), m_combo3->currentIndex(), m_checks[2]->isChecked(),
                            m_checks[3]->isChecked(), m_combo1->currentIndex(), m_checks[0]->isChecked(),
                            m_checks[1]->isChecked()});
    accept();
}

} // namespace quillora
