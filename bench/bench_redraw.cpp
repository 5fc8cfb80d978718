// SPDX-License-Identifier: GPL-3.0-or-later

// What one refresh of a starter panel costs to draw: the clock's tick (a new second) and a
// new reading of the system statistics, each drawn into the panel's kept layer, which
// compares it with the drawing before and blurs the shadow again only around what changed;
// and, for comparison, the same drawing with its shadow blurred in full.
//
//   QT_QPA_PLATFORM=offscreen build/bench/bench_redraw

#include "BenchTimer.h"

#include "model/Panel.h"
#include "render/DropShadow.h"
#include "render/ShadowedLayer.h"
#include "render/StatisticsBody.h"
#include "render/StatsLayout.h"
#include "render/TextBody.h"

#include <QApplication>
#include <QPainter>

using namespace corkwheel;

namespace {

// As the starter panels have them.
Panel clockPanel() {
    Panel panel = Panel::makeDefault(PanelType::Clock);
    panel.style.fontSize = 28;
    return panel;
}

Panel statsPanel() {
    Panel panel = Panel::makeDefault(PanelType::SystemStats);
    panel.style.showGlassBackground = true;
    return panel;
}

const QSize kClockSize(360, 80);
const QSize kStatsSize(280, 210);

// The clock's text at second `second`.
QString clockText(int second) {
    return QStringLiteral(u"Thursday, November 22  \u2022  4:00:%1 AM")
        .arg(second % 60, 2, 10, QLatin1Char('0'));
}

ShadowedLayer::Drawing drawClock(const QString& text, const PanelStyle& style) {
    return [text, style](QPainter& painter) {
        TextBody::paint(painter, QRectF(QPointF(), kClockSize), text, style);
    };
}

SystemStatsSample sample(int refresh) {
    SystemStatsSample reading;
    reading.cpuUsage = (refresh * 37 % 100) / 100.0;
    reading.memoryUsedFraction = 0.41;
    reading.memoryUsedGB = 9.8;
    reading.memoryTotalGB = 23.4;
    reading.disks = {DiskInfo{QStringLiteral("/"), QStringLiteral("System"), true, 0.52, 14, 29}};
    return reading;
}

QList<NetworkSample> history(int refresh) {
    QList<NetworkSample> samples;
    for (int i = 0; i < 40; ++i) {
        samples.append({QStringLiteral("Ethernet"), NetworkInterfaceKind::Ethernet,
                        double((refresh + i) * 7919 % 60000), double((refresh + i) * 104 % 9000)});
    }
    return samples;
}

ShadowedLayer::Drawing drawStats(int refresh, const PanelStyle& style) {
    return [refresh, style](QPainter& painter) {
        const StatsLayout layout =
            StatsLayout::build(sample(refresh), style, QSizeF(kStatsSize), 0, 0);
        StatisticsBody::paint(painter, QRectF(QPointF(), kStatsSize), layout, history(refresh),
                              style);
    };
}

// The drawing with its shadow blurred in full, as without a kept layer.
void drawInFull(const QSize& size, const ShadowedLayer::Drawing& drawing) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
        drawing(painter);
    }
    (void)DropShadow::shadowOf(image, DropShadow::kRadius, DropShadow::kOpacity);
}

} // namespace

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    const PanelStyle clock = clockPanel().style;
    const PanelStyle stats = statsPanel().style;

    ShadowedLayer clockLayer;
    int second = 0;
    clockLayer.redraw(kClockSize, 1, true, drawClock(clockText(second), clock));
    bench::measure("clock tick, kept layer", 2000, [&] {
        ++second;
        (void)clockLayer.redraw(kClockSize, 1, true, drawClock(clockText(second), clock));
    });
    bench::measure("clock tick, shadow in full", 2000,
                   [&] { drawInFull(kClockSize, drawClock(clockText(++second), clock)); });

    ShadowedLayer statsLayer;
    int refresh = 0;
    statsLayer.redraw(kStatsSize, 1, true, drawStats(refresh, stats));
    bench::measure("statistics refresh, kept layer", 1000, [&] {
        ++refresh;
        (void)statsLayer.redraw(kStatsSize, 1, true, drawStats(refresh, stats));
    });
    bench::measure("statistics refresh, shadow in full", 1000,
                   [&] { drawInFull(kStatsSize, drawStats(++refresh, stats)); });
    return 0;
}
