// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/LayerShellSupport.h"

#include "platform/LayerShellDesktopPlatform.h"

#include <wayland-client.h>

#include <cstring>

namespace corkwheel::LayerShellSupport {

namespace {

void noteGlobal(void* offered, wl_registry*, uint32_t, const char* interface, uint32_t) {
    if (std::strcmp(interface, "zwlr_layer_shell_v1") == 0)
        *static_cast<bool*>(offered) = true;
}

void ignoreRemovedGlobal(void*, wl_registry*, uint32_t) {}

} // namespace

bool isBuilt() {
    return true;
}

bool compositorOffersLayerShell() {
    wl_display* display = wl_display_connect(nullptr);
    if (!display)
        return false;
    bool offered = false;
    wl_registry* registry = wl_display_get_registry(display);
    static const wl_registry_listener listener{&noteGlobal, &ignoreRemovedGlobal};
    wl_registry_add_listener(registry, &listener, &offered);
    wl_display_roundtrip(display);
    wl_registry_destroy(registry);
    wl_display_disconnect(display);
    return offered;
}

std::unique_ptr<DesktopPlatform> createPlatform() {
    return std::make_unique<LayerShellDesktopPlatform>();
}

} // namespace corkwheel::LayerShellSupport
