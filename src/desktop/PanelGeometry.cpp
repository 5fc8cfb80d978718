// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/PanelGeometry.h"

#include <QtMath>

#include <algorithm>
#include <cmath>

namespace corkwheel::PanelGeometry {

namespace {

QPointF originOf(const std::optional<QRect>& mainScreen) {
    return mainScreen ? QPointF(mainScreen->topLeft()) : QPointF();
}

bool isClose(double a, double b) {
    return std::abs(a - b) < kSameFrameTolerance;
}

} // namespace

QRectF toScreen(const PanelFrame& frame, const std::optional<QRect>& mainScreen) {
    const QPointF origin = originOf(mainScreen);
    return {frame.x + origin.x(), frame.y + origin.y(), frame.width, frame.height};
}

PanelFrame toPanel(const QRectF& rect, const std::optional<QRect>& mainScreen) {
    const QPointF origin = originOf(mainScreen);
    return {rect.x() - origin.x(), rect.y() - origin.y(), rect.width(), rect.height()};
}

QRectF moved(const QRectF& start, QPointF translation) {
    return {start.x() + translation.x(), start.y() + translation.y(), start.width(),
            start.height()};
}

QRectF resized(const QRectF& start, QPointF translation) {
    const double width = std::max(start.width() + translation.x(), kMinimumWidth);
    const double height = std::max(start.height() + translation.y(), kMinimumHeight);
    return {start.x(), start.y(), width, height};
}

bool isSameFrame(const PanelFrame& a, const PanelFrame& b) {
    return isClose(a.x, b.x) && isClose(a.y, b.y) && isClose(a.width, b.width) &&
           isClose(a.height, b.height);
}

QRect windowRect(const QRectF& rect) {
    return {qRound(rect.x()), qRound(rect.y()), qRound(rect.width()), qRound(rect.height())};
}

} // namespace corkwheel::PanelGeometry
