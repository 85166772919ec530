#pragma once

#include <QChar>
#include <QStringList>

namespace quillora
{

// Keyboard access keys for one group of captions (one menu, or the buttons, check boxes and labels
// of one window): each caption gets an "&" before a letter of its own that no other caption of the
// group uses, so the visible text stays as it is. An "&" a caption already has is kept while its
// letter is free; "&&" is a literal ampersand. Captions without a letter a keyboard types directly
// (Chinese, Thai) get none.
class AccessKeys
{
public:
    // `captions` in the group's order: those with fewer letters choose first, then the earlier ones.
    // `taken`: captions whose keys are used already (a window's menu bar for its controls).
    static QStringList assign(const QStringList& captions, const QStringList& taken = {});
    // The letter a caption's "&" marks, lower-cased; a null QChar when it has none.
    static QChar keyOf(const QString& caption);
    // A text from outside (a site's name) as a caption: its ampersands shown, not taken as keys.
    static QString literal(const QString& text);
};

} // namespace quillora
