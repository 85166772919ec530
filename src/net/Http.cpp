#include "net/Http.h"

#include "Version.h"
#include "app/LocaleChoice.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QStringDecoder>
#include <QTimer>
#include <QtNetwork/qtnetworkglobal.h>
#include <utility>
#if QT_CONFIG(ssl)
#include <QSslConfiguration>
#endif

namespace quillora
{

namespace
{

// Qt maps every 4xx/5xx status to an error kind of its own (400 and 418 to protocol errors, 407 to a
// proxy error); only failures of the connection itself mean no complete answer arrived.
bool isHttpStatusError(QNetworkReply::NetworkError error)
{
    return error == QNetworkReply::ProxyAuthenticationRequiredError ||
           error >= QNetworkReply::ContentAccessDenied;
}

QString decodeWith(const QByteArray& body, const QByteArray& codecName)
{
    QStringDecoder decoder(codecName.constData());
    if (!decoder.isValid())
        decoder = QStringDecoder(QStringConverter::Latin1);
    return decoder.decode(body);
}

} // namespace

HttpClient::HttpClient(QObject* parent)
    : QObject(parent), m_manager(new QNetworkAccessManager(this)), m_limit(new QTimer(this))
{
    // One limit for the whole exchange: a trickle of bytes does not restart it.
    m_limit->setSingleShot(true);
    connect(m_limit, &QTimer::timeout, this, [this] {
        m_timedOut = true;
        if (m_reply)
            m_reply->abort();
    });
}

// No callback from here: the owner may be half destroyed.
HttpClient::~HttpClient()
{
    m_done = nullptr;
    if (m_reply) {
        m_reply->disconnect(this);
        m_reply->abort();
    }
}

QNetworkRequest HttpClient::makeRequest(const QUrl& url) const
{
    QNetworkRequest request(url);
    request.setMaximumRedirectsAllowed(kMaxRedirects);
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Quillora/") + versionText());
#if QT_CONFIG(ssl)
    QSslConfiguration tls = QSslConfiguration::defaultConfiguration();
    tls.setPeerVerifyMode(QSslSocket::VerifyPeer);
    request.setSslConfiguration(tls);
#endif
    return request;
}

bool HttpClient::get(const QUrl& url, Done done)
{
    if (busy())
        return false;
    start(m_manager->get(makeRequest(url)), std::move(done));
    return true;
}

bool HttpClient::post(const QUrl& url, const QByteArray& body, const QByteArray& contentType, Done done)
{
    if (busy())
        return false;
    QNetworkRequest request = makeRequest(url);
    request.setHeader(QNetworkRequest::ContentTypeHeader, contentType);
    start(m_manager->post(request, body), std::move(done));
    return true;
}

void HttpClient::cancel()
{
    if (m_reply.isNull())
        return;
    m_cancelled = true;
    m_reply->abort();
}

void HttpClient::start(QNetworkReply* reply, Done done)
{
    m_reply = reply;
    m_done = std::move(done);
    m_cancelled = m_timedOut = m_tooLarge = false;
    m_received = 0;
    m_total = -1;
    // The declared length is checked as soon as headers arrive, the received count on every chunk.
    connect(reply, &QNetworkReply::downloadProgress, this, [this, reply](qint64 received, qint64 total) {
        m_received = received;
        m_total = total;
        if (!m_tooLarge && (received > m_maxBytes || total > m_maxBytes)) {
            m_tooLarge = true;
            reply->abort();
        }
    });
    connect(reply, &QNetworkReply::finished, this, &HttpClient::finish);
    m_limit->start(m_timeoutMs);
}

void HttpClient::finish()
{
    QNetworkReply* reply = m_reply;
    m_limit->stop();
    HttpReply result;
    result.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    result.contentType = reply->rawHeader("Content-Type");
    result.retryAfter = reply->rawHeader("Retry-After");
    result.url = reply->url();
    result.errorText = reply->errorString();
    const QNetworkReply::NetworkError error = reply->error();
    // A body shorter than its declared length was cut short, whatever the error says.
    const bool whole = m_total < 0 || m_received >= m_total;
    if (m_cancelled)
        result.outcome = HttpReply::Cancelled;
    else if (m_tooLarge)
        result.outcome = HttpReply::TooLarge;
    else if (m_timedOut || error == QNetworkReply::TimeoutError)
        result.outcome = HttpReply::TimedOut;
    else if (error == QNetworkReply::TooManyRedirectsError)
        result.outcome = HttpReply::TooManyRedirects;
    else if (whole && (error == QNetworkReply::NoError || (result.status > 0 && isHttpStatusError(error))))
        result.outcome = HttpReply::Ok;
    else
        result.outcome = HttpReply::NetworkError;
    if (result.outcome == HttpReply::Ok)
        result.body = reply->readAll();

    m_reply.clear();
    reply->disconnect(this);
    reply->deleteLater();
    // Last: the callback may start the next request.
    if (const Done done = std::exchange(m_done, nullptr))
        done(result);
}

QString decodeByCharset(const QByteArray& body, const QByteArray& contentType)
{
    for (const QByteArray& part : contentType.split(';')) {
        const QByteArray param = part.trimmed();
        if (param.toLower().startsWith("charset=")) {
            QByteArray name = param.mid(8).trimmed();
            if (name.size() >= 2 && name.startsWith('"') && name.endsWith('"'))
                name = name.mid(1, name.size() - 2);
            QStringDecoder decoder(name.constData());
            if (decoder.isValid())
                return decoder.decode(body);
        }
    }
    return QString::fromUtf8(body);
}

QString urlBytesText(const HttpReply& reply, bool requireUpdateMarker)
{
    if (!reply.ok())
        return {};
    const QString text = decodeWith(reply.body, legacyCodecForLocale(systemLocaleName()));
    if (requireUpdateMarker && !text.contains(QStringLiteral("Updates"), Qt::CaseSensitive))
        return {};
    return text;
}

QString urlText(const HttpReply& reply)
{
    if (!reply.ok())
        return {};
    const QString text = decodeByCharset(reply.body, reply.contentType);
    if (text.contains(QStringLiteral("404 Not Found"), Qt::CaseSensitive))
        return {};
    return text;
}

} // namespace quillora
