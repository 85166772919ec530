#include "net/PromotionView.h"

#include "net/Http.h"
#include "net/WebLink.h"

#include <QTextBlock>
#include <QTimer>

namespace quillora
{

PromotionView::PromotionView(QWidget* parent, std::function<bool(const QUrl&)> openUrl)
    : QTextBrowser(parent), m_openUrl(std::move(openUrl)), m_pageHttp(new HttpClient(this)),
      m_imageHttp(new HttpClient(this))
{
    m_pageHttp->setMaxBytes(kMaxPageBytes);
    m_pageHttp->setTimeoutMs(kTimeoutMs);
    m_imageHttp->setMaxBytes(kMaxImageBytes);
    m_imageHttp->setTimeoutMs(kTimeoutMs);
    setObjectName(QStringLiteral("WebBrowser3"));
    setOpenLinks(false);
    setOpenExternalLinks(false);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::ClickFocus);
    connect(this, &QTextBrowser::anchorClicked, this,
            [this](const QUrl& link) { openWebAddress(document()->baseUrl().resolved(link), m_openUrl); });
}

void PromotionView::navigate(const QUrl& page)
{
    if (!isWebAddress(page))
        return;
    m_pageHttp->cancel();
    m_pageHttp->get(page, [this, page](const HttpReply& reply) {
        if (!reply.ok() || reply.status != 200)
            return;
        m_page = page;
        m_html = decodeByCharset(reply.body, reply.contentType);
        m_images.clear();
        m_requested.clear();
        m_waitingImages.clear();
        m_imageHttp->cancel();
        render();
    });
}

void PromotionView::showFile(const QString& path)
{
    m_page = QUrl::fromLocalFile(path);
    m_html.clear();
    setSource(m_page);
    takeTabByContent();
}

void PromotionView::render()
{
    document()->setBaseUrl(m_page);
    setHtml(m_html);
    document()->setBaseUrl(m_page);
    takeTabByContent();
}

void PromotionView::takeTabByContent()
{
    bool link = false;
    for (QTextBlock block = document()->begin(); block.isValid() && !link; block = block.next()) {
        for (auto it = block.begin(); !it.atEnd() && !link; ++it)
            link = !it.fragment().charFormat().anchorHref().isEmpty();
    }
    setFocusPolicy(link ? Qt::StrongFocus : Qt::ClickFocus);
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
        m_waitingImages.append(url);
        // Not from inside the layout that asked: an answer redoes the layout.
        QTimer::singleShot(0, this, &PromotionView::fetchNextImage);
    }
    return {};
}

void PromotionView::fetchNextImage()
{
    if (m_imageHttp->busy() || m_waitingImages.isEmpty())
        return;
    const QUrl url = m_waitingImages.takeFirst();
    m_imageHttp->get(url, [this, url, page = m_page](const HttpReply& reply) {
        if (m_page == page && reply.ok() && reply.status == 200) {
            QImage image = QImage::fromData(reply.body);
            if (!image.isNull()) {
                if (image.width() > width() || image.height() > height())
                    image = image.scaled(size(), Qt::KeepAspectRatio, Qt::SmoothTransformation);
                m_images.insert(url, image);
                render();
            }
        }
        fetchNextImage();
    });
}

} // namespace quillora
