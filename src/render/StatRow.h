// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/DiskInfo.h"
#include "engine/SystemStatsSample.h"

#include <QColor>
#include <QFont>
#include <QList>
#include <QRectF>
#include <QString>

class QPainter;

namespace corkwheel {

// One row of a system-stats panel: its label with a symbol and the detail figure on one
// line, and under it a bar that fills by `fraction`. The row of each core's load has a bar
// per core instead, beside its label and as high as the row.
struct StatRow {
    QString label;
    QString symbol;
    double fraction = 0;
    QString detail;
    // The colour the bar and the figure take while the row warns; invalid while it doesn't.
    QColor warningColor = {};
    // A row with nothing to measure against (a fan of unknown top speed, a figure that
    // could not be read) has no bar.
    bool hasBar = true;
    // Each core's share, for the cores' row.
    QList<double> coreBars = {};

    static StatRow cpu(double usage);
    static StatRow memory(const SystemStatsSample& sample);
    static StatRow disk(const DiskInfo& disk);
    static StatRow cores(const QList<double>& usages);

    // Usage as a whole percentage, cut toward zero: 0.999 is "99%".
    static QString cpuDetail(double usage);
    static QString memoryDetail(double usedGB, double totalGB);
    static QString diskDetail(double freeGB);
    // What the bar shows: `fraction` within 0...1.
    static double barFraction(double fraction);

    // The row's height when set in `font`.
    static double height(const QFont& font);
    static double lineHeight(const QFont& font);

    // Draws the row into `rect` in `font` and `color`.
    void paint(QPainter& painter, const QRectF& rect, const QFont& font, const QColor& color) const;

    static constexpr double kLineToBar = 4;
    static constexpr double kBarHeight = 4;
    static constexpr double kDetailOpacity = 0.8;
    static constexpr double kTrackOpacity = 0.25;
    // Between two cores' bars, unless there are too many for the row's width.
    static constexpr double kCoreBarGap = 2;

    bool operator==(const StatRow&) const = default;

private:
    void paintLine(QPainter& painter, const QRectF& rect, const QFont& font,
                   const QColor& color) const;
    void paintBar(QPainter& painter, const QRectF& rect, const QColor& color) const;
    void paintCoreBars(QPainter& painter, const QRectF& rect, const QFont& font,
                       const QColor& color) const;
};

} // namespace corkwheel
