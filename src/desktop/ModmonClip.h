#pragma once

#include <QObject>
#include <QString>

class QClipboard;

namespace quillora
{

// Watches the clipboard for text that other programs copy. The program's own copies are marked
// with markOwnCopy() just before they happen, and exactly the next notice with text is then
// swallowed. Notices without text (the clear() before a copy) leave the guard set. Under X11 a
// clear() can report late, after the copy; a notice that repeats the program's own text while the
// program still owns the clipboard is therefore swallowed too.
class ClipboardMonitor : public QObject
{
    Q_OBJECT
public:
    explicit ClipboardMonitor(QClipboard* clipboard, QObject* parent = nullptr);

    // Idempotent. Switching on takes the text already on the clipboard at once.
    void setMonitoring(bool on);
    bool monitoring() const { return m_on; }

    // OwnCopy: set just before the program copies its own text.
    void markOwnCopy() { m_ownCopy = true; }
    bool ownCopy() const { return m_ownCopy; }

Q_SIGNALS:
    // Non-empty text copied by another program.
    void textCopied(const QString& text);

private:
    void onChanged();
    QString currentText() const;
    QClipboard* m_clipboard;
    QMetaObject::Connection m_connection;
    QString m_ownText;
    bool m_on = false;
    bool m_ownCopy = false;
};

} // namespace quillora
