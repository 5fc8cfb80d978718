// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPointF>
#include <QString>

class QFont;
class QPainter;

namespace corkwheel::ShapedText {

// Short lines that come back at every redraw of a statistics panel (row labels, units,
// the rates' arrows) are shaped once per font and kept as glyph runs, so a redraw only
// places glyphs. They look exactly as drawn text does.

// The advance of `text` in `font`, as QFontMetricsF::horizontalAdvance gives it.
double width(const QFont& font, const QString& text);

// Draws `text` on one line with its baseline starting at `baselineOrigin`, in the
// painter's font and pen. Returns its width.
double draw(QPainter& painter, QPointF baselineOrigin, const QString& text);

// Draws `text`, elided at its end when it is wider than `maxWidth`, as `draw` does.
void drawElided(QPainter& painter, QPointF baselineOrigin, const QString& text, double maxWidth);

} // namespace corkwheel::ShapedText
