// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/ShapedText.h"

#include "render/FontCache.h"

#include <QFontMetricsF>
#include <QGlyphRun>
#include <QPainter>
#include <QTextLayout>

#include <utility>

namespace corkwheel::ShapedText {

namespace {

struct Line {
    QList<QGlyphRun> runs;
    // From the top of the line to its baseline, which the runs' positions are measured from.
    double ascent = 0;
    double width = 0;
};

Line shape(const QFont& font, const QString& text) {
    QTextLayout layout(text, font);
    QTextOption option;
    option.setWrapMode(QTextOption::NoWrap);
    layout.setTextOption(option);
    layout.beginLayout();
    const QTextLine first = layout.createLine();
    layout.endLayout();
    Line line;
    line.width = QFontMetricsF(font).horizontalAdvance(text);
    if (first.isValid()) {
        line.runs = first.glyphRuns();
        line.ascent = first.ascent();
    }
    return line;
}

const Line& lineOf(const QFont& font, const QString& text) {
    // Far more than the lines of every panel on a desktop; only text that keeps changing,
    // such as a row's label elided anew at every step of resizing its panel, fills it.
    constexpr qsizetype kMaxLines = 512;
    static FontCache<std::pair<QFont, QString>, Line> lines(kMaxLines);
    return lines.value({font, text}, [&] { return shape(font, text); });
}

} // namespace

double width(const QFont& font, const QString& text) {
    return lineOf(font, text).width;
}

double draw(QPainter& painter, QPointF baselineOrigin, const QString& text) {
    const Line& line = lineOf(painter.font(), text);
    const QPointF topLeft(baselineOrigin.x(), baselineOrigin.y() - line.ascent);
    for (const QGlyphRun& run : line.runs)
        painter.drawGlyphRun(topLeft, run);
    return line.width;
}

void drawElided(QPainter& painter, QPointF baselineOrigin, const QString& text, double maxWidth) {
    const QFont font = painter.font();
    if (width(font, text) <= maxWidth) {
        draw(painter, baselineOrigin, text);
        return;
    }
    draw(painter, baselineOrigin, QFontMetricsF(font).elidedText(text, Qt::ElideRight, maxWidth));
}

} // namespace corkwheel::ShapedText
