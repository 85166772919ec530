#include "translate/TranslationEngine.h"

#include "app/StringTable.h"

#include <algorithm>

namespace quillora
{

namespace
{

const QByteArray kFormContentType = QByteArrayLiteral("application/x-www-form-urlencoded");

TranslationFailure failureOf(HttpReply::Outcome outcome)
{
    switch (outcome) {
    case HttpReply::Ok:
        return TranslationFailure::None;
    case HttpReply::TimedOut:
        return TranslationFailure::TimedOut;
    case HttpReply::Cancelled:
        return TranslationFailure::Cancelled;
    case HttpReply::TooLarge:
    case HttpReply::TooManyRedirects:
        return TranslationFailure::BadAnswer;
    case HttpReply::NetworkError:
        break;
    }
    return TranslationFailure::Network;
}

// The service says "slow down" with these; the answer body is then no translation of any kind.
bool isRefusal(int status)
{
    return status == 429 || status == 503;
}

TranslationOutcome failed(TranslationFailure failure, const QString& response = {})
{
    TranslationOutcome outcome;
    outcome.failure = failure;
    outcome.response = response;
    return outcome;
}

TranslationOutcome succeeded(const TranslationResult& result, const QString& response)
{
    if (result.translation.isEmpty() && result.romanization.isEmpty() && result.dictionary.isEmpty())
        return failed(TranslationFailure::Empty, response);
    TranslationOutcome outcome;
    outcome.result = result;
    outcome.response = response;
    return outcome;
}

} // namespace

QString trimBlanks(const QString& text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && text.at(begin) == QLatin1Char(' '))
        ++begin;
    while (end > begin && text.at(end - 1) == QLatin1Char(' '))
        --end;
    return text.mid(begin, end - begin);
}

