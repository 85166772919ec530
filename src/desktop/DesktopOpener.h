#pragma once

#include <QString>
#include <functional>

class QUrl;

namespace quillora
{

// Said when an address could not be opened, with the system's reason; it may come long after the call.
using OpenFailed = std::function<void(const QString& reason)>;

// Hands `address` to the desktop's opener (xdg-open) exactly as written. When xdg-open cannot run,
// `fallback` gets the address as a URL. A failure, reported by either, reaches `failed` with the last
// line xdg-open wrote on standard error, or the reason it could not run.
void openWithDesktop(const QString& address, const std::function<bool(const QUrl&)>& fallback,
                     const OpenFailed& failed);

} // namespace quillora
