// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/PanelBackground.h"

#include "render/GlassBackground.h"
#include "render/PanelColors.h"
#include "render/PanelShapes.h"

#include <QPainter>

namespace corkwheel::PanelBackground {

bool hasColourLayer(const PanelStyle& style) {
    return style.backgroundColor.alpha > 0;
}

void paint(QPainter& painter, const QRectF& rect, const PanelStyle& style) {
    if (!hasColourLayer(style) && !style.showGlassBackground)
        return;
    const QPainterPath shape = PanelShapes::rounded(rect, style.cornerRadius);
    if (hasColourLayer(style))
        painter.fillPath(shape, PanelColors::toQColor(style.backgroundColor));
    if (style.showGlassBackground)
        GlassBackground::paint(painter, shape);
}

} // namespace corkwheel::PanelBackground
