#pragma once

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;
class QNetworkRequest;

namespace quillora
{

struct HttpReply {
    enum Outcome { Ok, NetworkError, TimedOut, TooLarge, Cancelled, TooManyRedirects };
    Outcome outcome = NetworkError;
    int status = 0; // HTTP status, 0 when none arrived
    QByteArray body;
    QByteArray contentType; // the Content-Type header as sent
    QString errorText;      // Qt's description, for logs
    QByteArray retryAfter;  // the Retry-After header as sent
    QUrl url;               // where the answer came from, after redirects
    bool ok() const { return outcome == Ok; }
};

// Blocking-style HTTP for callers on the interface thread: a local event loop runs while a request
// waits, so the window keeps painting and timers keep firing. Every request has a time limit for the
// whole exchange (however slowly the bytes come), at most five redirects and a cap on the answer's
// size; TLS is always verified; User-Agent "Quillora/<version>".
class HttpClient : public QObject
{
    Q_OBJECT
public:
    static constexpr int kDefaultTimeoutMs = 30000;
    // The service answers a text of 5,000 characters in well under 1 MiB.
    static constexpr qint64 kDefaultMaxBytes = 512 * 1024;
    static constexpr int kMaxRedirects = 5;

    explicit HttpClient(QObject* parent = nullptr);
    ~HttpClient() override;

    HttpReply get(const QUrl& url);
    HttpReply post(const QUrl& url, const QByteArray& body, const QByteArray& contentType);

    // Ends the running request, which then returns Cancelled. Safe to call when idle.
    void cancel();
    bool busy() const { return !m_reply.isNull(); }

    void setTimeoutMs(int ms) { m_timeoutMs = ms; }
    void setMaxBytes(qint64 bytes) { m_maxBytes = bytes; }

private:
    QNetworkRequest makeRequest(const QUrl& url) const;
    HttpReply run(QNetworkReply* reply);
    QNetworkAccessManager* m_manager;
    QPointer<QNetworkReply> m_reply;
    bool m_cancelled = false;
    int m_timeoutMs = kDefaultTimeoutMs;
    qint64 m_maxBytes = kDefaultMaxBytes;
};

// The body decoded by the charset of a Content-Type header ("text/html; charset=..."), else as UTF-8.
QString decodeByCharset(const QByteArray& body, const QByteArray& contentType);

// The body decoded with the locale's legacy code page; with requireUpdateMarker, "" unless it
// holds "Updates" (case-sensitive). "" on any failure. No status-code checks.
QString GetUrlBytesText(const QUrl& url, bool requireUpdateMarker);
// The body decoded by its charset (else UTF-8); "" when it holds "404 Not Found" or on any failure.
QString GetUrlText(const QUrl& url);

} // namespace quillora
