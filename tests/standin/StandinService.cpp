#include "standin/StandinService.h"

#include <QHostAddress>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QPointer>
#include <QRegularExpression>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <algorithm>

namespace quillora::test
{

namespace
{

const QByteArray kHtml = QByteArrayLiteral("text/html; charset=UTF-8");

const QHash<QString, QString>& frenchWords()
{
    static const QHash<QString, QString> words = {
        {QStringLiteral("hello"), QStringLiteral("bonjour")},
        {QStringLiteral("world"), QStringLiteral("monde")},
        {QStringLiteral("cat"), QStringLiteral("chat")},
        {QStringLiteral("dog"), QStringLiteral("chien")},
        {QStringLiteral("house"), QStringLiteral("maison")},
        {QStringLiteral("book"), QStringLiteral("livre")},
        {QStringLiteral("water"), QStringLiteral("eau")},
        {QStringLiteral("good"), QStringLiteral("bon")},
        {QStringLiteral("morning"), QStringLiteral("matin")},
        {QStringLiteral("thanks"), QStringLiteral("merci")},
        {QStringLiteral("yes"), QStringLiteral("oui")},
        {QStringLiteral("no"), QStringLiteral("non")},
    };
    return words;
}

const QHash<QString, QPair<QString, QStringList>>& frenchEntries()
{
    static const QHash<QString, QPair<QString, QStringList>> entries = {
        {QStringLiteral("hello"),
         {QStringLiteral("interjection"),
          {QStringLiteral("bonjour"), QStringLiteral("salut"), QStringLiteral("allô")}}},
        {QStringLiteral("cat"), {QStringLiteral("noun"), {QStringLiteral("chat"), QStringLiteral("chatte")}}},
        {QStringLiteral("dog"),
         {QStringLiteral("noun"), {QStringLiteral("chien"), QStringLiteral("chienne")}}},
    };
    return entries;
}

QString escapeHtml(const QString& text)
{
    QString out = text.toHtmlEscaped();
    out.replace(QLatin1Char('\''), QStringLiteral("&#39;"));
    out.replace(QLatin1Char('\n'), QStringLiteral("<br>"));
    return out;
}

QString formField(const QByteArray& body, const QByteArray& name)
{
    for (const QByteArray& pair : body.split('&')) {
        const int eq = pair.indexOf('=');
        if (eq < 0 || pair.left(eq) != name)
            continue;
        QByteArray value = pair.mid(eq + 1);
        value.replace('+', ' ');
        return QString::fromUtf8(QByteArray::fromPercentEncoding(value));
    }
    return {};
}

QByteArray statusReason(int status)
{
    switch (status) {
    case 200:
        return "OK";
    case 400:
        return "Bad Request";
    case 404:
        return "Not Found";
    case 429:
        return "Too Many Requests";
    case 503:
        return "Service Unavailable";
    }
    return "Status";
}

QByteArray notFoundPage()
{
    return QByteArrayLiteral("<html><head><title>404 Not Found</title></head><body><h1>Not Found</h1>"
                             "<p>The requested URL was not found on this server.</p></body></html>");
}

QByteArray errorPage(int status)
{
    const QByteArray title = QByteArray::number(status) + ' ' + statusReason(status);
    return "<html><head><title>" + title + "</title></head><body><h1>" + title +
           "</h1><p>Our systems have detected unusual traffic from your computer network.</p></body></html>";
}

// 0.1 s of silence, 8 kHz mono 8-bit PCM.
QByteArray wavClip()
{
    const quint32 samples = 800;
    QByteArray wav;
    const auto u32 = [&wav](quint32 v) {
        for (int i = 0; i < 4; ++i)
            wav.append(char((v >> (8 * i)) & 0xff));
    };
    const auto u16 = [&wav](quint16 v) {
        wav.append(char(v & 0xff));
        wav.append(char(v >> 8));
    };
    wav += "RIFF";
    u32(36 + samples);
    wav += "WAVEfmt ";
    u32(16);
    u16(1);    // PCM
    u16(1);    // mono
    u32(8000); // sample rate
    u32(8000); // byte rate
    u16(1);    // block align
    u16(8);    // bits per sample
    wav += "data";
    u32(samples);
    wav.append(QByteArray(int(samples), char(0x80)));
    return wav;
}

} // namespace

QByteArray StandinService::Request::header(const QByteArray& name) const
{
    for (const auto& h : headers) {
        if (h.first.compare(name, Qt::CaseInsensitive) == 0)
            return h.second;
    }
    return {};
}

QString StandinService::Request::path() const
{
    const int q = target.indexOf('?');
    return QString::fromUtf8(q < 0 ? target : target.left(q));
}

QUrlQuery StandinService::Request::query() const
{
    const int q = target.indexOf('?');
    return QUrlQuery(q < 0 ? QString() : QString::fromUtf8(target.mid(q + 1)));
}

StandinService::StandinService(QObject* parent) : QObject(parent), m_server(new QTcpServer(this))
{
    connect(m_server, &QTcpServer::newConnection, this, &StandinService::onNewConnection);
    setFile(QStringLiteral("Update.txt"),
            QByteArrayLiteral("2.1.92|1|http://127.0.0.1/download|Updates:\r\n- Faster translation.\r\n"));
    setFile(QStringLiteral("lower.txt"),
            QByteArrayLiteral("2.1.92|1|http://127.0.0.1/download|updates only\r\n"));
}

StandinService::~StandinService() = default;

bool StandinService::listen(quint16 port)
{
    return m_server->listen(QHostAddress::LocalHost, port);
}

quint16 StandinService::port() const
{
    return m_server->serverPort();
}

QString StandinService::baseUrl() const
{
    return QStringLiteral("http://127.0.0.1:%1").arg(port());
}

QUrl StandinService::url(const QString& pathAndQuery) const
{
    return QUrl(baseUrl() + pathAndQuery);
}

void StandinService::setFile(const QString& name, const QByteArray& body, const QByteArray& contentType)
{
    m_files.insert(name, {body, contentType});
}

int StandinService::count(const QByteArray& method, const QString& path) const
{
    return int(std::count_if(m_requests.begin(), m_requests.end(),
                             [&](const Request& r) { return r.method == method && r.path() == path; }));
}

void StandinService::reset()
{
    m_requests.clear();
    m_formMode = FormMode::Legacy;
    m_jsonMode = JsonMode::Ok;
    m_delayMs = 0;
}

QString StandinService::translate(const QString& text, const QString& target)
{
    static const QRegularExpression word(QStringLiteral("\\w+"),
                                         QRegularExpression::UseUnicodePropertiesOption);
    QString normalized = text;
    normalized.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    QString out;
    qsizetype last = 0;
    for (auto it = word.globalMatch(normalized); it.hasNext();) {
        const QRegularExpressionMatch m = it.next();
        out += normalized.mid(last, m.capturedStart() - last);
        const QString found =
            target == QLatin1String("fr") ? frenchWords().value(m.captured().toLower()) : QString();
        out += found.isEmpty() ? m.captured().toUpper() : found;
        last = m.capturedEnd();
    }
    out += normalized.mid(last);
    return out.trimmed();
}

QString StandinService::romanize(const QString& translation)
{
    return QLatin1Char('/') + translation.toLower() + QLatin1Char('/');
}

QList<QPair<QString, QStringList>> StandinService::dictionary(const QString& text, const QString& target)
{
    const QString key = text.trimmed().toLower();
    if (target == QLatin1String("fr") && frenchEntries().contains(key))
        return {frenchEntries().value(key)};
    return {{QStringLiteral("phrase"), {translate(text, target)}}};
}

StandinService::FormMode StandinService::formModeFromName(const QString& name, bool* ok)
{
    *ok = true;
    if (name == QLatin1String("legacy"))
        return FormMode::Legacy;
    if (name == QLatin1String("changed"))
        return FormMode::Changed;
    if (name == QLatin1String("empty"))
        return FormMode::Empty;
    if (name == QLatin1String("refused"))
        return FormMode::Refused;
    *ok = false;
    return FormMode::Legacy;
}

StandinService::JsonMode StandinService::jsonModeFromName(const QString& name, bool* ok)
{
    *ok = true;
    if (name == QLatin1String("ok"))
        return JsonMode::Ok;
    if (name == QLatin1String("429"))
        return JsonMode::TooManyRequests;
    if (name == QLatin1String("503"))
        return JsonMode::Unavailable;
    if (name == QLatin1String("html"))
        return JsonMode::Html;
    *ok = false;
    return JsonMode::Ok;
}

void StandinService::onNewConnection()
{
    while (QTcpSocket* socket = m_server->nextPendingConnection()) {
        m_buffers.insert(socket, {});
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { onReadyRead(socket); });
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            m_buffers.remove(socket);
            socket->deleteLater();
        });
    }
}

