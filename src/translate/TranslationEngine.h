#pragma once

#include "net/Http.h"
#include "net/ServiceBackoff.h"
#include "translate/ResponseParser.h"
#include "translate/ServiceAddresses.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <functional>

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
    Empty,
    HumanCheck, // a page that asks to prove a person is there
    TooLong     // more than kMaxTextBytes; nothing was sent
};

// The longest text sent, in UTF-8 bytes: the service's own limit of 5,000 characters is at most
// 20 KiB of UTF-8.
constexpr qsizetype kMaxTextBytes = 64 * 1024;

struct TranslationOutcome {
    TranslationFailure failure = TranslationFailure::None;
    TranslationResult result;
    QString response;  // the raw answer (the hidden response box)
    QDateTime retryAt; // refused: the service is not asked again before this
    bool ok() const { return failure == TranslationFailure::None; }
};

// Trims spaces (only spaces) at both ends: the test for an empty text.
QString trimBlanks(const QString& text);

// English reason for terminals; a TextOffset for the window's status line (0 for None). With
// offline, the failure came from the offline engine.
QString failureReasonText(TranslationFailure failure, bool offline = false);
int failureStatusOffset(const TranslationOutcome& outcome, bool offline = false);

// A time in local time, "HH:mm:ss", with the date ahead of it when that is not today's.
QString localTimeText(const QDateTime& at, const QDateTime& now);

// The service's "prove you are a person" page: reached through /sorry/, or carrying its markers.
bool isHumanCheckPage(const QString& page, const QUrl& url);

// What fanYi runs: the form request first; when an answer holds none of the form's markers, the
// JSON interface, which is then used alone for a while (kFormRetryRequests requests or
// kFormRetryMinutes) before the form is tried again. A refusing service is not asked before the
// time its back-off allows; such a request fails as Refused without being sent.
class TranslationEngine : public QObject
{
    Q_OBJECT
public:
    explicit TranslationEngine(ServiceAddresses addresses = ServiceAddresses::fromEnvironment(),
                               QObject* parent = nullptr);

    static constexpr int kFormRetryRequests = 20;
    static constexpr int kFormRetryMinutes = 30;

    using Done = std::function<void(const TranslationOutcome&)>;
    // Starts the request; the outcome goes to `done`, at once for a request that sends nothing (an
    // empty or too long text, a wait not yet over). False, with nothing called, while one runs.
    bool translate(const TranslationRequest& request, Done done);
    void cancel(); // the running request ends Cancelled
    bool busy() const { return m_http.busy(); }
    bool formSkipped() const; // the next request goes to the JSON interface
    const ServiceAddresses& addresses() const { return m_addresses; }
    HttpClient& http() { return m_http; }
    ServiceBackoff& backoff() { return m_backoff; }

private:
    // Not None when the answer refuses or asks for a person; the back-off then holds the wait.
    TranslationOutcome refusal(const HttpReply& reply, const QString& page);
    void formAnswered(const TranslationRequest& request, const HttpReply& reply, const Done& done);
    void askJson(const TranslationRequest& request, Done done);
    TranslationOutcome jsonAnswered(const HttpReply& reply);

    ServiceAddresses m_addresses;
    ServiceBackoff m_backoff;
    HttpClient m_http;
    QDateTime m_formSkippedUntil;
    int m_formSkipsLeft = 0;
};

} // namespace quillora
