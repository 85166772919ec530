#pragma once

#include "net/Http.h"
#include "translate/ResponseParser.h"
#include "translate/ServiceAddresses.h"

#include <QObject>
#include <QString>

namespace quillora
{

struct TranslationRequest {
    QString text;       // as typed, untrimmed
    QString sourceCode; // "" = detect
    QString targetCode;
    QString interfaceCode; // hl
};

enum class TranslationFailure {
    None,
    NothingToTranslate,
    Refused,
    TimedOut,
    Network,
    BadAnswer,
    Cancelled,
    Empty
};

struct TranslationOutcome {
    TranslationFailure failure = TranslationFailure::None;
    TranslationResult result;
    QString response; // the raw answer (the hidden response box)
    bool ok() const { return failure == TranslationFailure::None; }
};

// English reason for terminals; StatusOffset for the window's status line (0 for None).
QString failureReasonText(TranslationFailure failure);
int failureStatusOffset(TranslationFailure failure);

// What fanYi runs: the form request first; when an answer holds none of the form's markers, the
// JSON interface, and from then on only the JSON interface for the rest of the run.
class TranslationEngine : public QObject
{
    Q_OBJECT
public:
    explicit TranslationEngine(ServiceAddresses addresses = ServiceAddresses::fromEnvironment(),
                               QObject* parent = nullptr);

    TranslationOutcome translate(const TranslationRequest& request); // blocking, local event loop
    void cancel();                                                   // the running request ends Cancelled
    bool busy() const { return m_http.busy(); }
    bool formAbandoned() const { return m_formAbandoned; }
    const ServiceAddresses& addresses() const { return m_addresses; }
    HttpClient& http() { return m_http; }

private:
    ServiceAddresses m_addresses;
    HttpClient m_http;
    bool m_formAbandoned = false;
};

} // namespace quillora
