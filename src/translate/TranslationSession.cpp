#include "translate/TranslationSession.h"

#include "translate/LanguageCatalogue.h"
#include "translate/SpeechPage.h"

#include <QFile>

namespace quillora
{

TranslationSession::TranslationSession(TranslationEngine* service, OfflineEngine* offline, QString tempFolder,
                                       QObject* parent)
    : QObject(parent), m_service(service), m_router(service, offline), m_tempFolder(std::move(tempFolder)),
      m_ring(m_tempFolder)
{
}

TranslationSession::~TranslationSession()
{
    if (m_translating)
        m_router.cancel();
}

void TranslationSession::setSourceRow(int row)
{
    m_sourceRow = row;
    m_sourceCode = sourceRowEffect(row).sourceCode;
}

void TranslationSession::setTargetRow(int row)
{
    m_targetRow = row;
    m_targetCode = targetRowEffect(row).targetCode;
}

void TranslationSession::setInterfaceRow(int row)
{
    m_interfaceCode = LanguageCode(row);
}

bool TranslationSession::translate(const QString& text, EngineChoice choice)
{
    if (m_translating)
        return false;
    const TranslationRequest request{text, m_sourceCode, m_targetCode, m_interfaceCode};
    const bool started = m_router.translate(
        request, choice,
        [this, request, sourceRow = m_sourceRow, targetRow = m_targetRow](const RoutedOutcome& routed) {
            // Queued: the engines may answer from inside translate() or cancel().
            QMetaObject::invokeMethod(
                this, [=] { complete(request, routed, sourceRow, targetRow); }, Qt::QueuedConnection);
        });
    if (!started)
        return false;
    m_cancelled = false;
    setBusy(true);
    return true;
}

void TranslationSession::cancel()
{
    if (!m_translating)
        return;
    m_cancelled = true;
    m_router.cancel();
}

void TranslationSession::goBack()
{
    if (m_translating)
        return;
    const HistorySlot& slot = m_ring.GoBack();
    setSourceRow(slot.sourceRow);
    setTargetRow(slot.targetRow);
    Q_EMIT wentBack(slot);
}

void TranslationSession::setBusy(bool busy)
{
    m_translating = busy;
    Q_EMIT busyChanged(busy);
}

void TranslationSession::complete(const TranslationRequest& request, RoutedOutcome routed, int sourceRow,
                                  int targetRow)
{
    if (m_cancelled) {
        routed = {};
        routed.outcome.failure = TranslationFailure::Cancelled;
    }
    const TranslationOutcome& outcome = routed.outcome;
    SessionResult result{outcome,      routed.offlinePair, routed.uncovered,
                         request.text, request.sourceCode, request.targetCode};
    // A blank or uncovered text leaves the speakers and the history as they were.
    if (!routed.uncovered && outcome.failure != TranslationFailure::NothingToTranslate) {
        QString sent = request.text;
        sent.replace(QLatin1Char('&'), QLatin1String("%26"));
        result.SourceSpeechOk = makeSpeechPage(sent, request.sourceCode, 1);
        result.TranslationSpeechOk =
            makeSpeechPage(outcome.ok() ? outcome.result.translation : QString(), request.targetCode, 0);
        if (m_caching) {
            HistorySlot slot;
            slot.source = request.text;
            slot.translation = outcome.result.translation;
            slot.romanization = outcome.result.romanization;
            slot.dictionary = outcome.result.dictionary;
            slot.targetRow = targetRow;
            slot.sourceRow = sourceRow;
            m_ring.store(slot, result.TranslationSpeechOk ? speechPagePath(m_tempFolder, 0) : QString(),
                         result.SourceSpeechOk ? speechPagePath(m_tempFolder, 1) : QString());
        }
    }
    setBusy(false);
    Q_EMIT finished(result);
}

// A text too long to be spoken leaves no page behind.
bool TranslationSession::makeSpeechPage(const QString& text, const QString& code, int slot) const
{
    if (m_tempFolder.isEmpty())
        return false;
    if (text.size() > kSpeechTextLimit) {
        QFile::remove(speechPagePath(m_tempFolder, slot));
        return false;
    }
    return BuildSpeechPage(text, code, slot, m_tempFolder, m_service->addresses().service);
}

} // namespace quillora
