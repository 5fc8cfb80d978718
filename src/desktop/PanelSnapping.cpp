// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/PanelSnapping.h"

#include "desktop/PanelGeometry.h"
#include "model/PanelLimits.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace corkwheel::PanelSnapping {

namespace {

// Lines that lie this close after snapping are drawn as lined up.
constexpr double kAligned = 0.01;

// A rectangle's extent along one axis.
struct Span {
    double low;
    double high;
    double middle() const { return (low + high) / 2; }
};

Span along(const QRectF& rect, Qt::Orientation axis) {
    return axis == Qt::Horizontal ? Span{rect.left(), rect.right()}
                                  : Span{rect.top(), rect.bottom()};
}

Span across(const QRectF& rect, Qt::Orientation axis) {
    return along(rect, axis == Qt::Horizontal ? Qt::Vertical : Qt::Horizontal);
}

QList<double> linesOf(Span span) {
    return {span.low, span.middle(), span.high};
}

// The lines of the dragged frame that the drag moves along `axis`.
QList<double> movingLines(const QRectF& frame, Drag drag, Qt::Orientation axis) {
    const Span span = along(frame, axis);
    if (drag == Drag::Resize)
        return {span.high};
    return linesOf(span);
}

// Where a resize may take the far edge at the least.
double lowestLine(const QRectF& frame, Drag drag, Qt::Orientation axis) {
    if (drag == Drag::Move)
        return -std::numeric_limits<double>::infinity();
    const double minimum = axis == Qt::Horizontal ? PanelLimits::kDraggedMinimumWidth
                                                  : PanelLimits::kDraggedMinimumHeight;
    return along(frame, axis).low + minimum;
}

// The smallest shift along `axis` that puts a moving line onto a line of a target, within
// kDistance; none when no target is that close.
std::optional<double> nearestShift(const QRectF& frame, Drag drag, const QList<QRectF>& targets,
                                   Qt::Orientation axis) {
    const double lowest = lowestLine(frame, drag, axis);
    std::optional<double> best;
    for (const QRectF& target : targets) {
        for (const double line : linesOf(along(target, axis))) {
            for (const double moving : movingLines(frame, drag, axis)) {
                const double shift = line - moving;
                if (std::abs(shift) > kDistance || moving + shift < lowest)
                    continue;
                if (!best || std::abs(shift) < std::abs(*best))
                    best = shift;
            }
        }
    }
    return best;
}

QRectF shifted(QRectF frame, Drag drag, Qt::Orientation axis, double shift) {
    const bool horizontal = axis == Qt::Horizontal;
    if (drag == Drag::Move)
        frame.translate(horizontal ? shift : 0, horizontal ? 0 : shift);
    else if (horizontal)
        frame.setRight(frame.right() + shift);
    else
        frame.setBottom(frame.bottom() + shift);
    return frame;
}

QLineF guideLine(double at, Span span, Qt::Orientation axis) {
    if (axis == Qt::Horizontal)
        return {at, span.low, at, span.high};
    return {span.low, at, span.high, at};
}

// A line for every moving line of `frame` that lies on a line of a target.
void addGuides(const QRectF& frame, Drag drag, const QList<QRectF>& targets, Qt::Orientation axis,
               QList<QLineF>& guides) {
    const Span own = across(frame, axis);
    for (const QRectF& target : targets) {
        const Span other = across(target, axis);
        const Span both{std::min(own.low, other.low), std::max(own.high, other.high)};
        for (const double line : linesOf(along(target, axis))) {
            for (const double moving : movingLines(frame, drag, axis)) {
                if (std::abs(line - moving) < kAligned)
                    guides.append(guideLine(line, both, axis));
            }
        }
    }
}

} // namespace

Snapped snap(const QRectF& proposed, Drag drag, const QList<QRectF>& others, const QRectF& screen,
             Qt::KeyboardModifiers modifiers) {
    if (modifiers.testFlag(Qt::ShiftModifier))
        return {proposed, {}};
    QList<QRectF> targets;
    for (const QRectF& other : others) {
        if (!other.isEmpty())
            targets.append(other);
    }
    if (!screen.isEmpty())
        targets.append(screen);

    Snapped snapped{proposed, {}};
    for (const Qt::Orientation axis : {Qt::Horizontal, Qt::Vertical}) {
        const std::optional<double> shift = nearestShift(snapped.frame, drag, targets, axis);
        if (!shift)
            continue;
        snapped.frame = shifted(snapped.frame, drag, axis, *shift);
        addGuides(snapped.frame, drag, targets, axis, snapped.guides);
    }
    return snapped;
}

} // namespace corkwheel::PanelSnapping
