// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/PanelGeometry.h"

#include "model/PanelLimits.h"

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
    const double width =
        std::max(start.width() + translation.x(), PanelLimits::kDraggedMinimumWidth);
    const double height =
        std::max(start.height() + translation.y(), PanelLimits::kDraggedMinimumHeight);
    return {start.x(), start.y(), width, height};
}

bool isSameFrame(const PanelFrame& a, const PanelFrame& b) {
    return isClose(a.x, b.x) && isClose(a.y, b.y) && isClose(a.width, b.width) &&
           isClose(a.height, b.height);
}

QRect windowRect(const QRectF& rect) {
    const auto position = [](double value) {
        return qRound(PanelLimits::kDrawnPosition.bound(value, 0));
    };
    const auto side = [](double value) {
        return qRound(PanelLimits::kDrawnSide.bound(value, PanelLimits::kDrawnSide.lowest));
    };
    return {position(rect.x()), position(rect.y()), side(rect.width()), side(rect.height())};
}

} // namespace corkwheel::PanelGeometry
