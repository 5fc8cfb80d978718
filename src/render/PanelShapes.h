// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPainterPath>
#include <QRectF>

namespace corkwheel::PanelShapes {

// The rounded outline of a panel. The radius is kept between 0 and half the shorter side,
// so a small panel with a large radius becomes a capsule, never a knot.
QPainterPath rounded(const QRectF& rect, double cornerRadius);

// The part of the panel `panelRect` (with its rounded outline) that lies in its top
// `height` points: the top corners follow the panel's, the bottom ones are square.
QPainterPath topStrip(const QRectF& panelRect, double cornerRadius, double height);

// The path along which a line of `lineWidth` is stroked so that it lies just inside the
// rounded outline of `rect`.
QPainterPath insideStroke(const QRectF& rect, double cornerRadius, double lineWidth);

} // namespace corkwheel::PanelShapes
