#pragma once

#include <QUrl>
#include <functional>

namespace quillora
{

// Whether `url` is a web page: http or https with a host. Only such addresses from the maker's lists
// and pages go to the browser; a file or custom-scheme address would reach the desktop's opener.
bool isWebAddress(const QUrl& url);

// Hands `url` to `open` when it is a web page; false, and nothing opened, otherwise.
bool openWebAddress(const QUrl& url, const std::function<bool(const QUrl&)>& open);

// Whether an update list fetched from `url` may decide what replaces the program: it came over https,
// or from this machine itself.
bool isTrustedUpdateSource(const QUrl& url);

} // namespace quillora
