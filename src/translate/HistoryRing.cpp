#include "translate/HistoryRing.h"

#include <QDir>
#include <QFile>
#include <utility>

namespace quillora
{

namespace
{

constexpr int kSlots = 3;

// Replaces `target` with a copy of `page`; no page (or one that cannot be copied) leaves no file.
bool replaceWithCopy(const QString& page, const QString& target)
{
    QFile::remove(target);
    return !page.isEmpty() && QFile::copy(page, target);
}

} // namespace

HistoryRing::HistoryRing(QString folder) : m_folder(std::move(folder)) {}

int HistoryRing::store(const HistorySlot& slot, const QString& translationPage, const QString& sourcePage)
{
    const int k = m_writePos;
    HistorySlot& stored = m_slots.at(k);
    stored = slot;
    stored.translationSpeech = replaceWithCopy(translationPage, slotFile(k, 0));
    stored.sourceSpeech = replaceWithCopy(sourcePage, slotFile(k, 1));
    m_showPos = k;
    m_writePos = (k + 1) % kSlots;
    return k;
}

const HistorySlot& HistoryRing::GoBack()
{
    m_showPos = m_showPos == 0 ? kSlots - 1 : m_showPos - 1;
    return m_slots.at(m_showPos);
}

QString HistoryRing::slotFile(int k, int page) const
{
    return QDir(m_folder).filePath(QStringLiteral("soun%1%2.tmp").arg(k).arg(page));
}

} // namespace quillora
