// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <optional>

namespace corkwheel {

// Panels must sit at exact desktop coordinates and below every window. On Wayland only the
// layer-shell protocol gives a client that, so Corkwheel runs there as a native Wayland
// client when it was built with layer-shell support and the compositor offers the protocol,
// and through XWayland otherwise, unless the user chose a Qt platform plugin themselves.
namespace DisplaySession {

// What the choice of Qt platform plugin depends on.
struct Facts {
    // QT_QPA_PLATFORM is set.
    bool platformChosenByUser = false;
    bool waylandSession = false;
    bool layerShellBuilt = false;
    bool compositorOffersLayerShell = false;
};

// The QT_QPA_PLATFORM value for `facts`, or none to keep Qt's own choice.
std::optional<QByteArray> qpaPlatformFor(const Facts& facts);

// The facts of the current environment; asks the compositor only when its answer matters.
Facts currentFacts();

// The QT_QPA_PLATFORM value to use for the current environment, or none to keep Qt's
// own choice.
std::optional<QByteArray> forcedQpaPlatform();

// Sets QT_QPA_PLATFORM when forcedQpaPlatform() says so, keeps Qt's X11 windows off
// shared-memory images and lets Qt's Wayland windows keep the places they are given,
// unless the user chose otherwise. Call before the application object exists.
void applyToEnvironment();

} // namespace DisplaySession

} // namespace corkwheel
