#pragma once

#include <QByteArray>

#include <optional>

namespace corkwheel {

// Panels must sit at exact desktop coordinates, which Wayland does not give ordinary
// windows, so on a Wayland session Corkwheel runs through XWayland unless the user chose
// a Qt platform plugin themselves.
namespace DisplaySession {

// The QT_QPA_PLATFORM value to use for the current environment, or none to keep Qt's
// own choice.
std::optional<QByteArray> forcedQpaPlatform();

// Sets QT_QPA_PLATFORM when forcedQpaPlatform() says so, and keeps Qt's X11 windows off
// shared-memory images unless the user chose otherwise. Call before the application
// object exists.
void applyToEnvironment();

} // namespace DisplaySession

} // namespace corkwheel
