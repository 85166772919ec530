#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <memory>

class QClipboard;

namespace quillora
{

class WaylandClipboard;

// Watches the clipboard for text that other programs copy. The program's own copies are marked
// with markOwnCopy() just before they happen, and exactly the next notice with text is then
// swallowed. Notices without text (the clear() before a copy) leave the guard set. Under X11 a
// clear() can report late, after the copy; a notice that repeats the program's own text while the
// program still owns the clipboard is therefore swallowed too.
//
// On Wayland the compositor's data-control protocol serves when it has one: copies are seen and
// the program's own copies reach the clipboard while the window is in the background. Without it
// the window's own clipboard sees copies only while it has the focus; focusOnly() says so.
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

Q_SIGNALS:
    // Non-empty text copied by another program.
    void textCopied(const QString& text);
    // Once, when monitoring first starts on a desktop that shows copies only to the focused window.
    void focusOnly();

private:
    void onChanged();
    void onOwnCopyMade();
    void take(const QString& text, bool ownsClipboard);
    QString currentText() const;
    QClipboard* m_clipboard;
    std::unique_ptr<WaylandClipboard> m_wayland;
    QMetaObject::Connection m_connection;
    QElapsedTimer m_ownCopyClock;
    static constexpr int kOwnEchoMs = 1000;
    QString m_ownText;
    bool m_on = false;
    bool m_ownCopy = false;
    bool m_focusOnly = false;
};

} // namespace quillora
