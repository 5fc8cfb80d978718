// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/PanelShapes.h"

#include <algorithm>
#include <cmath>

namespace corkwheel::PanelShapes {

QPainterPath rounded(const QRectF& rect, double cornerRadius) {
    QPainterPath path;
    if (rect.isEmpty())
        return path;
    const double limit = std::min(rect.width(), rect.height()) / 2;
    const double radius = std::isfinite(cornerRadius) ? std::clamp(cornerRadius, 0.0, limit) : 0;
    if (radius <= 0)
        path.addRect(rect);
    else
        path.addRoundedRect(rect, radius, radius);
    return path;
}

QPainterPath topStrip(const QRectF& panelRect, double cornerRadius, double height) {
    QPainterPath strip;
    strip.addRect(QRectF(panelRect.topLeft(), QSizeF(panelRect.width(), height)));
    return rounded(panelRect, cornerRadius).intersected(strip);
}

QPainterPath insideStroke(const QRectF& rect, double cornerRadius, double lineWidth) {
    const double inset = lineWidth / 2;
    return rounded(rect.adjusted(inset, inset, -inset, -inset), cornerRadius - inset);
}

} // namespace corkwheel::PanelShapes
