#pragma once

#include <QDialog>
#include <QUrl>
#include <array>
#include <functional>

class QAbstractButton;
class QLabel;
class QPlainTextEdit;

namespace quillora
{

// The update message window: the version and details of an update list, with buttons for the
// latest-version page, the download and "Next Time". Each button closes the window.
class Form1 : public QDialog
{
    Q_OBJECT
public:
    Form1(int interfaceLanguage, const QString& updateListText, const QUrl& latestVersionPage,
          std::function<bool(const QUrl&)> openUrl, QWidget* parent = nullptr);

    void jcbutton1_Click(int index); // 0 Details, 1 Download, 2 Next Time
    QAbstractButton* jcbutton1(int index) const;
    QPlainTextEdit* Text1() const { return m_text; }
    QString prompt() const;
    qint32 number() const { return m_number; }

private:
    QLabel* m_prompt;
    QPlainTextEdit* m_text;
    std::array<QAbstractButton*, 3> m_buttons{};
    QUrl m_latestVersionPage;
    std::function<bool(const QUrl&)> m_openUrl;
    qint32 m_number = 0;
    QString m_download;
};

} // namespace quillora
