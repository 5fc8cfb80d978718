// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/PanelFrame.h"
#include "platform/WindowPlace.h"

#include <QList>
#include <QPointF>
#include <QRect>
#include <QRectF>

#include <optional>

namespace corkwheel {

// The arithmetic of placing a panel window: panel frames (origin at the top-left corner of
// the main screen, y down) against window frames (Qt's global coordinates, also y down),
// the screen a window is shown on, and the frames that a move or resize drag produces. Everything
// is in doubles; only windowRect() rounds, because a window sits on whole pixels while the store
// keeps the exact frame.
namespace PanelGeometry {

// Frames closer than this in every component are the same frame: the store echoing back
// what a drag has just written must not move the window again.
inline constexpr double kSameFrameTolerance = 0.5;

// `mainScreen` is the main screen's geometry; without one nothing is translated.
QRectF toScreen(const PanelFrame& frame, const std::optional<QRect>& mainScreen);
PanelFrame toPanel(const QRectF& rect, const std::optional<QRect>& mainScreen);

// The frame of a move drag: the start frame shifted by the translation.
QRectF moved(const QRectF& start, QPointF translation);
// The frame of a resize drag by the bottom-right corner: the top-left corner stays put and
// the size never drops below the minimum.
QRectF resized(const QRectF& start, QPointF translation);

bool isSameFrame(const PanelFrame& a, const PanelFrame& b);

// The screen among `screens` that holds the largest part of `rect`; of screens that hold as
// much, the one listed first. None when no screen holds any of it.
std::optional<QRect> screenHolding(const QRectF& rect, const QList<QRect>& screens);

// `rect` moved as little as puts it inside `area`. One wider or higher than the area has its
// left or top edge on the area's, where its title bar can be reached.
QRectF clampedInside(const QRectF& rect, const QRect& area);

// Where the window of a panel at `rect` is shown, given the screens, the main one first: at
// `rect` when some screen holds part of it; moved inside the main screen when none does, as
// when the panel's monitor is unplugged; at `rect` when there are no screens at all.
QRectF shownFrame(const QRectF& rect, const QList<QRect>& screens);

// The place of a window shown at `rect` on `screen` (empty for none): the whole-pixel frame
// of windowRect(), and that frame's corner measured from the screen's.
WindowPlace windowPlace(const QRectF& rect, const QRect& screen);

// The whole-pixel rectangle a window is given for `rect`: each component rounded to nearest,
// within what a window can be given (a hand-edited frame may lie far beyond any screen).
QRect windowRect(const QRectF& rect);

} // namespace PanelGeometry

} // namespace corkwheel
