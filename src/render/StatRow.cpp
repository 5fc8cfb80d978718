// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/StatRow.h"

#include "render/MonospacedDigits.h"
#include "render/PanelColors.h"
#include "render/PanelFonts.h"
#include "render/ShapedText.h"
#include "render/Symbols.h"

#include <QCoreApplication>
#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace corkwheel {

namespace {

// Between a label's symbol and its text, and between the label and the detail.
constexpr double kLabelSpacing = 6;

} // namespace

StatRow StatRow::cpu(double usage) {
    return {QCoreApplication::translate("corkwheel::StatRow", "CPU"), QStringLiteral("cpu"), usage,
            cpuDetail(usage)};
}

StatRow StatRow::memory(const SystemStatsSample& sample) {
    return {QCoreApplication::translate("corkwheel::StatRow", "Memory"),
            QStringLiteral("memorychip"), sample.memoryUsedFraction,
            memoryDetail(sample.memoryUsedGB, sample.memoryTotalGB)};
}

StatRow StatRow::disk(const DiskInfo& disk) {
    return {disk.name,
            disk.isInternal ? QStringLiteral("internaldrive") : QStringLiteral("externaldrive"),
            disk.usedFraction, diskDetail(disk.freeGB)};
}

StatRow StatRow::cores(const QList<double>& usages) {
    StatRow row{
        QCoreApplication::translate("corkwheel::StatRow", "Cores"), QStringLiteral("cpu"), 0, {}};
    row.coreBars = usages;
    return row;
}

QString StatRow::cpuDetail(double usage) {
    // A reading is a share of 0...1; anything else is shown as it comes, within reason.
    const double percent = std::isfinite(usage) ? std::clamp(usage * 100, -1e9, 1e9) : 0.0;
    return QString::number(static_cast<qint64>(std::trunc(percent))) + u'%';
}

QString StatRow::memoryDetail(double usedGB, double totalGB) {
    return QCoreApplication::translate("corkwheel::StatRow", "%1 / %2 GB")
        .arg(QString::asprintf("%.1f", usedGB), QString::asprintf("%.1f", totalGB));
}

QString StatRow::diskDetail(double freeGB) {
    return QCoreApplication::translate("corkwheel::StatRow", "%1 GB free")
        .arg(QString::asprintf("%.0f", freeGB));
}

double StatRow::barFraction(double fraction) {
    return std::isfinite(fraction) ? std::clamp(fraction, 0.0, 1.0) : 0.0;
}

double StatRow::lineHeight(const QFont& font) {
    // Whole points keep the bar on the pixel grid, so its edges stay crisp.
    return std::ceil(std::max(QFontMetricsF(font).height(), PanelFonts::sizeOf(font)));
}

double StatRow::height(const QFont& font) {
    return lineHeight(font) + kLineToBar + kBarHeight;
}

void StatRow::paint(QPainter& painter, const QRectF& rect, const QFont& font,
                    const QColor& color) const {
    if (!coreBars.isEmpty()) {
        paintCoreBars(painter, rect, font, color);
        return;
    }
    const double line = lineHeight(font);
    paintLine(painter, QRectF(rect.topLeft(), QSizeF(rect.width(), line)), font, color);
    if (hasBar)
        paintBar(painter,
                 QRectF(rect.left(), rect.top() + line + kLineToBar, rect.width(), kBarHeight),
                 color);
}

// The label on the line, as in every row; the bars fill the rest of the width, side by side,
// each as high as the whole row and filled from the bottom by its core's share.
void StatRow::paintCoreBars(QPainter& painter, const QRectF& rect, const QFont& font,
                            const QColor& color) const {
    const double line = lineHeight(font);
    StatRow labelOnly = *this;
    labelOnly.coreBars.clear();
    labelOnly.detail.clear();
    labelOnly.paintLine(painter, QRectF(rect.topLeft(), QSizeF(rect.width(), line)), font, color);
    const double labelRight = rect.left() + PanelFonts::sizeOf(font) + kLabelSpacing +
                              QFontMetricsF(font).horizontalAdvance(label) + 2 * kLabelSpacing;
    const QRectF area(labelRight, rect.top(), std::max(0.0, rect.right() - labelRight),
                      rect.height());
    const auto count = static_cast<double>(coreBars.size());
    // The gap shrinks, and at last goes, before a bar gets narrower than a point.
    const double gap =
        std::clamp((area.width() - count) / std::max(count - 1, 1.0), 0.0, kCoreBarGap);
    const double barWidth = std::max(0.0, (area.width() - gap * (count - 1)) / count);
    const QColor track = PanelColors::withOpacity(color, kTrackOpacity);
    for (qsizetype i = 0; i < coreBars.size(); ++i) {
        const QRectF bar(area.left() + double(i) * (barWidth + gap), area.top(), barWidth,
                         area.height());
        painter.fillRect(bar, track);
        const double filled = bar.height() * barFraction(coreBars[i]);
        painter.fillRect(QRectF(bar.left(), bar.bottom() - filled, bar.width(), filled), color);
    }
}

void StatRow::paintLine(QPainter& painter, const QRectF& rect, const QFont& font,
                        const QColor& color) const {
    const QFontMetricsF metrics(font);
    const double symbolSize = PanelFonts::sizeOf(font);
    const double baseline = rect.center().y() - metrics.height() / 2 + metrics.ascent();
    const double detailWidth = MonospacedDigits::width(font, detail);

    Symbols::paint(painter,
                   QRectF(rect.left(), rect.center().y() - symbolSize / 2, symbolSize, symbolSize),
                   symbol, color);
    const double labelLeft = rect.left() + symbolSize + kLabelSpacing;
    const double labelWidth = std::max(0.0, rect.right() - detailWidth - kLabelSpacing - labelLeft);
    painter.setFont(font);
    painter.setPen(color);
    ShapedText::drawElided(painter, QPointF(labelLeft, baseline), label, labelWidth);
    painter.setPen(warningColor.isValid() ? warningColor
                                          : PanelColors::withOpacity(color, kDetailOpacity));
    MonospacedDigits::draw(painter, QPointF(rect.right() - detailWidth, baseline), detail);
}

void StatRow::paintBar(QPainter& painter, const QRectF& rect, const QColor& color) const {
    const double radius = rect.height() / 2;
    QPainterPath track;
    track.addRoundedRect(rect, radius, radius);
    painter.fillPath(track, PanelColors::withOpacity(color, kTrackOpacity));
    const double filled = rect.width() * barFraction(fraction);
    if (filled <= 0)
        return;
    // The filled part is the track's shape cut at the fraction, so its left end stays round
    // and its right end follows the value exactly.
    QPainterPath part;
    part.addRect(QRectF(rect.topLeft(), QSizeF(filled, rect.height())));
    painter.fillPath(track.intersected(part), warningColor.isValid() ? warningColor : color);
}

} // namespace corkwheel
