#pragma once

#include <QDialog>

class QLabel;

namespace quillora
{

// Version line "Ver:2.1.91", title and texts of the interface language.
class FormAbout : public QDialog
{
    Q_OBJECT
public:
    FormAbout(int interfaceLanguage, QWidget* parent = nullptr);
    QString versionLine() const;
    QStringList texts() const; // the five labels in order

private:
    QLabel* m_version;
    QList<QLabel*> m_labels;
};

} // namespace quillora
