#include "desktop/ModmonClip.h"

#include "desktop/WaylandClipboard.h"
#include "desktop/X11Clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <utility>

namespace quillora
{

ClipboardMonitor::ClipboardMonitor(QClipboard* clipboard, QObject* parent)
    : QObject(parent), m_clipboard(clipboard)
{
}

// A connection of its own costs round trips to the display server: made when first needed.
void ClipboardMonitor::connectReader()
{
    if (std::exchange(m_connected, true))
        return;
    const QString platform = QGuiApplication::platformName();
    if (platform == QLatin1String("xcb"))
        if (auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
            m_x11 = X11Clipboard::connectToDisplay(x11->connection());
    if (m_x11) {
        connect(m_x11.get(), &X11Clipboard::readDone, this, &ClipboardMonitor::onRead);
        return;
    }
    if (platform != QLatin1String("wayland"))
        return;
    // QUILLORA_CLIPBOARD=focus stands for a compositor without data-control.
    if (qEnvironmentVariable("QUILLORA_CLIPBOARD") != QLatin1String("focus"))
        m_wayland = WaylandClipboard::connectToSession();
    m_focusOnly = !m_wayland;
    if (!m_wayland)
        return;
    connect(m_wayland.get(), &WaylandClipboard::readDone, this,
            [this](int purposes, ClipboardRead result, const QString& text, bool own) {
                // The window's own copy also goes out through Qt's clipboard, which the compositor
                // takes when the window had input lately; it may land just after ours, unmarked. Qt
                // cannot tell whether it was taken, so a repeat of the own text soon after the copy
                // counts as own.
                onRead(purposes, result, text,
                       own || (m_ownCopyClock.isValid() && m_ownCopyClock.elapsed() < kOwnEchoMs));
            });
    connect(m_clipboard, &QClipboard::dataChanged, this, &ClipboardMonitor::onOwnCopyMade);
}

ClipboardMonitor::~ClipboardMonitor() = default;

void ClipboardMonitor::setMonitoring(bool on)
{
    if (on == m_on)
        return;
    connectReader();
    m_on = on;
    if (m_x11)
        return m_x11->setWatching(on);
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

void ClipboardMonitor::requestPaste()
{
    connectReader();
    if (m_x11)
        return m_x11->read(ForPaste);
    if (m_wayland)
        return m_wayland->read(ForPaste);
    readQtClipboard(ForPaste);
}

void ClipboardMonitor::onChanged()
{
    readQtClipboard(ForNotice);
}

// Where the program has no connection of its own: Qt's clipboard, under the same rule.
void ClipboardMonitor::readQtClipboard(int purposes)
{
    const QMimeData* data = m_clipboard->mimeData(QClipboard::Clipboard);
    QList<QByteArray> types;
    for (const QString& format : data ? data->formats() : QStringList())
        types.append(format.toUtf8());
    const QByteArray type = ClipboardOffer::textType(types);
    if (type.isEmpty() || (ClipboardOffer::hasSecretHint(types) &&
                           ClipboardOffer::isSecret(data->data(ClipboardOffer::kSecretHintType))))
        return onRead(purposes, ClipboardRead::Nothing, {}, false);
    const QString text = data->text();
    const ClipboardRead result =
        text.toUtf8().size() > ClipboardOffer::kMaxBytes ? ClipboardRead::TooLarge : ClipboardRead::Text;
    onRead(purposes, result, text, m_clipboard->ownsClipboard());
}

// An ordinary Wayland window may set the clipboard only right after the user's input; its own copy
// is handed on to data-control so that it lands from the background too. Qt holds its own copy in
// the program, so reading it here does not wait for anyone.
void ClipboardMonitor::onOwnCopyMade()
{
    if (!m_ownCopy || !m_clipboard->ownsClipboard())
        return;
    const QMimeData* data = m_clipboard->mimeData(QClipboard::Clipboard);
    const QString text = data ? data->text() : QString();
    if (text.isEmpty())
        return;
    m_wayland->setText(text);
    m_ownCopyClock.start();
}

void ClipboardMonitor::onRead(int purposes, ClipboardRead result, const QString& text, bool own)
{
    if (result == ClipboardRead::Nothing || (result == ClipboardRead::Text && text.isEmpty()))
        return;
    if (purposes & ForPaste) {
        if (result == ClipboardRead::Text)
            Q_EMIT pasteText(text);
        else if (!(purposes & ForNotice))
            Q_EMIT tooLarge();
    }
    if (!(purposes & ForNotice))
        return;
    if (m_ownCopy) {
        m_ownCopy = false;
        m_ownText = text;
        return;
    }
    if (result == ClipboardRead::TooLarge) {
        m_ownText.clear();
        Q_EMIT tooLarge();
        return;
    }
    if (text == m_ownText && own)
        return;
    m_ownText.clear();
    Q_EMIT textCopied(text);
}

} // namespace quillora
