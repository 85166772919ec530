#include "standin/StandinService.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QTimer>
#include <algorithm>

namespace quillora::test
{

namespace
{

QByteArray reply(int status, const QByteArray& body, const QByteArray& type = "text/html; charset=UTF-8",
                 const QByteArray& headers = {})
{
    return "HTTP/1.1 " + QByteArray::number(status) + (status == 200 ? " OK" : " Error") +
           "\r\nContent-Type: " + type + "\r\nContent-Length: " + QByteArray::number(body.size()) +
           "\r\nConnection: close\r\n" + headers + "\r\n" + body;
}

QByteArray page(const QByteArray& title)
{
    return "<html><head><title>" + title + "</title></head><body><h1>" + title + "</h1></body></html>";
}

QString escaped(const QString& text)
{
    return text.toHtmlEscaped().replace(u'\n', QStringLiteral("<br>"));
}

// Part of speech and words for each entry.
QList<QPair<QString, QStringList>> dictionary(const QString& text, const QString& target)
{
    if (target == u"fr" && text.trimmed().toLower() == u"hello")
        return {{"interjection", {"bonjour", "salut", "allô"}}};
    return {{"phrase", {StandinService::translate(text, target)}}};
}

} // namespace

StandinService::StandinService(QObject* parent) : QObject(parent), m_server(new QTcpServer(this))
{
    connect(m_server, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket* socket = m_server->nextPendingConnection()) {
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { onReadyRead(socket); });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
}

int StandinService::count(const QByteArray& method, const QString& path) const
{
    return int(std::count_if(m_requests.begin(), m_requests.end(),
                             [&](const Request& r) { return r.method == method && r.path() == path; }));
}

QString StandinService::translate(const QString& text, const QString& target)
{
    static const QHash<QString, QString> french{
        {"hello", "bonjour"}, {"world", "monde"}, {"cat", "chat"}, {"dog", "chien"}};
    static const QRegularExpression word("\\w+", QRegularExpression::UseUnicodePropertiesOption);
    const QString in = QString(text).replace("\r\n", "\n").trimmed();
    QString out;
    qsizetype last = 0;
    for (const QRegularExpressionMatch& m : word.globalMatch(in)) {
        const QString known = target == u"fr" ? french.value(m.captured().toLower()) : QString();
        out += in.mid(last, m.capturedStart() - last) + (known.isEmpty() ? m.captured().toUpper() : known);
        last = m.capturedEnd();
    }
    return out + in.mid(last);
}

void StandinService::onReadyRead(QTcpSocket* socket)
{
    const QByteArray data = socket->peek(socket->bytesAvailable());
    const qsizetype headEnd = data.indexOf("\r\n\r\n");
    if (headEnd < 0)
        return;
    Request request;
    const QList<QByteArray> lines = data.left(headEnd).split('\n');
    const QList<QByteArray> first = lines.value(0).trimmed().split(' ');
    request.method = first.value(0);
    request.target = first.value(1);
    for (const QByteArray& line : lines.mid(1)) {
        const qsizetype colon = line.indexOf(':');
        request.headers.insert(line.left(colon).trimmed().toLower(), line.mid(colon + 1).trimmed());
    }
    const int length = request.header("Content-Length").toInt();
    if (data.size() < headEnd + 4 + length)
        return;
    request.body = data.mid(headEnd + 4, length);
    socket->disconnect(this); // one request per connection
    m_requests.append(request);
    Q_EMIT requestReceived(request);
    const QString kind = request.path().section(u'/', 1, 1);
    if (kind == u"trickle" || kind == u"cut") {
        socket->write("HTTP/1.1 200 OK\r\nContent-Length: " + request.path().section(u'/', 2).toUtf8() +
                      "\r\n\r\n");
        auto* drip = new QTimer(socket);
        connect(drip, &QTimer::timeout, socket, [socket] { socket->write("x"); });
        drip->start(50);
        if (kind == u"cut")
            QTimer::singleShot(200, socket, &QTcpSocket::abort);
        return;
    }
    QTimer::singleShot(m_modes.delayMs, socket, [socket, out = answer(request)] {
        socket->write(out);
        socket->disconnectFromHost();
    });
}

QByteArray StandinService::answer(const Request& request) const
{
    const QString path = request.path();
    const bool form = request.method == "POST" && path == u"/";
    const QUrlQuery query = form ? QUrlQuery(QString::fromUtf8(request.body)) : request.query();
    const QString text = query.queryItemValue(form ? "text" : "q", QUrl::FullyDecoded);
    const QString target = query.queryItemValue("tl");
    const QString translation = translate(text, target);
    const QString romanization = u'/' + translation.toLower() + u'/';
    const QByteArray retryAfter =
        m_modes.retryAfter.isEmpty() ? QByteArray() : "Retry-After: " + m_modes.retryAfter + "\r\n";
    if (form && !m_modes.formPage.isEmpty() && m_modes.form != FormMode::Refused)
        return reply(200, m_modes.formPage);
    if (form && m_modes.form != FormMode::Legacy) {
        // Changed, Empty, Refused, HumanCheck, Sorry.
        const std::tuple<int, QByteArray, QByteArray> answers[] = {
            {200, "<html><body><c-wiz></c-wiz></body></html>", {}},
            {200, {}, {}},
            {429, page("429 Too Many Requests"), retryAfter},
            {200,
             "<html><body><div id=infoDiv>Our systems have detected unusual traffic from your computer "
             "network.</div><form action=\"index\"><div class=\"g-recaptcha\"></div></form></body></html>",
             {}},
            {302, {}, "Location: /sorry/index?continue=%2F\r\n"}};
        const auto& [status, body, headers] = answers[int(m_modes.form) - 1];
        return reply(status, body, "text/html", headers);
    }
    if (path.startsWith(u"/sorry/"))
        return reply(429, "<html><body>Please show you're not a robot</body></html>", "text/html",
                     retryAfter);
    if (path.startsWith(u"/redirect/")) {
        const QString rest = path.mid(10);
        if (rest == u"0")
            return reply(200, page("arrived"));
        return reply(302, {}, "text/html",
                     "Location: /redirect/" + QByteArray::number(rest.toInt() - 1) + "\r\n");
    }
    if (form) {
        // The service wrote romanization line breaks as two spaces and left the dictionary unescaped.
        QString html =
            "<html><body><div id=result_box><span title=\"" + escaped(text) +
            "\" onmouseover=\"this.style.backgroundColor='#ebeff9'\" "
            "onmouseout=\"this.style.backgroundColor='#fff'\">" +
            escaped(translation) +
            "</span></span></div><div id=res-translit class=translit dir=ltr style=\"text-align:\">" +
            escaped(QString(romanization).replace(u'\n', "  ")) + "</div><h3>Dictionary</h3><ol>";
        for (const auto& [partOfSpeech, words] : dictionary(text, target))
            html += "<li>" + partOfSpeech + "<div><div>" + words.join("</div><div>").replace(u'\n', u' ') +
                    "</div></div></li>";
        return reply(200, (html + "</ol></body></html>").toUtf8());
    }
    if (request.method == "GET" && path == u"/translate_a/single") {
        static const int status[] = {200, 429, 503, 200};
        if (m_modes.json != JsonMode::Ok)
            return reply(status[int(m_modes.json)],
                         page(m_modes.json == JsonMode::Html ? "Before you continue" : "Error"), "text/html",
                         m_modes.json == JsonMode::Html ? QByteArray() : retryAfter);
        QJsonArray entries;
        for (const auto& [partOfSpeech, words] : dictionary(text, target))
            entries.append(QJsonArray{partOfSpeech, QJsonArray::fromStringList(words)});
        const QJsonArray sentences{QJsonArray{translation, text},
                                   QJsonArray{QJsonValue(), QJsonValue(), romanization}};
        return reply(200, QJsonDocument(QJsonArray{sentences, entries, "en"}).toJson(QJsonDocument::Compact),
                     "application/json; charset=UTF-8");
    }
    if (path.startsWith(u"/status/"))
        return reply(path.mid(8).toInt(), page("status " + path.mid(8).toUtf8()));
    const auto file = m_files.constFind(path.mid(7));
    if (request.method == "GET" && path.startsWith(u"/files/") && file != m_files.constEnd())
        return reply(200, file->second, file->first);
    return reply(404, page("404 Not Found"));
}

} // namespace quillora::test
