#include "translate/TranslationRouter.h"

namespace quillora
{

bool offlineStandsInFor(TranslationFailure failure)
{
    switch (failure) {
    case TranslationFailure::Refused:
    case TranslationFailure::TimedOut:
    case TranslationFailure::Network:
    case TranslationFailure::BadAnswer:
    case TranslationFailure::Empty:
    case TranslationFailure::HumanCheck:
        return true;
    case TranslationFailure::TooLong:
    case TranslationFailure::None:
    case TranslationFailure::NothingToTranslate:
    case TranslationFailure::Cancelled:
        break;
    }
    return false;
}

TranslationRouter::TranslationRouter(TranslationEngine* service, OfflineEngine* offline)
    : m_service(service), m_offline(offline)
{
}

RoutedOutcome TranslationRouter::translate(const TranslationRequest& request, EngineChoice choice)
{
    RoutedOutcome routed;
    if (choice != EngineChoice::Offline) {
        routed.outcome = m_service->translate(request);
        if (choice == EngineChoice::Service || !offlineStandsInFor(routed.outcome.failure))
            return routed;
    }
    const std::optional<OfflinePair> pair = m_offline->pairFor(request);
    if (!pair) {
        if (choice == EngineChoice::Offline)
            routed.outcome.failure = request.text.trimmed().isEmpty() ? TranslationFailure::NothingToTranslate
                                                                      : TranslationFailure::Empty;
        return routed;
    }
    const TranslationOutcome offline = m_offline->translate(*pair, request.text);
    if (choice == EngineChoice::Offline || offline.ok())
        routed = {offline, pair};
    return routed;
}

void TranslationRouter::cancel()
{
    m_service->cancel();
    m_offline->cancel();
}

} // namespace quillora