void StandinService::onReadyRead(QTcpSocket* socket)
{
    if (!m_buffers.contains(socket)) {
        socket->readAll(); // one request per connection; the answer is on its way
        return;
    }
    QByteArray& buffer = m_buffers[socket];
    buffer += socket->readAll();
    const int headEnd = buffer.indexOf("\r\n\r\n");
    if (headEnd < 0)
        return;

    Request request;
    const QList<QByteArray> lines = buffer.left(headEnd).split('\n');
    const QList<QByteArray> requestLine = lines.value(0).trimmed().split(' ');
    request.method = requestLine.value(0);
    request.target = requestLine.value(1);
    for (int i = 1; i < lines.size(); ++i) {
        const int colon = lines[i].indexOf(':');
        if (colon > 0)
            request.headers.append({lines[i].left(colon).trimmed(), lines[i].mid(colon + 1).trimmed()});
    }
    const int length = request.header("Content-Length").toInt();
    if (buffer.size() < headEnd + 4 + length)
        return;
    request.body = buffer.mid(headEnd + 4, length);
    request.raw = buffer.left(headEnd + 4 + length);
    m_buffers.remove(socket);

    if (request.path().startsWith(QLatin1String("/__"))) {
        send(socket, control(request));
        return;
    }
    m_requests.append(request);
    Q_EMIT requestReceived(request);
    const Response response = answer(request);
    if (m_delayMs <= 0) {
        send(socket, response);
        return;
    }
    QTimer::singleShot(m_delayMs, socket, [socket, response] { send(socket, response); });
}

