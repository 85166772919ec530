#pragma once

#include "app/Settings.h"

#include <QMessageBox>
#include <QWidget>
#include <functional>
#include <optional>

namespace quillora
{

class ButtonRow;
class ClipboardMonitor;
class ConnectivityProbe;
class LanguagePickers;
class SpeakerButtons;
class TextPanes;
class TranslationSession;
enum class EngineChoice;
struct HistorySlot;
struct ServiceAddresses;
struct SessionResult;

// The main window's text area (`Pic1`): the text panes, the language pickers, the six buttons and the
// speakers around one translation session, and the flow of a translation through them (`fanYi`).
class TranslatorPane : public QWidget
{
    Q_OBJECT
public:
    using Notice =
        std::function<void(int offset, QMessageBox::Icon, QMessageBox::StandardButtons, bool owned)>;

    TranslatorPane(QWidget* parent, TranslationSession* session, ConnectivityProbe* connectivity,
                   ClipboardMonitor* clipboard, const ServiceAddresses& addresses, Notice notice);

    void applyCaptions(int language);
    void applyStyle(int style);
    // The stored options' fields 0-4 and the cache; false when one did not read (the rest is not applied).
    bool applyOptions(const Options& options);
    void applyFont(const FontSetting& font);
    void setAutoCopy(bool on) { m_autoCopy = on; }

    void jcbuttonClick(int index);
    void translateCopiedText(const QString& text);
    // The newest text copied while a translation ran, translated now.
    void takeWaitingCopy();
    void insertPasted(const QString& text);
    TextPanes* panes() const { return m_panes; }

Q_SIGNALS:
    void status(const QString& text); // an empty text clears the status line
    void translationFinished();

private:
    void translate();
    void notConnected();
    void fanYi(EngineChoice choice);
    void translationDone(const SessionResult& result);
    void showSlot(const HistorySlot& slot);
    void swap();
    void copyResult();
    void clearBoxes();

    TranslationSession* m_session;
    ConnectivityProbe* m_connectivity;
    ClipboardMonitor* m_clipboard;
    Notice m_notice;
    TextPanes* m_panes;
    LanguagePickers* m_pickers;
    ButtonRow* m_buttons;
    SpeakerButtons* m_speakers;
    int m_language = 1;
    bool m_autoCopy = false;
    bool m_runForCopy = false;           // the running translation takes a copied text
    std::optional<QString> m_copiedText; // the newest copy that came while a translation ran
};

} // namespace quillora
