#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPair>
#include <QString>
#include <QUrl>
#include <QUrlQuery>

class QTcpServer;
class QTcpSocket;

namespace quillora::test
{

// A stand-in for the translation service and the maker's file server: HTTP/1.1 on 127.0.0.1, one
// request per connection. Runs in the caller's event loop (in-process) or as the quillora-standin
// executable, which prints "PORT <n>" and is steered by flags and the control endpoints below.
//
// Service:
//   POST /                    the form; answers by formMode (default Legacy: the old page with all
//                             three parts: translation span, TranslitMark section, dictionary list)
//   GET  /translate_a/single  the JSON interface (q, sl, tl); answers by jsonMode
//   GET  /translate_tts       a short WAV clip (audio/wav)
//   GET  /files/<name>        a registered file; otherwise 404 with a "404 Not Found" page.
//                             Registered from the start: "Update.txt" (an update list holding
//                             "Updates") and "lower.txt" (holding only "updates").
// Control (not recorded):
//   GET  /__mode?form=legacy|changed|empty|refused&json=ok|429|503|html&delay_ms=N
//                             changes any of the three; answers the current modes as JSON
//   GET  /__requests          the recorded requests as a JSON array of objects with "method",
//                             "target", "path", "headers" (object), "body" (UTF-8 text), "raw" (base64)
//   GET  /__reset             forgets the recorded requests and restores the default modes
//   POST /__files/<name>      registers the body as /files/<name> with the request's Content-Type
//
// Translations are deterministic: to "fr" a small English word list (hello -> bonjour, world ->
// monde, ...); every other word, and every word for other targets, is upper-cased. The
// romanization is the translation in lower case between "/" marks ("/bonjour monde/"); the old page
// writes its line breaks as two spaces, the way the service did.
class StandinService : public QObject
{
    Q_OBJECT
public:
    enum class FormMode {
        Legacy,  // the old layout with every marker
        Changed, // a modern page without markers
        Empty,   // 200 with no body
        Refused  // 429 with a short HTML page
    };
    enum class JsonMode { Ok, TooManyRequests, Unavailable, Html };

    struct Request {
        QByteArray method;
        QByteArray target; // path and query as sent
        QList<QPair<QByteArray, QByteArray>> headers;
        QByteArray body;
        QByteArray raw;                                  // every byte received, head and body
        QByteArray header(const QByteArray& name) const; // case-insensitive, "" when absent
        QString path() const;
        QUrlQuery query() const;
    };

    explicit StandinService(QObject* parent = nullptr);
    ~StandinService() override;

    // Listens on 127.0.0.1; port 0 picks a free one.
    bool listen(quint16 port = 0);
    quint16 port() const;
    QString baseUrl() const; // "http://127.0.0.1:<port>"
    QUrl url(const QString& pathAndQuery) const;

    void setFormMode(FormMode mode) { m_formMode = mode; }
    void setJsonMode(JsonMode mode) { m_jsonMode = mode; }
    void setDelayMs(int ms) { m_delayMs = ms; } // before every answer
    FormMode formMode() const { return m_formMode; }
    JsonMode jsonMode() const { return m_jsonMode; }
    int delayMs() const { return m_delayMs; }
    void setFile(const QString& name, const QByteArray& body,
                 const QByteArray& contentType = QByteArrayLiteral("text/plain"));

    const QList<Request>& requests() const { return m_requests; }
    int count(const QByteArray& method, const QString& path) const;
    void clearRequests() { m_requests.clear(); }
    void reset(); // requests and modes, not files

    // What the stand-in answers for `text` into `target`.
    static QString translate(const QString& text, const QString& target);
    static QString romanize(const QString& translation);
    // Dictionary entries: part of speech and words.
    static QList<QPair<QString, QStringList>> dictionary(const QString& text, const QString& target);

    static FormMode formModeFromName(const QString& name, bool* ok);
    static JsonMode jsonModeFromName(const QString& name, bool* ok);

Q_SIGNALS:
    void requestReceived(const quillora::test::StandinService::Request& request);

private:
    struct Response {
        int status = 200;
        QByteArray contentType;
        QByteArray body;
    };
    struct File {
        QByteArray body;
        QByteArray contentType;
    };

    void onNewConnection();
    void onReadyRead(QTcpSocket* socket);
    Response answer(const Request& request);
    Response control(const Request& request);
    Response formAnswer(const Request& request) const;
    Response jsonAnswer(const Request& request) const;
    QByteArray requestsJson() const;
    QByteArray modesJson() const;
    static void send(QTcpSocket* socket, const Response& response);

    QTcpServer* m_server;
    QHash<QTcpSocket*, QByteArray> m_buffers;
    QList<Request> m_requests;
    QHash<QString, File> m_files;
    FormMode m_formMode = FormMode::Legacy;
    JsonMode m_jsonMode = JsonMode::Ok;
    int m_delayMs = 0;
};

} // namespace quillora::test