void StandinService::send(QTcpSocket* socket, const Response& response)
{
    QByteArray out =
        "HTTP/1.1 " + QByteArray::number(response.status) + ' ' + statusReason(response.status) + "\r\n";
    if (!response.contentType.isEmpty())
        out += "Content-Type: " + response.contentType + "\r\n";
    out += "Content-Length: " + QByteArray::number(response.body.size()) + "\r\nConnection: close\r\n\r\n";
    out += response.body;
    socket->write(out);
    socket->disconnectFromHost();
}

StandinService::Response StandinService::answer(const Request& request)
{
    const QString path = request.path();
    if (request.method == "POST" && path == QLatin1String("/"))
        return formAnswer(request);
    if (request.method == "GET" && path == QLatin1String("/translate_a/single"))
        return jsonAnswer(request);
    if (request.method == "GET" && path == QLatin1String("/translate_tts"))
        return {200, QByteArrayLiteral("audio/wav"), wavClip()};
    if (request.method == "GET" && path.startsWith(QLatin1String("/files/"))) {
        const auto file = m_files.constFind(path.mid(7));
        if (file != m_files.constEnd())
            return {200, file->contentType, file->body};
    }
    return {404, kHtml, notFoundPage()};
}

StandinService::Response StandinService::control(const Request& request)
{
    const QString path = request.path();
    if (path == QLatin1String("/__requests"))
        return {200, QByteArrayLiteral("application/json"), requestsJson()};
    if (path == QLatin1String("/__reset")) {
        reset();
        return {200, QByteArrayLiteral("application/json"), modesJson()};
    }
    if (path == QLatin1String("/__mode")) {
        const QUrlQuery query = request.query();
        bool ok = true;
        if (query.hasQueryItem(QStringLiteral("form"))) {
            const FormMode mode = formModeFromName(query.queryItemValue(QStringLiteral("form")), &ok);
            if (ok)
                m_formMode = mode;
        }
        if (ok && query.hasQueryItem(QStringLiteral("json"))) {
            const JsonMode mode = jsonModeFromName(query.queryItemValue(QStringLiteral("json")), &ok);
            if (ok)
                m_jsonMode = mode;
        }
        if (ok && query.hasQueryItem(QStringLiteral("delay_ms"))) {
            const int delay = query.queryItemValue(QStringLiteral("delay_ms")).toInt(&ok);
            if (ok)
                m_delayMs = delay;
        }
        if (!ok)
            return {400, QByteArrayLiteral("text/plain"), QByteArrayLiteral("unknown mode\n")};
        return {200, QByteArrayLiteral("application/json"), modesJson()};
    }
    if (path.startsWith(QLatin1String("/__files/")) && request.method == "POST") {
        const QByteArray type = request.header("Content-Type");
        setFile(path.mid(9), request.body, type.isEmpty() ? QByteArrayLiteral("text/plain") : type);
        return {200, QByteArrayLiteral("text/plain"), QByteArrayLiteral("ok\n")};
    }
    return {404, kHtml, notFoundPage()};
}

