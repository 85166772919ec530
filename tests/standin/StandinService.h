#pragma once

#include <QHash>
#include <QMap>
#include <QObject>
#include <QStringList>
#include <QTcpServer>
#include <QUrlQuery>

namespace quillora::test
{

// A stand-in for the translation service and the maker's file server on 127.0.0.1, one request per
// connection: POST / (the form, by formMode), GET /translate_a/single (JSON, by jsonMode),
// GET /files/<name> (set by setFile; otherwise a "404 Not Found" page), GET /status/<n> (a page
// with status n), GET /redirect/<n> (n redirects, then a page), GET
// /trickle/<n> (a length of n, then a byte every 50 ms) and GET /cut/<n> (the same, but the connection
// drops after 200 ms). Every request is recorded.
// Translations are deterministic: to "fr" a few English words (hello -> bonjour, world -> monde,
// cat -> chat, dog -> chien), every other word upper-cased; the romanization is the translation in
// lower case between "/" marks; the dictionary has "interjection" entries for "hello" to "fr" and a
// "phrase" entry (the translation) for everything else. Runs in the caller's event loop, or on its own
// as the quillora-standin program, which prints "PORT <n>".
class StandinService : public QObject
{
    Q_OBJECT
public:
    // The old page with all three parts, a page without its markers, 200 with no body, 429, the
    // "unusual traffic" page with 200, a redirect to that page under /sorry/.
    enum class FormMode { Legacy, Changed, Empty, Refused, HumanCheck, Sorry };
    enum class JsonMode { Ok, TooManyRequests, Unavailable, Html };
    struct Request {
        QByteArray method, target, body;      // target: path and query as sent
        QMap<QByteArray, QByteArray> headers; // names in lower case
        QByteArray header(const QByteArray& name) const { return headers.value(name.toLower()); }
        QString path() const { return QString::fromUtf8(target.split('?').value(0)); }
        QUrlQuery query() const { return QUrlQuery(QString::fromUtf8(target.split('?').value(1))); }
    };

    explicit StandinService(QObject* parent = nullptr);
    bool listen() { return m_server->listen(QHostAddress::LocalHost, 0); } // on a free port
    quint16 port() const { return m_server->serverPort(); }
    QString baseUrl() const { return QStringLiteral("http://127.0.0.1:%1").arg(port()); }
    void setFormMode(FormMode mode) { m_modes.form = mode; }
    void setJsonMode(JsonMode mode) { m_modes.json = mode; }
    void setDelayMs(int ms) { m_modes.delayMs = ms; }                           // before every answer
    void setRetryAfter(const QByteArray& value) { m_modes.retryAfter = value; } // on 429 and 503
    void setFormPage(const QByteArray& page) { m_modes.formPage = page; }       // instead of the made one
    void setFile(const QString& name, const QByteArray& body, const QByteArray& type = "text/plain")
    {
        m_files.insert(name, {type, body});
    }
    // Forgets the requests and restores the modes; files stay.
    void reset()
    {
        m_requests.clear();
        m_modes = {};
    }
    const QList<Request>& requests() const { return m_requests; }
    void clearRequests() { m_requests.clear(); }
    int count(const QByteArray& method, const QString& path) const;

    static QString translate(const QString& text, const QString& target);

Q_SIGNALS:
    void requestReceived(const quillora::test::StandinService::Request& request);

private:
    void onReadyRead(QTcpSocket* socket);
    QByteArray answer(const Request& request) const; // the whole HTTP answer

    QTcpServer* m_server;
    QList<Request> m_requests;
    QHash<QString, QPair<QByteArray, QByteArray>> m_files; // type, body
    struct {
        FormMode form = FormMode::Legacy;
        JsonMode json = JsonMode::Ok;
        int delayMs = 0;
        QByteArray retryAfter;
        QByteArray formPage;
    } m_modes;
};

} // namespace quillora::test
