// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/LayerShellSupport.h"

#include "platform/LayerShellDesktopPlatform.h"

#include <wayland-client.h>

#include <cstring>

namespace corkwheel::LayerShellSupport {

namespace {

// What the compositor offers that matters here.
struct Offered {
    bool layerShell = false;
    // Plasma's shell protocol, which only KWin offers.
    bool plasmaShell = false;
};

void noteGlobal(void* data, wl_registry*, uint32_t, const char* interface, uint32_t) {
    auto* offered = static_cast<Offered*>(data);
    if (std::strcmp(interface, "zwlr_layer_shell_v1") == 0)
        offered->layerShell = true;
    else if (std::strcmp(interface, "org_kde_plasma_shell") == 0)
        offered->plasmaShell = true;
}

void ignoreRemovedGlobal(void*, wl_registry*, uint32_t) {}

Offered askCompositor() {
    Offered offered;
    wl_display* display = wl_display_connect(nullptr);
    if (!display)
        return offered;
    wl_registry* registry = wl_display_get_registry(display);
    static const wl_registry_listener listener{&noteGlobal, &ignoreRemovedGlobal};
    wl_registry_add_listener(registry, &listener, &offered);
    wl_display_roundtrip(display);
    wl_registry_destroy(registry);
    wl_display_disconnect(display);
    return offered;
}

} // namespace

bool isBuilt() {
    return true;
}

bool compositorOffersLayerShell() {
    return askCompositor().layerShell;
}

// While a button is held, sway gives the pointer's place on a surface relative to where the
// surface was when the button went down, however far it moved since; KWin gives it relative
// to where the surface is.
std::unique_ptr<DesktopPlatform> createPlatform() {
    const auto reckoning = askCompositor().plasmaShell
                               ? LayerShellDesktopPlatform::DragReckoning::FromCurrentPlace
                               : LayerShellDesktopPlatform::DragReckoning::FromPressPlace;
    return std::make_unique<LayerShellDesktopPlatform>(reckoning);
}

} // namespace corkwheel::LayerShellSupport
