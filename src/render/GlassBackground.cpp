// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/GlassBackground.h"

#include <QPainter>
#include <QPainterPath>

namespace corkwheel::GlassBackground {

namespace {

const QColor kTint = QColor::fromRgbF(30 / 255.0f, 30 / 255.0f, 30 / 255.0f, 0.45f);
const QColor kEdge = QColor::fromRgbF(1, 1, 1, 0.14f);
// Stroked on the outline and clipped to the inside, so one point shows.
constexpr double kEdgeStroke = 2;

} // namespace

void fill(QPainter& painter, const QPainterPath& shape) {
    painter.fillPath(shape, kTint);
}

void paint(QPainter& painter, const QPainterPath& shape) {
    fill(painter, shape);
    painter.save();
    painter.setClipPath(shape, Qt::IntersectClip);
    painter.strokePath(shape, QPen(kEdge, kEdgeStroke));
    painter.restore();
}

} // namespace corkwheel::GlassBackground
