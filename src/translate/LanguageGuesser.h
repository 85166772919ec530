#pragma once

#include <QString>
#include <QStringList>

namespace quillora
{

// Guesses which of a few catalogue languages a text is in, with libexttextcat's fingerprints.
// A guess is given only when the classifier names exactly one language: a text that is short, that
// matches none, or that lies within the classifier's margin of two of them gets none.
class LanguageGuesser
{
public:
    // Characters below which a text is too short to tell.
    static constexpr int kMinimumLength = 20;

    explicit LanguageGuesser(const QStringList& catalogueCodes,
                             const QString& fingerprintFolder = defaultFingerprintFolder());
    ~LanguageGuesser();
    LanguageGuesser(const LanguageGuesser&) = delete;
    LanguageGuesser& operator=(const LanguageGuesser&) = delete;

    // False when no fingerprint of the languages could be loaded.
    bool ready() const { return m_handle != nullptr; }
    // The catalogue code, or "" when there is no confident guess.
    QString guess(const QString& text) const;

    static QString defaultFingerprintFolder();

private:
    void* m_handle = nullptr;
};

} // namespace quillora
