#pragma once

#include "translate/OfflineEngine.h"
#include "translate/TranslationEngine.h"

#include <functional>
#include <memory>
#include <optional>

namespace quillora
{

enum class EngineChoice { Service, Offline, Auto };

struct RoutedOutcome {
    TranslationOutcome outcome;
    std::optional<OfflinePair> offlinePair; // set when the offline engine gave the outcome
    bool uncovered = false; // offline only, and no installed pair covers the text: nothing was run
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
    // What runs then never calls back: the engines may outlive the router.
    ~TranslationRouter();
    TranslationRouter(const TranslationRouter&) = delete;
    TranslationRouter& operator=(const TranslationRouter&) = delete;

    using Done = std::function<void(const RoutedOutcome&)>;
    // The outcome goes to `done`, at once when nothing needs to run. False, with nothing called,
    // while an engine is busy.
    bool translate(const TranslationRequest& request, EngineChoice choice, Done done);
    void cancel();
    OfflineEngine& offline() const { return *m_offline; }

private:
    void offlineStep(const TranslationRequest& request, EngineChoice choice, RoutedOutcome routed,
                     const Done& done);

    TranslationEngine* m_service;
    OfflineEngine* m_offline;
    std::shared_ptr<bool> m_alive = std::make_shared<bool>(true); // the engines' callbacks check it
};

} // namespace quillora
