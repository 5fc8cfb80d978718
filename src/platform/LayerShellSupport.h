// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <memory>

namespace corkwheel {

class DesktopPlatform;

// Native Wayland panels through the layer-shell protocol, which wlroots compositors, KWin
// and others offer for windows on the desktop's own layers. Built only where LayerShellQt
// is found; elsewhere every answer here is no.
namespace LayerShellSupport {

// Whether this build can make layer-shell panels.
bool isBuilt();

// Whether the Wayland compositor of this session offers the layer-shell protocol. Asks it
// over a connection of its own, so it can be called before the application object exists.
bool compositorOffersLayerShell();

// Panel windows as layer surfaces, for an application on Qt's Wayland platform; null when
// not built.
std::unique_ptr<DesktopPlatform> createPlatform();

} // namespace LayerShellSupport

} // namespace corkwheel
