// Building the window: its widgets in their fixed places, marks, style, captions and the panes.
#include "app/FormMian.h"
#include "app/FormMianPrivate.h"
#include "app/LocaleChoice.h"
#include "app/PasteRoute.h"
#include "app/StringTable.h"
#include "app/UniTextBox.h"
#include "desktop/AutoStart.h"
#include "desktop/CommandMenus.h"
#include "desktop/ModFont.h"
#include "desktop/ModHotKey.h"
#include "desktop/ModmonClip.h"
#include "desktop/VisualStyle.h"
#include "net/Connectivity.h"
#include "net/SitesMenu.h"
#include "translate/LanguageCatalogue.h"
#include "translate/TempFolder.h"
#include "translate/TranslationEngine.h"

#include <QAudioOutput>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFrame>
#include <QGuiApplication>
#include <QIcon>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QMediaPlayer>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QShowEvent>
#include <QStatusBar>
#include <QStyle>
#include <QToolButton>
#include <QUrl>
#include <algorithm>

namespace quillora
{

namespace
{

// Text-box container layout, in pixels of Pic1.
constexpr int kBoxWidth = 710;
constexpr int kSpeakerSize = 18;
constexpr int kPic1Width = kBoxWidth + 3 + kSpeakerSize;
constexpr int kPic1Height = 188 + 239;
constexpr int kMargin = 2;
constexpr int kPicAdHeight = 60; // 900 twips

const QRect kSourceRect(0, 0, kBoxWidth, 135);
const QRect kResultRect(0, 188, kBoxWidth, 135);
const QRect kResultTallRect(0, 188, kBoxWidth, 239);
const QRect kPhoneticRect(0, 325, 400, 102);
const QRect kDictionaryRect(403, 325, 307, 102);
const QRect kLowerPaneWideRect(0, 325, kBoxWidth, 102);

// Button captions and tool tips by index, interface string offsets.
constexpr std::array<int, 6> kButtonCaption{25, 109, 26, 27, 28, 29};
constexpr std::array<int, 6> kButtonToolTip{2, 113, 110, 111, 112, 29};

} // namespace

void FormMian::Private::buildWidgets()
{
    auto* central = new QWidget(q);
    q->setCentralWidget(central);

    // The promotion panel keeps its place below the menu bar.
    PicAD = new QFrame(central);
    PicAD->setObjectName(QStringLiteral("PicAD"));
    PicAD->setGeometry(kMargin, kMargin, kBoxWidth, kPicAdHeight);

    Pic1 = new QWidget(central);
    Pic1->setObjectName(QStringLiteral("Pic1"));
    Pic1->setAutoFillBackground(true);
    Pic1->setGeometry(kMargin, kMargin * 2 + kPicAdHeight, kPic1Width, kPic1Height);

    sourceBox = createTextBox(Pic1, kSourceRect, QStringLiteral("Source text"));
    new PasteRoute(sourceBox, [this] { q->jcbuttonClick(4); });
    resultBox = createTextBox(Pic1, kResultRect, QStringLiteral("Translation"));
    phoneticBox = createTextBox(Pic1, kPhoneticRect, QStringLiteral("Romanization"));
    dictionaryBox = createTextBox(Pic1, kDictionaryRect, QStringLiteral("Dictionary"));

    buildPickerBand();

    const QIcon speakerIcon = q->style()->standardIcon(QStyle::SP_MediaVolume);
    const std::array<int, 2> speakerTop{kResultRect.top(), kSourceRect.top()};
    for (int slot = 0; slot < 2; ++slot) {
        auto* button = new QToolButton(Pic1);
        button->setObjectName(QStringLiteral("WebBrowser2_%1").arg(slot));
        button->setIcon(speakerIcon);
        button->setAutoRaise(true);
        button->setGeometry(kBoxWidth + 3, speakerTop[slot], kSpeakerSize, kSpeakerSize);
        button->hide();
        QObject::connect(button, &QToolButton::clicked, q, [this, slot] { playSpeech(slot); });
        speaker[slot] = button;
    }

    const int addressTop = Pic1->geometry().bottom() + 1 + 6;
    buildAddressRow(central, addressTop);
    central->setFixedSize(kPic1Width + 2 * kMargin, addressTop + 24 + kMargin);
    q->layout()->setSizeConstraint(QLayout::SetFixedSize);
    q->statusBar()->setSizeGripEnabled(false);
}

void FormMian::Private::buildPickerBand()
{
    constexpr int rowA = 139;
    constexpr int rowB = 164;
    constexpr int height = 22;

    fromLabel = new QLabel(Pic1);
    fromLabel->setGeometry(0, rowA, 44, height);
    Combo2 = new QComboBox(Pic1);
    Combo2->setObjectName(QStringLiteral("Combo2"));
    Combo2->setGeometry(46, rowA, 170, height);
    fromLabel->setBuddy(Combo2);

    intoLabel = new QLabel(Pic1);
    intoLabel->setGeometry(226, rowA, 44, height);
    Combo1 = new QComboBox(Pic1);
    Combo1->setObjectName(QStringLiteral("Combo1"));
    Combo1->setGeometry(272, rowA, 170, height);
    intoLabel->setBuddy(Combo1);

    Check1 = new QCheckBox(Pic1);
    Check1->setObjectName(QStringLiteral("Check1"));
    Check1->setGeometry(452, rowA, 128, height);
    Check2 = new QCheckBox(Pic1);
    Check2->setObjectName(QStringLiteral("Check2"));
    Check2->setGeometry(584, rowA, 126, height);
    Check1->setChecked(true);
    Check2->setChecked(true);

    QObject::connect(Combo2, &QComboBox::currentIndexChanged, q, [this] { Combo2_Click(); });
    QObject::connect(Combo1, &QComboBox::currentIndexChanged, q, [this] { Combo1_Click(); });
    QObject::connect(Check1, &QCheckBox::toggled, q, [this] { Check_Click(); });
    QObject::connect(Check2, &QCheckBox::toggled, q, [this] { Check_Click(); });

    constexpr int buttonWidth = 114;
    constexpr int buttonStep = 119;
    for (int i = 0; i < int(jcbutton.size()); ++i) {
        auto* button = new QPushButton(Pic1);
        button->setObjectName(QStringLiteral("jcbutton_%1").arg(i)); // "jcbutton1" is the address button
        button->setGeometry(i * buttonStep, rowB, buttonWidth, height);
        button->setAutoDefault(false);
        QObject::connect(button, &QPushButton::clicked, q, [this, i] { q->jcbuttonClick(i); });
        jcbutton[i] = button;
    }
}

void FormMian::Private::buildAddressRow(QWidget* central, int top)
{
    addressLabel = new QLabel(central);
    addressLabel->setGeometry(kMargin, top, 170, 24);
    ucComText = new QComboBox(central);
    ucComText->setObjectName(QStringLiteral("ucComText"));
    ucComText->setEditable(true);
    ucComText->setInsertPolicy(QComboBox::NoInsert);
    ucComText->setGeometry(kMargin + 174, top, 440, 24);
    addressLabel->setBuddy(ucComText);
    jcbutton1 = new QPushButton(central);
    jcbutton1->setObjectName(QStringLiteral("jcbutton1"));
    jcbutton1->setGeometry(kMargin + 620, top, 90, 24);
    jcbutton1->setAutoDefault(false);
    QObject::connect(jcbutton1, &QPushButton::clicked, q, [this] { jcbutton1_Click(); });
}

void FormMian::Private::readMarks()
{
    Settings& settings = *deps.settings;
    language = interfaceLanguageFor(settings.language());
    menus->checkLanguageItem(language.toInt());

    menus->action(QStringLiteral("menuS0"))->setChecked(isAutoRunRegistered(deps.programPath));

    autoCopy = settings.autoCopy();
    menus->action(QStringLiteral("menuS5"))->setChecked(autoCopy);

    style = settings.style();
    menus->checkStyleItem(style);
}

void FormMian::Private::applyStyle()
{
    const QList<QWidget*> checks{Check1, Check2};
    const QList<QWidget*> buttons(jcbutton.begin(), jcbutton.end());
    applyVisualStyle(style, Pic1, checks, buttons);
}

void FormMian::Private::applyCaptions()
{
    menus->applyCaptions(language.toInt());
    sites->rebuild(language.toInt());
    q->setWindowTitle(text(17));
    fromLabel->setText(text(21));
    intoLabel->setText(text(22));
    Check1->setText(text(23));
    Check2->setText(text(24));
    addressLabel->setText(text(120));
    jcbutton1->setText(text(121));
    for (int i = 0; i < int(jcbutton.size()); ++i) {
        jcbutton[i]->setText(text(kButtonCaption[i]));
        jcbutton[i]->setToolTip(text(kButtonToolTip[i]));
    }
    fitCaptionedRows();
    refillPickers();
}

// Captions differ in length between languages: labels and check boxes take the room their text
// needs, the pickers and the address box share what is left of the row.
void FormMian::Private::fitCaptionedRows()
{
    constexpr int gap = 4;
    constexpr int minComboWidth = 100;
    const auto needed = [](const QWidget* w) { return w->sizeHint().width(); };
    const QRect band = fromLabel->geometry();
    const int captions = needed(fromLabel) + needed(intoLabel) + needed(Check1) + needed(Check2);
    const int comboWidth = std::max(minComboWidth, (kBoxWidth - captions - 5 * gap) / 2);
    const std::array<QWidget*, 6> row{fromLabel, Combo2, intoLabel, Combo1, Check1, Check2};
    int x = 0;
    for (QWidget* w : row) {
        const int span = (w == Combo1 || w == Combo2) ? comboWidth : needed(w);
        w->setGeometry(x, band.top(), std::min(span, kBoxWidth - x), band.height());
        x += span + gap;
    }

    const QRect label = addressLabel->geometry();
    const int labelWidth = std::min(needed(addressLabel), kBoxWidth / 3);
    addressLabel->setGeometry(label.left(), label.top(), labelWidth, label.height());
    const int boxLeft = label.left() + labelWidth + gap;
    ucComText->setGeometry(boxLeft, label.top(), jcbutton1->geometry().left() - gap - boxLeft,
                           label.height());
}

void FormMian::Private::Check_Click()
{
    const bool phonetic = Check1->isChecked();
    const bool dictionary = Check2->isChecked();
    if (phonetic && dictionary) {
        phoneticBox->setGeometry(kPhoneticRect);
        dictionaryBox->setGeometry(kDictionaryRect);
    } else if (phonetic || dictionary) {
        resultBox->setGeometry(kResultRect);
        (phonetic ? phoneticBox : dictionaryBox)->setGeometry(kLowerPaneWideRect);
    } else {
        resultBox->setGeometry(kResultTallRect);
    }
    phoneticBox->setVisible(phonetic);
    dictionaryBox->setVisible(dictionary);
}

} // namespace quillora
