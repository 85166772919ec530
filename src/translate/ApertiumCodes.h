#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace quillora
{

// One installed Apertium translation direction, named by catalogue codes.
struct OfflinePair {
    QString mode;   // Apertium's name for it, "eng-spa"
    QString source; // catalogue codes, "en"
    QString target; // "es"
    bool operator==(const OfflinePair& o) const
    {
        return mode == o.mode && source == o.source && target == o.target;
    }
};

// The catalogue languages an Apertium language code stands for ("eng", "en", "hbs_SR" ...), best
// match first; empty when none.
QStringList catalogueCodesForApertium(const QString& apertiumCode);

// The installed directions by Apertium's mode names ("eng-spa", "spa-eng_US"), one per catalogue
// source and target: where several modes give the same languages the plainest one wins. Modes of no
// catalogue language, or from a language into itself, are left out. Sorted by source, then target.
QList<OfflinePair> offlinePairsFromModes(const QStringList& modes);

// The name of libexttextcat's fingerprint for a catalogue code ("iw" -> "he"), "" when unknown.
QString fingerprintName(const QString& catalogueCode);

} // namespace quillora
