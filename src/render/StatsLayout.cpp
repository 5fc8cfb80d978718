// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/StatsLayout.h"

#include "render/ExtraStatRows.h"
#include "render/NetworkGraphView.h"
#include "render/PanelFonts.h"
#include "render/StatWarning.h"

#include <QCoreApplication>
#include <QFontMetricsF>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace corkwheel {

namespace {

// Places that can hold a disk row: what remains of the height after the padding, the CPU
// and memory rows, the graph and their two gaps, in steps of a row and its gap, less the
// optional rows.
qint64 diskPlaces(double totalHeight, double rowHeight, double networkHeight, qint64 extraRows) {
    const double places = std::floor((totalHeight - 2 * StatsLayout::kPadding - 2 * rowHeight -
                                      networkHeight - 2 * StatsLayout::kSpacing) /
                                     (rowHeight + StatsLayout::kSpacing)) -
                          double(extraRows);
    // Widget geometry is always finite and small; anything else is a programming error.
    if (!std::isfinite(places) || places < -0x1p63 || places >= 0x1p63)
        std::abort();
    return static_cast<qint64>(places);
}

// Puts an item of `height` at `top` in `rect`; gives the top of the next item.
double place(double top, double width, double height, QRectF& rect) {
    rect = QRectF(StatsLayout::kPadding, top, width, height);
    return top + height + StatsLayout::kSpacing;
}

} // namespace

DiskFit StatsLayout::fittingDisks(const QList<DiskInfo>& disks, double totalHeight,
                                  double measuredRowHeight, double measuredNetworkHeight) {
    return fittingDisks(disks, totalHeight, measuredRowHeight, measuredNetworkHeight, 0);
}

DiskFit StatsLayout::fittingDisks(const QList<DiskInfo>& disks, double totalHeight,
                                  double measuredRowHeight, double measuredNetworkHeight,
                                  qint64 extraRows) {
    const double rowHeight = measuredRowHeight > 0 ? measuredRowHeight : kDefaultRowHeight;
    const double networkHeight =
        measuredNetworkHeight > 0 ? measuredNetworkHeight : kDefaultNetworkHeight;
    const qint64 places = diskPlaces(totalHeight, rowHeight, networkHeight, extraRows);
    const qint64 count = disks.size();
    if (std::max<qint64>(places, 0) >= count)
        return {disks, 0};
    const qint64 shown = std::max<qint64>(places - 1, 0);
    return {disks.first(shown), count - shown};
}

QString StatsLayout::summaryText(qint64 hidden) {
    // The count goes through as an int, which no number of mounted disks comes near.
    const auto count = static_cast<int>(std::min<qint64>(hidden, std::numeric_limits<int>::max()));
    return QCoreApplication::translate("corkwheel::StatsLayout", "+%n more disk(s)", nullptr,
                                       count);
}

double StatsLayout::fontSize(double styleFontSize) {
    return std::max(styleFontSize - 2, kMinimumFontSize);
}

PanelFonts::ScaledFont StatsLayout::statsFont(const PanelStyle& style) {
    return PanelFonts::scaledStyleFont(style.fontName, fontSize(style.fontSize));
}

StatsLayout StatsLayout::build(const SystemStatsSample& sample, const PanelStyle& style,
                               const QSizeF& size, double measuredRowHeight,
                               double measuredNetworkHeight) {
    return build(sample, style, SystemStatsOptions{}, size, measuredRowHeight,
                 measuredNetworkHeight);
}

StatsLayout StatsLayout::build(const SystemStatsSample& sample, const PanelStyle& style,
                               const SystemStatsOptions& options, const QSizeF& size,
                               double measuredRowHeight, double measuredNetworkHeight) {
    StatsLayout layout;
    const PanelFonts::ScaledFont font = statsFont(style);
    layout.font = font.font;
    layout.fontScale = font.scale;
    const double width = std::max(0.0, size.width() - 2 * kPadding);
    layout.rowHeight = StatRow::height(layout.font) * layout.fontScale;
    layout.networkHeight = NetworkGraphView::height(layout.font) * layout.fontScale;
    const QList<StatRow> extra = ExtraStatRows::rows(sample, options);
    layout.fit = fittingDisks(sample.disks, size.height(), measuredRowHeight, measuredNetworkHeight,
                              extra.size());

    const StatsWarnings& warnings = options.warnings;
    QList<StatRow> rows{StatRow::cpu(sample.cpuUsage), StatRow::memory(sample)};
    rows[0].warningColor = StatWarning::above(warnings.cpu, sample.cpuUsage * 100);
    rows[1].warningColor = StatWarning::above(warnings.memory, sample.memoryUsedFraction * 100);
    rows.append(extra);
    for (const DiskInfo& disk : layout.fit.visible) {
        StatRow row = StatRow::disk(disk);
        row.warningColor = StatWarning::above(warnings.disks, disk.usedFraction * 100);
        rows.append(row);
    }
    double top = kPadding;
    for (const StatRow& row : rows) {
        Row placed{row, {}};
        top = place(top, width, layout.rowHeight, placed.rect);
        layout.rows.append(placed);
    }
    if (layout.fit.hidden > 0) {
        layout.summary = summaryText(layout.fit.hidden);
        layout.summaryFont = PanelFonts::smallCaption();
        // Only the text itself shows the help, as wide as it is.
        const QFontMetricsF metrics(layout.summaryFont);
        top = place(top, std::min(width, metrics.horizontalAdvance(layout.summary)),
                    std::ceil(metrics.height()), layout.summaryRect);
    }
    place(top, width, layout.networkHeight, layout.graphRect);
    return layout;
}

} // namespace corkwheel
