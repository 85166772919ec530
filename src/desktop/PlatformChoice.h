#pragma once

#include <QString>

namespace quillora
{

// Called before the application object exists. In a Wayland session whose compositor offers no
// clipboard control (GNOME's today) a native Wayland window sees copies only while it has the
// focus and cannot set the clipboard from the background; there the program runs on XWayland when
// it is available and the user has chosen no platform (QT_QPA_PLATFORM, -platform). Returns the
// message to print when it switched, else an empty string.
QString preferXWaylandForClipboard(int argc, char** argv);

} // namespace quillora
