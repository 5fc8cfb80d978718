// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPoint>
#include <QRect>

namespace corkwheel {

// Where a panel window goes: its frame in Qt's global coordinates, on one screen. A window
// system that puts a window on one screen's output and places it there, as Wayland's layer
// shell does, takes the screen and the place on it; the others take the frame alone.
struct WindowPlace {
    QRect frame;
    // The screen's geometry in Qt's global coordinates; empty without a screen.
    QRect screen;
    // The frame's top-left corner measured from the screen's.
    QPoint onScreen;

    bool operator==(const WindowPlace&) const = default;
};

} // namespace corkwheel
