#pragma once

#include <QDialog>

class QCheckBox;
class QComboBox;

namespace quillora
{

class Settings;
struct Options;

// "Default Options": edits the seven "Options" fields. On OK the string is stored and the dialog
// is accepted (the main window then applies it); Close stores nothing.
class Form2 : public QDialog
{
    Q_OBJECT
public:
    Form2(Settings* settings, int interfaceLanguage, QWidget* parent = nullptr);

    QComboBox* combo1() const { return m_combo1; } // interface language (hl)
    QComboBox* combo2() const { return m_combo2; } // source
    QComboBox* combo3() const { return m_combo3; } // target
    QCheckBox* check(int n) const;                 // Check1..Check4

private:
    void load(const Options& options);
    void onOk();
    Settings* m_settings;
    QComboBox* m_combo1;
    QComboBox* m_combo2;
    QComboBox* m_combo3;
    QCheckBox* m_checks[4];
};

} // namespace quillora
