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

double areaOf(const QRectF& rect) {
    return rect.isEmpty() ? 0 : rect.width() * rect.height();
}

// One axis of clampedInside(): the start of a span of `length` inside [low, low + room].
double clampedStart(double start, double length, double low, double room) {
    if (length >= room)
        return low;
    return std::clamp(start, low, low + room - length);
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

std::optional<QRect> screenHolding(const QRectF& rect, const QList<QRect>& screens) {
    std::optional<QRect> holding;
    double most = 0;
    for (const QRect& screen : screens) {
        const double held = areaOf(rect.intersected(QRectF(screen)));
        if (held > most) {
            most = held;
            holding = screen;
        }
    }
    return holding;
}

QRectF clampedInside(const QRectF& rect, const QRect& area) {
    return {clampedStart(rect.x(), rect.width(), area.x(), area.width()),
            clampedStart(rect.y(), rect.height(), area.y(), area.height()), rect.width(),
            rect.height()};
}

QRectF shownFrame(const QRectF& rect, const QList<QRect>& screens) {
    if (screens.isEmpty() || screenHolding(rect, screens))
        return rect;
    return clampedInside(rect, screens.first());
}

WindowPlace windowPlace(const QRectF& rect, const QRect& screen) {
    const QRect frame = windowRect(rect);
    return {frame, screen, frame.topLeft() - screen.topLeft()};
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
