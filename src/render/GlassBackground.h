// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QPainter;
class QPainterPath;

namespace corkwheel::GlassBackground {

// Frosted glass where the compositor blurs what lies behind the window (the platform layer
// asks it to): a dark translucent fill that keeps light text legible on any wallpaper.
void fill(QPainter& painter, const QPainterPath& shape);

// The fill with a faint light edge just inside `shape`, as a pane of glass catches light.
void paint(QPainter& painter, const QPainterPath& shape);

} // namespace corkwheel::GlassBackground
