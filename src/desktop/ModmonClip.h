#pragma once

#include "desktop/ClipboardOffer.h"

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <memory>

class QClipboard;

namespace quillora
{

class WaylandClipboard;
class X11Clipboard;

// Watches the clipboard for text that other programs copy, and reads it for Paste; what counts as
// text is ClipboardOffer's rule. The program's own copies are marked with markOwnCopy() just before
// they happen, and exactly the next notice with text is then swallowed; a notice that repeats the
// program's own text while the program still owns the clipboard is swallowed too.
//
// On X11 and on a Wayland compositor with data-control the clipboard is read on a connection of its
// own, never waiting for the other program. Without data-control the window's own clipboard sees
// copies only while it has the focus; focusOnly() says so.
class ClipboardMonitor : public QObject
{
    Q_OBJECT
public:
    explicit ClipboardMonitor(QClipboard* clipboard, QObject* parent = nullptr);
    ~ClipboardMonitor() override;

    // Idempotent. Switching on takes the text already on the clipboard at once.
    void setMonitoring(bool on);
    bool monitoring() const { return m_on; }

    // OwnCopy: set just before the program copies its own text.
    void markOwnCopy() { m_ownCopy = true; }
    bool ownCopy() const { return m_ownCopy; }

    // Reads the clipboard for Paste; pasteText() follows when it holds text to take.
    void requestPaste();

    // Idempotent; monitoring and Paste connect by themselves. On Wayland the window's own copies
    // reach other programs from the background only once connected.
    void connectReader();

Q_SIGNALS:
    // Non-empty text copied by another program.
    void textCopied(const QString& text);
    void pasteText(const QString& text);
    // A copy, or the text asked for by Paste, is over ClipboardOffer::kMaxBytes and was left alone.
    void tooLarge();
    // Once, when monitoring first starts on a desktop that shows copies only to the focused window.
    void focusOnly();

private:
    void onChanged();
    void onOwnCopyMade();
    void readQtClipboard(int purposes);
    void onRead(int purposes, ClipboardRead result, const QString& text, bool own);
    QClipboard* m_clipboard;
    std::unique_ptr<WaylandClipboard> m_wayland;
    std::unique_ptr<X11Clipboard> m_x11;
    QMetaObject::Connection m_connection;
    QElapsedTimer m_ownCopyClock;
    static constexpr int kOwnEchoMs = 1000;
    QString m_ownText;
    bool m_on = false;
    bool m_ownCopy = false;
    bool m_focusOnly = false;
    bool m_connected = false;
};

} // namespace quillora
