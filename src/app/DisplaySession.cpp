#include "app/DisplaySession.h"

#include <QtGlobal>

namespace corkwheel::DisplaySession {

std::optional<QByteArray> forcedQpaPlatform() {
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return std::nullopt;
    const bool wayland =
        qgetenv("XDG_SESSION_TYPE") == "wayland" || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    if (!wayland)
        return std::nullopt;
    return QByteArrayLiteral("xcb");
}

void applyToEnvironment() {
    if (const auto platform = forcedQpaPlatform())
        qputenv("QT_QPA_PLATFORM", *platform);
    // A panel repaints a few rows of a small window now and then. With MIT-SHM images Qt
    // waits for the X server to finish with the previous image before every paint, a
    // round trip that costs more than sending those rows over the connection.
    if (!qEnvironmentVariableIsSet("QT_XCB_NO_MITSHM"))
        qputenv("QT_XCB_NO_MITSHM", "1");
}

} // namespace corkwheel::DisplaySession
