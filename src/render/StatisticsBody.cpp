// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/StatisticsBody.h"

#include "render/NetworkGraphView.h"
#include "render/PanelColors.h"

#include <QFontMetricsF>
#include <QPainter>

namespace corkwheel::StatisticsBody {

namespace {

void paintSummary(QPainter& painter, const StatsLayout& layout, const QColor& color) {
    if (layout.summary.isEmpty())
        return;
    const QFontMetricsF metrics(layout.summaryFont);
    painter.setFont(layout.summaryFont);
    painter.setPen(PanelColors::withOpacity(color, kSummaryOpacity));
    painter.drawText(
        QPointF(layout.summaryRect.left(), layout.summaryRect.top() + metrics.ascent()),
        layout.summary);
}

} // namespace

void paint(QPainter& painter, const QRectF& rect, const StatsLayout& layout,
           const QList<NetworkSample>& history, const PanelStyle& style) {
    const QColor color = PanelColors::toQColor(style.textColor);
    painter.save();
    painter.setClipRect(rect);
    paintSummary(painter, layout, color);
    const double scale = layout.fontScale;
    const auto scaled = [scale](const QRectF& r) {
        return QRectF(r.topLeft() / scale, r.size() / scale);
    };
    painter.scale(scale, scale);
    for (const StatsLayout::Row& row : layout.rows)
        row.row.paint(painter, scaled(row.rect), layout.font, color);
    NetworkGraphView(history, color).paint(painter, scaled(layout.graphRect), layout.font, color);
    painter.restore();
}

} // namespace corkwheel::StatisticsBody
