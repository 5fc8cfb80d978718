// SPDX-License-Identifier: GPL-3.0-or-later

// Built in place of LayerShellSupport.cpp where LayerShellQt is not found.

#include "platform/LayerShellSupport.h"

#include "platform/DesktopPlatform.h"

namespace corkwheel::LayerShellSupport {

bool isBuilt() {
    return false;
}

bool compositorOffersLayerShell() {
    return false;
}

std::unique_ptr<DesktopPlatform> createPlatform() {
    return nullptr;
}

} // namespace corkwheel::LayerShellSupport
