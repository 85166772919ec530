#pragma once

#include <QString>
#include <array>

namespace quillora
{

struct HistorySlot {
    QString source, translation, romanization, dictionary;
    int targetRow = 0; // Combo1
    int sourceRow = 0; // Combo2
    bool translationSpeech = false;
    bool sourceSpeech = false;
};

// The last three translations. Slot files soun<k>0.tmp (translation page) and soun<k>1.tmp
// (source page) live in the temporary folder.
class HistoryRing
{
public:
    explicit HistoryRing(QString folder);

    // Stores at WritePos, copying the given speech pages (empty path = no page) into the slot files.
    // The slot's speech flags are set from whether each page was copied. Returns the slot written.
    int store(const HistorySlot& slot, const QString& translationPage, const QString& sourcePage);
    // Moves ShowPos back (0 goes to 2) and returns that slot, used or not.
    const HistorySlot& GoBack();

    int WritePos() const { return m_writePos; }
    int ShowPos() const { return m_showPos; }
    const HistorySlot& slot(int k) const { return m_slots.at(k); }
    QString slotFile(int k, int page) const; // page 0 translation, 1 source

private:
    QString m_folder;
    std::array<HistorySlot, 3> m_slots;
    int m_writePos = 0;
    int m_showPos = 0;
};

} // namespace quillora
