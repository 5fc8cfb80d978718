// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/NetworkSample.h"

#include <QColor>
#include <QFont>
#include <QList>
#include <QPainterPath>
#include <QRectF>
#include <QSizeF>
#include <QString>

class QPainter;

namespace corkwheel {

// The last item of a system-stats panel: a header naming the primary network connection
// with its current download and upload rates, and under it a small line graph of the
// recent throughput, download over upload on one shared scale. Draws only what it is
// given: the runner's history (oldest first, the last sample current) and a tint.
class NetworkGraphView {
public:
    NetworkGraphView(QList<NetworkSample> history, QColor tint);

    // Bytes per second as bits per second, in decimal steps: "1.0 Mbps", "1000 Kbps",
    // "800 bps".
    static QString rate(double bytesPerSecond);
    // The graph's vertical scale: the largest rate in `history`, never under kMinimumScale,
    // so an idle connection doesn't fill the graph with noise.
    static double maxValue(const QList<NetworkSample>& history);
    // One line of the graph: the values spread evenly from the left to the right edge, 0 on
    // the bottom edge and `maxValue` on the top one.
    static QPainterPath path(const QList<double>& values, const QSizeF& size, double maxValue);

    // "No Network" without a sample; the current sample's connection otherwise.
    QString title() const;
    QString symbolName() const;
    // Download, then upload: "1.0 Mbps ↓  800 bps ↑".
    QString ratesText() const;

    // Header, gap and canvas, in `font` (the surrounding text's).
    static double height(const QFont& font);
    static double headerHeight(const QFont& font);
    // Where the graph's lines are drawn when the view fills `rect`.
    static QRectF canvasRect(const QRectF& rect, const QFont& font);

    // Draws into `rect`; the header in `font` and `textColor`.
    void paint(QPainter& painter, const QRectF& rect, const QFont& font,
               const QColor& textColor) const;

    static constexpr double kMinimumScale = 32768;
    static constexpr double kCanvasHeight = 34;
    static constexpr double kSpacing = 4;
    static constexpr double kLineWidth = 1.5;
    static constexpr double kUploadOpacity = 0.45;
    static constexpr double kRatesOpacity = 0.8;

private:
    void paintHeader(QPainter& painter, const QRectF& rect, const QFont& font,
                     const QColor& textColor) const;
    void paintGraph(QPainter& painter, const QRectF& canvas) const;

    QList<NetworkSample> m_history;
    QColor m_tint;
};

} // namespace corkwheel
