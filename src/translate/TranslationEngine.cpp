#include "translate/TranslationEngine.h"

#include "app/StringTable.h"

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

QString failureReasonText(TranslationFailure failure)
{
    switch (failure) {
    case TranslationFailure::None:
        return {};
    case TranslationFailure::NothingToTranslate:
        return QStringLiteral("Nothing to translate.");
    case TranslationFailure::Refused:
        return QStringLiteral("The translation service is refusing requests for now (too many requests).");
    case TranslationFailure::TimedOut:
        return QStringLiteral("The translation service did not answer in time.");
    case TranslationFailure::Network:
        return QStringLiteral("Could not reach the translation service.");
    case TranslationFailure::BadAnswer:
        return QStringLiteral("The translation service sent an answer that could not be read.");
    case TranslationFailure::Cancelled:
        return QStringLiteral("Translation cancelled.");
    case TranslationFailure::Empty:
        return QStringLiteral("The translation service returned no translation.");
    }
    return {};
}

int failureStatusOffset(TranslationFailure failure)
{
    switch (failure) {
    case TranslationFailure::None:
    case TranslationFailure::NothingToTranslate:
        return 0;
    case TranslationFailure::Refused:
        return MsgServiceRefused;
    case TranslationFailure::TimedOut:
        return MsgTimedOut;
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

TranslationOutcome TranslationEngine::translate(const TranslationRequest& request)
{
    if (trimBlanks(request.text).isEmpty())
        return failed(TranslationFailure::NothingToTranslate);

    if (!m_formAbandoned) {
        const HttpReply reply = m_http.post(
            m_addresses.formUrl(),
            buildRequestBody(request.text, request.interfaceCode, request.sourceCode, request.targetCode),
            kFormContentType);
        if (!reply.ok())
            return failed(failureOf(reply.outcome));
        const QString page = decodeByCharset(reply.body, reply.contentType);
        if (hasFormMarkers(page))
            return succeeded(parseFormResponse(page), page);
        if (isRefusal(reply.status))
            return failed(TranslationFailure::Refused, page);
        if (page.isEmpty())
            return failed(TranslationFailure::Empty);
        // A page without any of the old markers means the form has changed for good.
        m_formAbandoned = true;
    }

    const HttpReply reply =
        m_http.get(jsonRequestUrl(m_addresses.api, m_addresses.apiClient, request.text,
                                  request.sourceCode.isEmpty() ? QStringLiteral("auto") : request.sourceCode,
                                  request.targetCode, request.interfaceCode));
    if (!reply.ok())
        return failed(failureOf(reply.outcome));
    const QString answer = decodeByCharset(reply.body, reply.contentType);
    if (isRefusal(reply.status))
        return failed(TranslationFailure::Refused, answer);
    TranslationResult result;
    if (!parseJsonResponse(reply.body, &result))
        return failed(TranslationFailure::BadAnswer, answer);
    return succeeded(result, answer);
}

} // namespace quillora
