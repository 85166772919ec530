#include "net/Http.h"

#include "Version.h"
#include "app/LocaleChoice.h"

#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QStringDecoder>
#include <QTimer>
#include <QtNetwork/qtnetworkglobal.h>
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

HttpClient::HttpClient(QObject* parent) : QObject(parent), m_manager(new QNetworkAccessManager(this)) {}

HttpClient::~HttpClient()
{
    cancel();
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

HttpReply HttpClient::get(const QUrl& url)
{
    if (busy())
        return {HttpReply::NetworkError, 0, {}, {}, QStringLiteral("another request is running"), {}, {}};
    return run(m_manager->get(makeRequest(url)));
}

HttpReply HttpClient::post(const QUrl& url, const QByteArray& body, const QByteArray& contentType)
{
    if (busy())
        return {HttpReply::NetworkError, 0, {}, {}, QStringLiteral("another request is running"), {}, {}};
    QNetworkRequest request = makeRequest(url);
    request.setHeader(QNetworkRequest::ContentTypeHeader, contentType);
    return run(m_manager->post(request, body));
}

void HttpClient::cancel()
{
    if (m_reply.isNull())
        return;
    m_cancelled = true;
    m_reply->abort();
}

HttpReply HttpClient::run(QNetworkReply* reply)
{
    m_reply = reply;
    m_cancelled = false;
    bool tooLarge = false;
    bool timedOut = false;
    const qint64 maxBytes = m_maxBytes;

    // One limit for the whole exchange: a trickle of bytes does not restart it.
    QTimer limit;
    limit.setSingleShot(true);
    connect(&limit, &QTimer::timeout, reply, [reply, &timedOut] {
        timedOut = true;
        reply->abort();
    });
    limit.start(m_timeoutMs);

    // The declared length is checked as soon as headers arrive, the received count on every chunk.
    connect(reply, &QNetworkReply::downloadProgress, reply,
            [reply, maxBytes, &tooLarge](qint64 received, qint64 total) {
                if (!tooLarge && (received > maxBytes || total > maxBytes)) {
                    tooLarge = true;
                    reply->abort();
                }
            });

    if (!reply->isFinished()) {
        QEventLoop loop;
        connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
        loop.exec();
    }

    HttpReply result;
    result.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    result.contentType = reply->rawHeader("Content-Type");
    result.retryAfter = reply->rawHeader("Retry-After");
    result.url = reply->url();
    result.errorText = reply->errorString();
    const QNetworkReply::NetworkError error = reply->error();
    if (m_cancelled)
        result.outcome = HttpReply::Cancelled;
    else if (tooLarge)
        result.outcome = HttpReply::TooLarge;
    else if (timedOut || error == QNetworkReply::TimeoutError)
        result.outcome = HttpReply::TimedOut;
    else if (error == QNetworkReply::TooManyRedirectsError)
        result.outcome = HttpReply::TooManyRedirects;
    else if (error == QNetworkReply::NoError || (result.status > 0 && isHttpStatusError(error)))
        result.outcome = HttpReply::Ok;
    else
        result.outcome = HttpReply::NetworkError;
    if (result.outcome == HttpReply::Ok)
        result.body = reply->readAll();

    m_cancelled = false;
    m_reply.clear();
    reply->deleteLater();
    return result;
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

QString GetUrlBytesText(const QUrl& url, bool requireUpdateMarker)
{
    HttpClient client;
    const HttpReply reply = client.get(url);
    if (!reply.ok())
        return {};
    const QString text = decodeWith(reply.body, legacyCodecForLocale(systemLocaleName()));
    if (requireUpdateMarker && !text.contains(QStringLiteral("Updates"), Qt::CaseSensitive))
        return {};
    return text;
}

QString GetUrlText(const QUrl& url)
{
    HttpClient client;
    const HttpReply reply = client.get(url);
    if (!reply.ok())
        return {};
    const QString text = decodeByCharset(reply.body, reply.contentType);
    if (text.contains(QStringLiteral("404 Not Found"), Qt::CaseSensitive))
        return {};
    return text;
}

} // namespace quillora
