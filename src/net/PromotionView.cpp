#include "net/PromotionView.h"

#include "net/Http.h"
#include "net/WebLink.h"

#include <QPointer>
#include <QTimer>

namespace quillora
{

PromotionView::PromotionView(QWidget* parent, std::function<bool(const QUrl&)> openUrl)
    : QTextBrowser(parent), m_openUrl(std::move(openUrl))
{
    setObjectName(QStringLiteral("WebBrowser3"));
    setOpenLinks(false);
    setOpenExternalLinks(false);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(this, &QTextBrowser::anchorClicked, this,
            [this](const QUrl& link) { openWebAddress(document()->baseUrl().resolved(link), m_openUrl); });
}

void PromotionView::navigate(const QUrl& page)
{
    if (!isWebAddress(page))
        return;
    HttpClient http;
    http.setMaxBytes(kMaxPageBytes);
    http.setTimeoutMs(kTimeoutMs);
    const QPointer<PromotionView> alive(this);
    const HttpReply reply = http.get(page);
    if (!alive || !reply.ok() || reply.status != 200)
        return;
    m_page = page;
    m_html = decodeByCharset(reply.body, reply.contentType);
    m_images.clear();
    m_requested.clear();
    render();
}

void PromotionView::showFile(const QString& path)
{
    m_page = QUrl::fromLocalFile(path);
    m_html.clear();
    setSource(m_page);
}

void PromotionView::render()
{
    document()->setBaseUrl(m_page);
    setHtml(m_html);
    document()->setBaseUrl(m_page);
}

QVariant PromotionView::loadResource(int type, const QUrl& name)
{
    const QUrl url = document()->baseUrl().resolved(name);
    // A page from the web gets nothing from this machine's files.
    if (!isWebAddress(url))
        return isWebAddress(m_page) ? QVariant() : QTextBrowser::loadResource(type, name);
    if (type != QTextDocument::ImageResource)
        return {};
    const auto known = m_images.constFind(url);
    if (known != m_images.constEnd())
        return *known;
    if (!m_requested.contains(url) && m_requested.size() < kMaxImages) {
        m_requested.insert(url);
        // Not from inside the layout that asked: the fetch runs the event loop.
        QTimer::singleShot(0, this, [this, url] { fetchImage(url); });
    }
    return {};
}

void PromotionView::fetchImage(const QUrl& url)
{
    const QUrl page = m_page;
    HttpClient http;
    http.setMaxBytes(kMaxImageBytes);
    http.setTimeoutMs(kTimeoutMs);
    const QPointer<PromotionView> alive(this);
    const HttpReply reply = http.get(url);
    if (!alive || m_page != page || !reply.ok() || reply.status != 200)
        return;
    QImage image = QImage::fromData(reply.body);
    if (image.isNull())
        return;
    if (image.width() > width() || image.height() > height())
        image = image.scaled(size(), Qt::KeepAspectRatio, Qt::SmoothTransformation);
    m_images.insert(url, image);
    render();
}

} // namespace quillora
