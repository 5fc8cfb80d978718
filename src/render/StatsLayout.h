// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/DiskInfo.h"
#include "engine/SystemStatsSample.h"
#include "model/PanelStyle.h"
#include "model/SystemStatsOptions.h"
#include "render/PanelFonts.h"
#include "render/StatRow.h"

#include <QFont>
#include <QList>
#include <QRectF>
#include <QSizeF>
#include <QString>

namespace corkwheel {

// The disks a system-stats panel has room for, in the sample's order, and how many it
// leaves out.
struct DiskFit {
    QList<DiskInfo> visible;
    qint64 hidden = 0;

    bool operator==(const DiskFit&) const = default;
};

// Where everything of a system-stats panel goes, top to bottom, 10 points apart inside a
// 14-point padding: the CPU row, the memory row, the optional rows the panel asks for, one
// row per disk that fits in what is left, a summary line for the disks that don't, and the
// network graph.
class StatsLayout {
public:
    struct Row {
        StatRow row;
        QRectF rect;
    };

    // Which disks fit in a panel `totalHeight` points high, given the height of one row
    // and of the network graph as last measured (0 when not measured yet: 30 and 50 are
    // assumed then). When not all fit, one place goes to the summary line.
    static DiskFit fittingDisks(const QList<DiskInfo>& disks, double totalHeight,
                                double measuredRowHeight, double measuredNetworkHeight);
    // The same below `extraRows` optional rows, each as high as a row.
    static DiskFit fittingDisks(const QList<DiskInfo>& disks, double totalHeight,
                                double measuredRowHeight, double measuredNetworkHeight,
                                qint64 extraRows);
    // "+1 more disk", "+3 more disks".
    static QString summaryText(qint64 hidden);
    // The statistics are set 2 points smaller than the style's font, but never under 10.
    static double fontSize(double styleFontSize);
    static PanelFonts::ScaledFont statsFont(const PanelStyle& style);

    static StatsLayout build(const SystemStatsSample& sample, const PanelStyle& style,
                             const QSizeF& size, double measuredRowHeight,
                             double measuredNetworkHeight);
    // With the optional rows and the warnings of `options`.
    static StatsLayout build(const SystemStatsSample& sample, const PanelStyle& style,
                             const SystemStatsOptions& options, const QSizeF& size,
                             double measuredRowHeight, double measuredNetworkHeight);

    // The rows and the graph are drawn with `font`, scaled by `fontScale` (see ScaledFont);
    // the rectangles are the panel's own.
    QFont font;
    double fontScale = 1;
    QList<Row> rows;
    DiskFit fit;
    // Empty when every disk is shown.
    QString summary;
    QFont summaryFont;
    QRectF summaryRect;
    QRectF graphRect;
    // The heights of a row and of the graph as laid out here: the measurements for the
    // next layout.
    double rowHeight = 0;
    double networkHeight = 0;

    static constexpr double kPadding = 14;
    static constexpr double kSpacing = 10;
    static constexpr double kDefaultRowHeight = 30;
    static constexpr double kDefaultNetworkHeight = 50;
    static constexpr double kMinimumFontSize = 10;
};

} // namespace corkwheel
