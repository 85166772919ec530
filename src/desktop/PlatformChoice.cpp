#include "desktop/PlatformChoice.h"

#include "desktop/WaylandClipboard.h"

#include <cstring>

namespace quillora
{

QString preferXWaylandForClipboard(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "-platform") == 0)
            return {};
    const bool waylandSession = qEnvironmentVariable("XDG_SESSION_TYPE") == QLatin1String("wayland") ||
                                qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    if (qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || !waylandSession ||
        !qEnvironmentVariableIsSet("DISPLAY") || WaylandClipboard::sessionOffersDataControl())
        return {};
    qputenv("QT_QPA_PLATFORM", "xcb");
    return QStringLiteral("running on XWayland: this Wayland compositor offers no clipboard control "
                          "(data-control), so a Wayland window could see copies only while it has the "
                          "focus and could not copy translations from the background; set "
                          "QT_QPA_PLATFORM=wayland to run on Wayland anyway");
}

} // namespace quillora
