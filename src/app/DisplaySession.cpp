// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/DisplaySession.h"

#include "platform/LayerShellSupport.h"

#include <QtGlobal>

namespace corkwheel::DisplaySession {

std::optional<QByteArray> qpaPlatformFor(const Facts& facts) {
    if (facts.platformChosenByUser || !facts.waylandSession)
        return std::nullopt;
    if (facts.layerShellBuilt && facts.compositorOffersLayerShell)
        return QByteArrayLiteral("wayland");
    return QByteArrayLiteral("xcb");
}

Facts currentFacts() {
    Facts facts;
    facts.platformChosenByUser = !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
    facts.waylandSession =
        qgetenv("XDG_SESSION_TYPE") == "wayland" || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    facts.layerShellBuilt = LayerShellSupport::isBuilt();
    if (!facts.platformChosenByUser && facts.waylandSession && facts.layerShellBuilt)
        facts.compositorOffersLayerShell = LayerShellSupport::compositorOffersLayerShell();
    return facts;
}

std::optional<QByteArray> forcedQpaPlatform() {
    return qpaPlatformFor(currentFacts());
}

void applyToEnvironment() {
    if (const auto platform = forcedQpaPlatform())
        qputenv("QT_QPA_PLATFORM", *platform);
    // A panel repaints a few rows of a small window now and then. With MIT-SHM images Qt
    // waits for the X server to finish with the previous image before every paint, a
    // round trip that costs more than sending those rows over the connection.
    if (!qEnvironmentVariableIsSet("QT_XCB_NO_MITSHM"))
        qputenv("QT_XCB_NO_MITSHM", "1");
    // A Wayland compositor never tells a client where its windows are, so Qt puts them all
    // at their screen's corner and reckons pointer positions from there. A panel's place is
    // known, its layer surface's margins: told so, Qt keeps the place it is given, and a
    // drag that moves the panel under the pointer stays right.
    if (!qEnvironmentVariableIsSet("QT_WAYLAND_DISABLE_FIXED_POSITIONS"))
        qputenv("QT_WAYLAND_DISABLE_FIXED_POSITIONS", "1");
}

} // namespace corkwheel::DisplaySession
