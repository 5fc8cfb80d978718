// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/NetworkSample.h"
#include "model/PanelStyle.h"
#include "render/StatsLayout.h"

#include <QList>
#include <QRectF>

class QPainter;

namespace corkwheel::StatisticsBody {

// The dimmed style of the summary line.
inline constexpr double kSummaryOpacity = 0.5;

// Draws a system-stats panel's rows, summary line and network graph as `layout` placed
// them, in the style's text colour. `rect` is the whole panel. The shadow is the caller's
// to add.
void paint(QPainter& painter, const QRectF& rect, const StatsLayout& layout,
           const QList<NetworkSample>& history, const PanelStyle& style);

} // namespace corkwheel::StatisticsBody
