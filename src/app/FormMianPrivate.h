#pragma once

#include "app/FormMian.h"
#include "app/Settings.h"
#include "translate/TranslationSession.h"

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <QString>
#include <array>
#include <functional>
#include <memory>

class QAudioOutput;
class QCheckBox;
class QFrame;
class QLabel;
class QMediaPlayer;
class QPushButton;
class QToolButton;
class QWidget;

namespace quillora
{

class CommandMenus;
class ConnectivityProbe;
class GlobalHotKey;
class InputHold;
class PromotionPanel;
class SitesMenu;
class UpdateCheck;
class TranslationEngine;
struct ServiceAddresses;

// What a speaker button reads aloud.
struct SpokenText {
    QString text;
    QString code;
};

struct FormMian::Private {
    explicit Private(FormMian* owner, const FormMianDeps& given);
    ~Private();

    FormMian* q;
    FormMianDeps deps;
    std::unique_ptr<ConnectivityProbe> ownConnectivity;
    ConnectivityProbe* connectivity = nullptr;
    TranslationEngine* engine = nullptr;
    TranslationSession* session = nullptr;

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
    std::array<QToolButton*, 2> speaker{};
    CommandMenus* menus = nullptr;
    SitesMenu* sites = nullptr;
    UpdateCheck* updateCheck = nullptr;
    PromotionPanel* promotion = nullptr;
    ClipboardMonitor* clipboard = nullptr;
    std::unique_ptr<GlobalHotKey> hotKey;
    std::unique_ptr<QAudioOutput> audioOutput;
    std::unique_ptr<QMediaPlayer> player;
    std::unique_ptr<InputHold> hold; // while a translation runs

    QString tempFolder;
    QString language = QStringLiteral("1");
    int style = 2;
    bool autoCopy = false;
    FontSetting font;

    bool autoCopyPending = false;
    bool uncoveredFromCopy = false; // which notice an uncovered offline text brings
    QString statusBefore;
    std::array<SpokenText, 2> spoken;

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
    void translated(const SessionResult& result);
    void showHistorySlot(const HistorySlot& slot);
    QString failureStatus(const TranslationOutcome& outcome, bool offline) const;
    void showSpeaker(int slot, bool shown, const SpokenText& text);
    void playSpeech(int slot);
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
