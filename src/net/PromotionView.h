#pragma once

#include <QHash>
#include <QImage>
#include <QSet>
#include <QTextBrowser>
#include <functional>

namespace quillora
{

class HttpClient;

// The promotion page view: rich text only, so a page can run nothing. Pages and their images come
// through capped HTTP clients, images one after another; links go to the default browser, never into
// the program.
class PromotionView : public QTextBrowser
{
    Q_OBJECT
public:
    static constexpr qint64 kMaxPageBytes = 256 * 1024;
    static constexpr qint64 kMaxImageBytes = 1024 * 1024;
    static constexpr int kMaxImages = 8;
    static constexpr int kTimeoutMs = 15000;

    PromotionView(QWidget* parent, std::function<bool(const QUrl&)> openUrl);

    // A page on the web, shown when it has come; a page that cannot be fetched leaves the view as it was.
    void navigate(const QUrl& page);
    void showFile(const QString& path);
    QUrl page() const { return m_page; }

protected:
    QVariant loadResource(int type, const QUrl& name) override;

private:
    void fetchNextImage();
    void render();
    // Tab reaches the view only while its page holds a link.
    void takeTabByContent();

    std::function<bool(const QUrl&)> m_openUrl;
    HttpClient* m_pageHttp;
    HttpClient* m_imageHttp;
    QList<QUrl> m_waitingImages;
    QUrl m_page;
    QString m_html;
    QHash<QUrl, QImage> m_images;
    QSet<QUrl> m_requested;
};

} // namespace quillora
