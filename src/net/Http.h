#pragma once

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QUrl>
#include <functional>

class QNetworkAccessManager;
class QNetworkReply;
class QNetworkRequest;
class QTimer;

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

// HTTP for callers on the interface thread, one request at a time per client: get() and post()
// return at once and the answer comes to the callback, never from inside the call that started it.
// Every request has a time limit for the whole exchange (however slowly the bytes come), at most five
// redirects and a cap on the answer's size; TLS is always verified; User-Agent "Quillora/<version>".
// Only a complete answer is Ok. Destroying the client ends its request without calling back.
class HttpClient : public QObject
{
    Q_OBJECT
public:
    using Done = std::function<void(const HttpReply&)>;
    static constexpr int kDefaultTimeoutMs = 30000;
    // The service answers a text of 5,000 characters in well under 1 MiB.
    static constexpr qint64 kDefaultMaxBytes = 512 * 1024;
    static constexpr int kMaxRedirects = 5;

    explicit HttpClient(QObject* parent = nullptr);
    ~HttpClient() override;

    // False, with nothing sent and no callback, while another request runs.
    bool get(const QUrl& url, Done done);
    bool post(const QUrl& url, const QByteArray& body, const QByteArray& contentType, Done done);

    // Ends the running request, whose callback then gets Cancelled. Safe to call when idle.
    void cancel();
    bool busy() const { return !m_reply.isNull(); }

    void setTimeoutMs(int ms) { m_timeoutMs = ms; }
    void setMaxBytes(qint64 bytes) { m_maxBytes = bytes; }

private:
    QNetworkRequest makeRequest(const QUrl& url) const;
    void start(QNetworkReply* reply, Done done);
    void finish();

    QNetworkAccessManager* m_manager;
    QTimer* m_limit;
    QPointer<QNetworkReply> m_reply;
    Done m_done;
    bool m_cancelled = false;
    bool m_timedOut = false;
    bool m_tooLarge = false;
    qint64 m_received = 0;
    qint64 m_total = -1;
    int m_timeoutMs = kDefaultTimeoutMs;
    qint64 m_maxBytes = kDefaultMaxBytes;
};

// The body decoded by the charset of a Content-Type header ("text/html; charset=..."), else as UTF-8.
QString decodeByCharset(const QByteArray& body, const QByteArray& contentType);

// An answer's body decoded with the locale's legacy code page; with requireUpdateMarker, "" unless
// it holds "Updates" (case-sensitive). "" for a failed request. No status-code checks.
QString urlBytesText(const HttpReply& reply, bool requireUpdateMarker);
// An answer's body decoded by its charset (else UTF-8); "" when it holds "404 Not Found" or for a
// failed request.
QString urlText(const HttpReply& reply);

} // namespace quillora
