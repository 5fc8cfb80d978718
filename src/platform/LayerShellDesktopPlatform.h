// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/QtDesktopPlatform.h"

namespace corkwheel {

// Panel windows as layer surfaces of a Wayland compositor: pinned on the bottom layer,
// above the wallpaper and the desktop icons and below every window, on every workspace by
// nature; in edit mode on the top layer, above the windows, taking the mouse. A surface is
// on the output of the screen its place names, anchored to that output's top-left corner,
// its margins the frame's place on that screen, and never pushes other surfaces aside.
class LayerShellDesktopPlatform : public QtDesktopPlatform {
public:
    // Where the compositor measures the pointer's place on a surface from while a button is
    // held and the surface moves under it, as in a drag of a panel's title bar: from the
    // surface's place at the press, or from its place now.
    enum class DragReckoning { FromPressPlace, FromCurrentPlace };

    explicit LayerShellDesktopPlatform(DragReckoning reckoning = DragReckoning::FromPressPlace)
        : m_dragReckoning(reckoning) {}

    void preparePanelWindow(QWidget* window) override;
    void setPinned(QWidget* window, bool pinned) override;
    void setFrame(QWidget* window, const WindowPlace& place) override;
    QRect frame(const QWidget* window) const override;

private:
    DragReckoning m_dragReckoning;
};

} // namespace corkwheel