StandinService::Response StandinService::formAnswer(const Request& request) const
{
    switch (m_formMode) {
    case FormMode::Empty:
        return {200, kHtml, {}};
    case FormMode::Refused:
        return {429, kHtml, errorPage(429)};
    case FormMode::Changed:
        return {
            200, kHtml,
            QByteArrayLiteral("<!doctype html><html lang=\"en\"><head><meta charset=\"utf-8\">"
                              "<title>Google Translate</title></head><body><c-wiz jsrenderer=\"rx\">"
                              "<div class=\"app\"></div></c-wiz><script>window.WIZ_global_data={};</script>"
                              "</body></html>")};
    case FormMode::Legacy:
        break;
    }
    const QString text = formField(request.body, "text");
    const QString target = formField(request.body, "tl");
    const QString translation = translate(text, target);
    QString dict;
    for (const auto& entry : dictionary(text, target)) {
        // The service left the dictionary unescaped; line breaks become spaces there.
        dict += QStringLiteral("<li>") + entry.first + QStringLiteral("<div>");
        for (const QString& w : entry.second)
            dict += QStringLiteral("<div>") + QString(w).replace(QLatin1Char('\n'), QLatin1Char(' ')) +
                    QStringLiteral("</div>");
        dict += QStringLiteral("</div></li>");
    }
    const QString page =
        QStringLiteral("<html><head><meta http-equiv=content-type content=\"text/html; charset=UTF-8\">"
                       "<title>Google Translate</title></head><body><form action=\"/\" method=post></form>"
                       "<div id=gt-res-content class=almost_half_cell><div dir=\"ltr\" style=\"zoom:1\">"
                       "<span id=result_box class=\"short_text\"><span title=\"") +
        escapeHtml(text) +
        QStringLiteral("\" onmouseover=\"this.style.backgroundColor='#ebeff9'\" "
                       "onmouseout=\"this.style.backgroundColor='#fff'\">") +
        escapeHtml(translation) + QStringLiteral("</span></span></div></div>") +
        QStringLiteral("<div id=res-translit class=translit dir=ltr style=\"text-align:\">") +
        escapeHtml(romanize(translation).replace(QLatin1Char('\n'), QStringLiteral("  "))) +
        QStringLiteral("</div><div id=gt-res-dict class=gt-cd-c><div class=gt-cd-t><h3>Dictionary</h3><ol>") +
        dict + QStringLiteral("</ol></div></div></body></html>");
    return {200, kHtml, page.toUtf8()};
}

StandinService::Response StandinService::jsonAnswer(const Request& request) const
{
    switch (m_jsonMode) {
    case JsonMode::TooManyRequests:
        return {429, kHtml, errorPage(429)};
    case JsonMode::Unavailable:
        return {503, kHtml, errorPage(503)};
    case JsonMode::Html:
        return {200, kHtml,
                QByteArrayLiteral("<html><head><title>Before you continue</title></head>"
                                  "<body><form action=\"/consent\"></form></body></html>")};
    case JsonMode::Ok:
        break;
    }
    const QUrlQuery query = request.query();
    const QString text = query.queryItemValue(QStringLiteral("q"), QUrl::FullyDecoded);
    const QString target = query.queryItemValue(QStringLiteral("tl"), QUrl::FullyDecoded);
    QString source = query.queryItemValue(QStringLiteral("sl"), QUrl::FullyDecoded);
    if (source.isEmpty() || source == QLatin1String("auto"))
        source = QStringLiteral("en");
    const QString translation = translate(text, target);
    const QJsonArray sentences{QJsonArray{translation, text, QJsonValue(), QJsonValue(), 10},
                               QJsonArray{QJsonValue(), QJsonValue(), romanize(translation), QJsonValue()}};
    QJsonArray entries;
    for (const auto& entry : dictionary(text, target))
        entries.append(
            QJsonArray{entry.first, QJsonArray::fromStringList(entry.second), QJsonArray(), text, 1});
    const QJsonArray root{sentences, entries, source};
    return {200, QByteArrayLiteral("application/json; charset=UTF-8"),
            QJsonDocument(root).toJson(QJsonDocument::Compact)};
}

QByteArray StandinService::requestsJson() const
{
    QJsonArray list;
    for (const Request& r : m_requests) {
        QJsonObject headers;
        for (const auto& h : r.headers)
            headers.insert(QString::fromLatin1(h.first), QString::fromLatin1(h.second));
        list.append(QJsonObject{{QStringLiteral("method"), QString::fromLatin1(r.method)},
                                {QStringLiteral("target"), QString::fromUtf8(r.target)},
                                {QStringLiteral("path"), r.path()},
                                {QStringLiteral("headers"), headers},
                                {QStringLiteral("body"), QString::fromUtf8(r.body)},
                                {QStringLiteral("raw"), QString::fromLatin1(r.raw.toBase64())}});
    }
    return QJsonDocument(list).toJson(QJsonDocument::Compact);
}

QByteArray StandinService::modesJson() const
{
    static const char* const formNames[] = {"legacy", "changed", "empty", "refused"};
    static const char* const jsonNames[] = {"ok", "429", "503", "html"};
    const QJsonObject modes{{QStringLiteral("form"), QLatin1String(formNames[int(m_formMode)])},
                            {QStringLiteral("json"), QLatin1String(jsonNames[int(m_jsonMode)])},
                            {QStringLiteral("delay_ms"), m_delayMs}};
    return QJsonDocument(modes).toJson(QJsonDocument::Compact);
}

} // namespace quillora::test
