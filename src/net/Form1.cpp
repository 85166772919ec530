#include "net/Form1.h"

#include "app/StringTable.h"
#include "net/MakerLists.h"
#include "net/WebLink.h"
#include "ui/TabOrder.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>

namespace quillora
{

Form1::Form1(int interfaceLanguage, const QString& updateListText, const QUrl& latestVersionPage,
             std::function<bool(const QUrl&)> openUrl, QWidget* parent)
    : QDialog(parent), m_prompt(new QLabel(this)), m_text(new QPlainTextEdit(this)),
      m_latestVersionPage(latestVersionPage), m_openUrl(std::move(openUrl))
{
    const auto text = [interfaceLanguage](int offset) {
        return StringTable::text(interfaceLanguage, offset);
    };
    setWindowTitle(text(UpdateTitle));
    m_prompt->setText(text(MsgNewVersion));
    const UpdateList list = parseUpdateList(updateListText);
    m_number = list.number;
    m_download = list.download;
    m_text->setObjectName(QStringLiteral("Text1"));
    m_text->setReadOnly(true);
    m_text->setAccessibleName(text(NameUpdateDetails));
    m_text->setPlainText(QStringLiteral("Version: V") + list.version + QStringLiteral("\r\n") + list.details);

    auto* buttons = new QHBoxLayout;
    const std::array<int, 3> captions{ButtonDetails, ButtonDownload, ButtonNextTime};
    for (int i = 0; i < int(m_buttons.size()); ++i) {
        auto* button = new QPushButton(text(captions[i]), this);
        button->setObjectName(QStringLiteral("jcbutton1_%1").arg(i));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, i] { jcbutton1_Click(i); });
        buttons->addWidget(button);
        m_buttons[i] = button;
    }
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_prompt);
    layout->addWidget(m_text);
    layout->addLayout(buttons);
    orderTabsByScreen(this);
}

void Form1::jcbutton1_Click(int index)
{
    if (index == 0)
        openWebAddress(m_latestVersionPage, m_openUrl);
    else if (index == 1)
        openWebAddress(QUrl(m_download), m_openUrl);
    close();
}

QAbstractButton* Form1::jcbutton1(int index) const
{
    return index >= 0 && index < int(m_buttons.size()) ? m_buttons[index] : nullptr;
}

QString Form1::prompt() const
{
    return m_prompt->text();
}

} // namespace quillora
