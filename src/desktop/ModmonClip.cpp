#include "desktop/ModmonClip.h"

#include <QClipboard>
#include <QMimeData>

namespace quillora
{

ClipboardMonitor::ClipboardMonitor(QClipboard* clipboard, QObject* parent)
    : QObject(parent), m_clipboard(clipboard)
{
}

void ClipboardMonitor::setMonitoring(bool on)
{
    if (on == m_on)
        return;
    m_on = on;
    if (!on) {
        disconnect(m_connection);
        return;
    }
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
    const QString text = currentText();
    if (text.isEmpty())
        return;
    if (m_ownCopy) {
        m_ownCopy = false;
        m_ownText = text;
        return;
    }
    if (text == m_ownText && m_clipboard->ownsClipboard())
        return;
    m_ownText.clear();
    Q_EMIT textCopied(text);
}

} // namespace quillora
