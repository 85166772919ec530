#include "desktop/WebPageBar.h"

#include "app/StringTable.h"
#include "ui/LayoutScale.h"
#include "ui/RowFit.h"

#include <QComboBox>
#include <QLabel>
#include <QPointer>
#include <QPushButton>

namespace quillora
{

namespace
{

constexpr int kRemembered = 10;
constexpr int kHeight = 24;

} // namespace

WebPageBar::WebPageBar(QWidget* parent, int left, int top, AddressFor addressFor, Opener open)
    : QObject(parent), m_label(new QLabel(parent)), m_address(new QComboBox(parent)),
      m_go(new QPushButton(parent)), m_addressFor(std::move(addressFor)), m_open(std::move(open))
{
    const LayoutScale scale = LayoutScale::of(parent);
    m_label->setGeometry(left, top, scale(170), scale(kHeight));
    m_address->setObjectName(QStringLiteral("ucComText"));
    m_address->setEditable(true);
    m_address->setInsertPolicy(QComboBox::NoInsert);
    m_address->setGeometry(left + scale(174), top, scale(440), scale(kHeight));
    m_label->setBuddy(m_address);
    m_go->setObjectName(QStringLiteral("jcbutton1"));
    m_go->setGeometry(left + scale(620), top, scale(90), scale(kHeight));
    m_go->setAutoDefault(false);
    connect(m_go, &QPushButton::clicked, this, &WebPageBar::go);
}

void WebPageBar::applyCaptions(int language)
{
    m_label->setText(StringTable::text(language, LabelAddress));
    m_go->setText(StringTable::text(language, ButtonGoto));
}

void WebPageBar::setAddressText(const QString& text)
{
    m_address->setEditText(text);
}

void WebPageBar::fit(int width)
{
    constexpr int minAddressWidth = 150;
    fitRow({m_label, m_address, m_go}, {m_address}, m_label->x(), width,
           LayoutScale::of(m_label)(minAddressWidth));
}

// What was typed goes to the service as typed, only trimmed; the list keeps it untrimmed.
void WebPageBar::go()
{
    const QString typed = m_address->currentText();
    m_open(m_addressFor(typed.trimmed()), [bar = QPointer<WebPageBar>(this)](const QString& reason) {
        if (bar)
            Q_EMIT bar->openFailed(reason);
    });
    m_address->addItem(typed);
    if (m_address->count() > kRemembered)
        m_address->removeItem(0);
    m_address->setEditText(typed);
}

} // namespace quillora
