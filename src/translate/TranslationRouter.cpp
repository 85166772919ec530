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

TranslationRouter::~TranslationRouter() = default;

bool TranslationRouter::translate(const TranslationRequest& request, EngineChoice choice, Done done)
{
    if (m_service->busy() || m_offline->busy())
        return false;
    if (choice == EngineChoice::Offline) {
        offlineStep(request, choice, {}, done);
        return true;
    }
    return m_service->translate(request, [this, alive = std::weak_ptr<bool>(m_alive), request, choice,
                                          done](const TranslationOutcome& outcome) {
        if (alive.expired())
            return;
        RoutedOutcome routed;
        routed.outcome = outcome;
        if (choice == EngineChoice::Service || !offlineStandsInFor(outcome.failure))
            return done(routed);
        offlineStep(request, choice, routed, done);
    });
}

// Learns the installed pairs first; for Auto the service's outcome stays unless a pair does better.
void TranslationRouter::offlineStep(const TranslationRequest& request, EngineChoice choice,
                                    RoutedOutcome routed, const Done& done)
{
    const std::weak_ptr<bool> alive = m_alive;
    m_offline->listPairs([this, alive, request, choice, routed, done](const QList<OfflinePair>&) mutable {
        if (alive.expired())
            return;
        // No pairs known after the listing: it was cancelled.
        if (!m_offline->knownPairs()) {
            if (choice == EngineChoice::Offline)
                routed.outcome.failure = TranslationFailure::Cancelled;
            return done(routed);
        }
        const std::optional<OfflinePair> pair = m_offline->pairFor(request);
        if (!pair) {
            if (choice == EngineChoice::Offline) {
                const bool blank = request.text.trimmed().isEmpty();
                routed.outcome.failure =
                    blank ? TranslationFailure::NothingToTranslate : TranslationFailure::Empty;
                routed.uncovered = !blank;
            }
            return done(routed);
        }
        m_offline->translate(*pair, request.text,
                             [alive, choice, pair, routed, done](const TranslationOutcome& offline) mutable {
                                 if (alive.expired())
                                     return;
                                 if (choice == EngineChoice::Offline || offline.ok())
                                     routed = {offline, pair, false};
                                 done(routed);
                             });
    });
}

void TranslationRouter::cancel()
{
    m_service->cancel();
    m_offline->cancel();
}

} // namespace quillora
