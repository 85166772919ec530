#include "net/FormAbout.h"

#include "Version.h"
#include "app/AccessKeys.h"
#include "app/StringTable.h"
#include "net/WebLink.h"
#include "translate/ServiceAddresses.h"
#include "ui/TabOrder.h"

#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace quillora
{

FormAbout::FormAbout(int interfaceLanguage, QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("FormAbout"));
    setModal(true);

    auto* image = new QToolButton(this);
    image->setObjectName(QStringLiteral("Image1"));
    image->setIcon(QIcon(QStringLiteral(":/icons/icon0.svg")));
    image->setIconSize(QSize(48, 48));
    image->setAutoRaise(true);
    image->setCursor(Qt::PointingHandCursor);
    image->setToolTip(ServiceAddresses::fromEnvironment().productHome().toString());
    image->setAccessibleName(StringTable::text(interfaceLanguage, MenuHome));
    connect(image, &QToolButton::clicked, this, [] {
        openWebAddress(ServiceAddresses::fromEnvironment().productHome(), &QDesktopServices::openUrl);
    });

    m_version = new QLabel(QStringLiteral("Ver:") + versionText(), this);
    m_version->setObjectName(QStringLiteral("Label6"));

    setWindowTitle(StringTable::text(interfaceLanguage, AboutTitle));
    auto* texts = new QVBoxLayout;
    texts->addWidget(m_version);
    for (int offset = AboutFirstLine; offset <= AboutLastLine; ++offset) {
        auto* label = new QLabel(StringTable::text(interfaceLanguage, offset), this);
        label->setObjectName(QStringLiteral("Label%1").arg(offset - AboutFirstLine + 1));
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        texts->addWidget(label);
        m_labels.append(label);
    }

    auto* top = new QHBoxLayout;
    top->addWidget(image, 0, Qt::AlignTop);
    top->addLayout(texts, 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    buttons->setObjectName(QStringLiteral("Command1"));
    buttons->button(QDialogButtonBox::Ok)
        ->setText(AccessKeys::assign({StringTable::text(interfaceLanguage, ButtonOk)}).constFirst());
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(buttons);
    setMinimumWidth(420);
    orderTabsByScreen(this);
}

QString FormAbout::versionLine() const
{
    return m_version->text();
}

QStringList FormAbout::texts() const
{
    QStringList result;
    for (const QLabel* label : m_labels)
        result.append(label->text());
    return result;
}

} // namespace quillora
