// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QLineF>
#include <QList>
#include <QRectF>
#include <Qt>

namespace corkwheel {

// Lines up a panel that is being moved or resized with the panels around it and with its
// screen: an edge or centre line of the dragged frame that comes within kDistance of an
// edge or centre line of another panel, or of the screen, jumps onto it. The drag's own
// arithmetic comes first; this only adjusts the frame it produced. All frames are in one
// coordinate system, y down.
namespace PanelSnapping {

inline constexpr double kDistance = 8;

enum class Drag {
    // Every edge moves together.
    Move,
    // Only the right and bottom edges move; the size stays at least the minimum.
    Resize,
};

struct Snapped {
    QRectF frame;
    // Where the frame lines up with something, each line spanning the frame and what it
    // lines up with.
    QList<QLineF> guides;
};

// `others` are the frames of the other panels shown, `screen` the area panels may cover.
// Holding Shift leaves the frame as proposed.
Snapped snap(const QRectF& proposed, Drag drag, const QList<QRectF>& others, const QRectF& screen,
             Qt::KeyboardModifiers modifiers);

} // namespace PanelSnapping

} // namespace corkwheel