QString localTimeText(const QDateTime& at, const QDateTime& now)
{
    const QDateTime local = at.toLocalTime();
    return local.toString(local.date() == now.toLocalTime().date() ? QStringLiteral("HH:mm:ss")
                                                                   : QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

bool isHumanCheckPage(const QString& page, const QUrl& url)
{
    static const char* const markers[] = {"/sorry/index", "g-recaptcha",
                                          "unusual traffic from your computer"};
    if (url.path().startsWith(QLatin1String("/sorry/")))
        return true;
    return std::any_of(std::begin(markers), std::end(markers), [&page](const char* marker) {
        return page.contains(QLatin1String(marker), Qt::CaseInsensitive);
    });
}

QString failureReasonText(TranslationFailure failure, bool offline)
{
    switch (failure) {
    case TranslationFailure::None:
        return {};
    case TranslationFailure::NothingToTranslate:
        return QStringLiteral("Nothing to translate.");
    case TranslationFailure::Refused:
        return QStringLiteral("The translation service is refusing requests for now (too many requests).");
    case TranslationFailure::TimedOut:
        return offline ? QStringLiteral("The offline engine (Apertium) did not answer in time.")
                       : QStringLiteral("The translation service did not answer in time.");
    case TranslationFailure::Network:
        return QStringLiteral("Could not reach the translation service.");
    case TranslationFailure::BadAnswer:
        return QStringLiteral("The translation service sent an answer that could not be read.");
    case TranslationFailure::Cancelled:
        return QStringLiteral("Translation cancelled.");
    case TranslationFailure::Empty:
        return QStringLiteral("The translation service returned no translation.");
    case TranslationFailure::HumanCheck:
        return QStringLiteral("The translation service asks to prove that a person is using it.");
    case TranslationFailure::TooLong:
        return QStringLiteral("The text is too long to send (more than %1 KiB); nothing was sent.")
            .arg(kMaxTextBytes / 1024);
    }
    return {};
}

int failureStatusOffset(const TranslationOutcome& outcome, bool offline)
{
    switch (outcome.failure) {
    case TranslationFailure::None:
    case TranslationFailure::NothingToTranslate:
        return 0;
    case TranslationFailure::Refused:
        return outcome.retryAt.isValid() ? MsgRefusedUntil : MsgServiceRefused;
    case TranslationFailure::HumanCheck:
        return MsgHumanCheck;
    case TranslationFailure::TooLong:
        return MsgTextTooLong;
    case TranslationFailure::TimedOut:
        return offline ? MsgOfflineTimedOut : MsgTimedOut;
    case TranslationFailure::Network:
        return MsgNetworkFailed;
    case TranslationFailure::BadAnswer:
        return MsgBadAnswer;
    case TranslationFailure::Cancelled:
        return MsgCancelled;
    case TranslationFailure::Empty:
        return MsgNoTranslation;
    }
    return 0;
}

TranslationEngine::TranslationEngine(ServiceAddresses addresses, QObject* parent)
    : QObject(parent), m_addresses(std::move(addresses))
{
}

void TranslationEngine::cancel()
{
    m_http.cancel();
}

bool TranslationEngine::formSkipped() const
{
    return m_formSkipsLeft > 0 && m_formSkippedUntil.isValid() && m_backoff.now() < m_formSkippedUntil;
}

TranslationOutcome TranslationEngine::refusal(const HttpReply& reply, const QString& page)
{
    TranslationFailure failure = TranslationFailure::None;
    if (isHumanCheckPage(page, reply.url))
        failure = TranslationFailure::HumanCheck;
    else if (isRefusal(reply.status))
        failure = TranslationFailure::Refused;
    if (failure == TranslationFailure::None) {
        m_backoff.answered();
        return {};
    }
    m_backoff.refused(reply.retryAfter);
    TranslationOutcome outcome = failed(failure, page);
    outcome.retryAt = m_backoff.notBefore();
    if (!outcome.retryAt.isValid())
        outcome.retryAt = m_backoff.now();
    return outcome;
}

bool TranslationEngine::translate(const TranslationRequest& request, Done done)
{
    if (busy())
        return false;
    if (trimBlanks(request.text).isEmpty()) {
        done(failed(TranslationFailure::NothingToTranslate));
        return true;
    }
    if (request.text.toUtf8().size() > kMaxTextBytes) {
        done(failed(TranslationFailure::TooLong));
        return true;
    }
    if (const QDateTime wait = m_backoff.notBefore(); wait.isValid()) {
        TranslationOutcome outcome = failed(TranslationFailure::Refused);
        outcome.retryAt = wait;
        done(outcome);
        return true;
    }
    if (formSkipped()) {
        --m_formSkipsLeft;
        askJson(request, std::move(done));
        return true;
    }
    m_http.post(m_addresses.formUrl(),
                buildRequestBody(request.text, request.interfaceCode, request.sourceCode, request.targetCode),
                kFormContentType, [this, request, done = std::move(done)](const HttpReply& reply) {
                    formAnswered(request, reply, done);
                });
    return true;
}

void TranslationEngine::formAnswered(const TranslationRequest& request, const HttpReply& reply,
                                     const Done& done)
{
    if (!reply.ok())
        return done(failed(failureOf(reply.outcome)));
    const QString page = decodeByCharset(reply.body, reply.contentType);
    if (hasFormMarkers(page)) {
        m_backoff.answered();
        return done(succeeded(parseFormResponse(page), page));
    }
    if (TranslationOutcome refused = refusal(reply, page); !refused.ok())
        return done(refused);
    if (page.isEmpty())
        return done(failed(TranslationFailure::Empty));
    // A page without any of the old markers: the form has changed, perhaps only for a while.
    m_formSkippedUntil = m_backoff.now().addSecs(kFormRetryMinutes * 60);
    m_formSkipsLeft = kFormRetryRequests;
    askJson(request, done);
}

void TranslationEngine::askJson(const TranslationRequest& request, Done done)
{
    m_http.get(jsonRequestUrl(m_addresses.api, m_addresses.apiClient, request.text,
                              request.sourceCode.isEmpty() ? QStringLiteral("auto") : request.sourceCode,
                              request.targetCode, request.interfaceCode),
               [this, done = std::move(done)](const HttpReply& reply) { done(jsonAnswered(reply)); });
}

TranslationOutcome TranslationEngine::jsonAnswered(const HttpReply& reply)
{
    if (!reply.ok())
        return failed(failureOf(reply.outcome));
    const QString answer = decodeByCharset(reply.body, reply.contentType);
    if (TranslationOutcome refused = refusal(reply, answer); !refused.ok())
        return refused;
    TranslationResult result;
    if (!parseJsonResponse(reply.body, &result))
        return failed(TranslationFailure::BadAnswer, answer);
    return succeeded(result, answer);
}

} // namespace quillora
