// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/PanelFrame.h"

#include <QPointF>
#include <QRect>
#include <QRectF>

#include <optional>

namespace corkwheel {

// The arithmetic of placing a panel window: panel frames (origin at the top-left corner of
// the main screen, y down) against window frames (Qt's global coordinates, also y down),
// and the frames that a move or resize drag produces. Everything is in doubles; only
// windowRect() rounds, because a window sits on whole pixels while the store keeps the
// exact frame.
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

// The whole-pixel rectangle a window is given for `rect`: each component rounded to nearest,
// within what a window can be given (a hand-edited frame may lie far beyond any screen).
QRect windowRect(const QRectF& rect);

} // namespace PanelGeometry

} // namespace corkwheel
