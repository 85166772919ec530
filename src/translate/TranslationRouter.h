#pragma once

#include "translate/OfflineEngine.h"
#include "translate/TranslationEngine.h"

#include <optional>

namespace quillora
{

enum class EngineChoice { Service, Offline, Auto };

struct RoutedOutcome {
    TranslationOutcome outcome;
    std::optional<OfflinePair> offlinePair; // set when the offline engine gave the outcome
};

// The service failures the offline engine stands in for: refusals (a wait not yet over included)
// and answers that never came or hold nothing. A cancel, an empty or a too long text is not one.
bool offlineStandsInFor(TranslationFailure failure);

// Chooses between the service and the installed offline pairs. Auto asks the service and turns to
// an installed pair only on a failure it stands in for; without one the service's outcome stays.
class TranslationRouter
{
public:
    TranslationRouter(TranslationEngine* service, OfflineEngine* offline);

    RoutedOutcome translate(const TranslationRequest& request, EngineChoice choice);
    void cancel();
    OfflineEngine& offline() const { return *m_offline; }

private:
    TranslationEngine* m_service;
    OfflineEngine* m_offline;
};

} // namespace quillora
