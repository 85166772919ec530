#include "desktop/ModmonClip.h"

#include "desktop/WaylandClipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <utility>

namespace quillora
{

ClipboardMonitor::ClipboardMonitor(QClipboard* clipboard, QObject* parent)
    : QObject(parent), m_clipboard(clipboard)
{
    if (QGuiApplication::platformName() != QLatin1String("wayland"))
        return;
    // QUILLORA_CLIPBOARD=focus stands for a compositor without data-control.
    if (qEnvironmentVariable("QUILLORA_CLIPBOARD") != QLatin1String("focus"))
        m_wayland = WaylandClipboard::connectToSession();
    m_focusOnly = !m_wayland;
    if (!m_wayland)
        return;
    connect(m_wayland.get(), &WaylandClipboard::selectionText, this, [this](const QString& text, bool own) {
        // The window's own copy also goes out through Qt's clipboard, which the compositor takes
        // when the window had input lately; it may land just after ours, unmarked. Qt cannot tell
        // whether it was taken, so a repeat of the own text soon after the copy counts as own.
        take(text, own || (m_ownCopyClock.isValid() && m_ownCopyClock.elapsed() < kOwnEchoMs));
    });
    connect(m_clipboard, &QClipboard::dataChanged, this, &ClipboardMonitor::onOwnCopyMade);
}

ClipboardMonitor::~ClipboardMonitor() = default;

void ClipboardMonitor::setMonitoring(bool on)
{
    if (on == m_on)
        return;
    m_on = on;
    if (m_wayland)
        return m_wayland->setWatching(on);
    if (!on) {
        disconnect(m_connection);
        return;
    }
    if (std::exchange(m_focusOnly, false))
        Q_EMIT focusOnly();
    m_connection = connect(m_clipboard, &QClipboard::dataChanged, this, &ClipboardMonitor::onChanged);
    onChanged();
}

QString ClipboardMonitor::currentText() const
{
    const QMimeData* data = m_clipboard->mimeData(QClipboard::Clipboard);
    if (!data || !data->hasText() || data->hasUrls() || data->hasImage())
        return {};
    return data->text();
}

void ClipboardMonitor::onChanged()
{
    take(currentText(), m_clipboard->ownsClipboard());
}

// An ordinary Wayland window may set the clipboard only right after the user's input; its own copy
// is handed on to data-control so that it lands from the background too.
void ClipboardMonitor::onOwnCopyMade()
{
    if (!m_ownCopy || !m_clipboard->ownsClipboard())
        return;
    const QString text = currentText();
    if (text.isEmpty())
        return;
    m_wayland->setText(text);
    m_ownCopyClock.start();
}

void ClipboardMonitor::take(const QString& text, bool ownsClipboard)
{
    if (text.isEmpty())
        return;
    if (m_ownCopy) {
        m_ownCopy = false;
        m_ownText = text;
        return;
    }
    if (text == m_ownText && ownsClipboard)
        return;
    m_ownText.clear();
    Q_EMIT textCopied(text);
}

} // namespace quillora
