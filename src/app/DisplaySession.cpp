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
}

} // namespace corkwheel::DisplaySession
