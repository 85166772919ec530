#pragma once

#include <QString>
#include <optional>

namespace quillora
{

// The stored "Options": seven integers joined by "|". A field that does not read is empty; the window
// and the options dialog apply the fields, each in its own order, up to the first empty one.
struct Options {
    std::optional<int> sourceRow;            // source picker row: catalogue index + 2, 0 detection
    std::optional<int> targetRow;            // target picker row: catalogue index
    std::optional<bool> showPhonetic;        // the romanization pane
    std::optional<bool> showDictionary;      // the dictionary pane
    std::optional<int> interfaceLanguageRow; // catalogue index of the "hl" code
    std::optional<bool> monitorClipboard;
    std::optional<bool> caching;

    static Options defaults(); // "0|15|1|1|15|1|1"
    // Fields 0-4 are read in order up to the first that does not read; 5 and 6 each on their own.
    static Options fromText(const QString& text);
    // An empty field is written as its default.
    QString toText() const;
    bool operator==(const Options& other) const;
};

// For readers that apply the fields in an order and stop at the first empty one:
// `applied(a, f) && applied(b, g) && ...` gives each present field to its function.
template <typename T, typename Apply> bool applied(const std::optional<T>& field, Apply apply)
{
    if (field)
        apply(*field);
    return field.has_value();
}

} // namespace quillora
