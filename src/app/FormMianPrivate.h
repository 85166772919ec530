#pragma once

#include "app/FormMian.h"
#include "app/Settings.h"
#include "translate/HistoryRing.h"
#include "translate/TranslationRouter.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QString>
#include <array>
#include <functional>
#include <memory>

class QCheckBox;
class QFrame;
class QLabel;
class QPushButton;
class QWidget;

namespace quillora
{

class CommandMenus;
class ConnectivityProbe;
class GlobalHotKey;
class PromotionPanel;
class SitesMenu;
class SpeakerButtons;
class UpdateCheck;
class TranslationEngine;
struct ServiceAddresses;

struct FormMian::Private {
    explicit Private(FormMian* owner, const FormMianDeps& given);
    ~Private();

    FormMian* q;
    FormMianDeps deps;
    std::unique_ptr<ConnectivityProbe> ownConnectivity;
    ConnectivityProbe* connectivity = nullptr;
    TranslationEngine* engine = nullptr;
    std::unique_ptr<TranslationRouter> router;

    QFrame* PicAD = nullptr;
    QWidget* Pic1 = nullptr;
    QPlainTextEdit* sourceBox = nullptr;
    QPlainTextEdit* resultBox = nullptr;
    QPlainTextEdit* phoneticBox = nullptr;
    QPlainTextEdit* dictionaryBox = nullptr;
    // The raw answer: a text held as it came, not a hidden text box, whose layout of a large answer
    // would hold the window up for seconds.
    QString response;
    QLabel* fromLabel = nullptr;
    QLabel* intoLabel = nullptr;
    QLabel* addressLabel = nullptr;
    QComboBox* Combo1 = nullptr;
    QComboBox* Combo2 = nullptr;
    QComboBox* ucComText = nullptr;
    QCheckBox* Check1 = nullptr;
    QCheckBox* Check2 = nullptr;
    std::array<QPushButton*, 6> jcbutton{};
    QPushButton* jcbutton1 = nullptr;
    SpeakerButtons* speakers = nullptr;
    CommandMenus* menus = nullptr;
    SitesMenu* sites = nullptr;
    UpdateCheck* updateCheck = nullptr;
    PromotionPanel* promotion = nullptr;
    ClipboardMonitor* clipboard = nullptr;
    std::unique_ptr<GlobalHotKey> hotKey;

    QString tempFolder;
    HistoryRing ring;
    QString language = QStringLiteral("1");
    int style = 2;
    bool autoCopy = false;
    FontSetting font;

    QString SourceCode;
    QString TargetCode;
    QString InterfaceCode = QStringLiteral("en");
    bool Translating = false;
    bool CachingEnabled = false;
    bool SourceSpeechOk = false;
    bool TranslationSpeechOk = false;

    bool exitRequested = false;
    bool trayPresent = false;
    bool meantShown = false; // the program's own idea, ahead of the window manager's reports
    QElapsedTimer lastToggle;
    bool lateReport() const;
    bool copiedTextWaiting = false;
    QString copiedText;
    QString waitingCommand; // a menu command chosen while a translation ran

    // Loading
    void Form_Load();
    void buildWidgets();
    void buildPickerBand();
    void buildAddressRow(QWidget* central, int top);
    void readMarks();
    void applyStyle();
    void applyCaptions();
    void fitCaptionedRows();
    void refillPickers();
    void applyOptions();
    void registerHotKey();
    void buildSitesMenu();
    void buildNetServices();

    // Pickers and panes
    void setCombo1Row(int row);
    void setCombo2Row(int row);
    void Combo1_Click();
    void Combo2_Click();
    void Check_Click();

    // Buttons and translation
    void translate();
    void swap();
    void GoBack();
    void copyResult();
    void pasteClipboardText(const QString& text);
    void clearBoxes();
    void jcbutton1_Click();
    void fanYi(bool autoCopyFlag, EngineChoice choice = EngineChoice::Auto);
    // Without a connection: whether an installed offline pair covers the source text and languages.
    bool offlineCovers();
    QString failureStatus(const TranslationOutcome& outcome, bool offline) const;
    void prepareSpeech(const QString& sentText, const QString& spokenTranslation);
    void storeHistory();
    void takeWaitingCopiedText();
    void runWaitingCommand();

    // Commands
    void setLanguage(int number);
    void showOptionsDialog();
    void showAbout();
    void chooseFont();
    void openTextFile();
    void saveResults();
    bool openUrl(const QUrl& url) const;
    int runDialog(QDialog* dialog) const;
    QString text(int offset) const;
    // A message box captioned "Notice" with the text of `offset`.
    QMessageBox::StandardButton notice(int offset, QMessageBox::Icon icon,
                                       QMessageBox::StandardButtons buttons, bool owned);
    const ServiceAddresses& addresses() const;
};

} // namespace quillora
