// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPointF>
#include <QString>

class QFont;
class QPainter;

namespace corkwheel::MonospacedDigits {

// Figures that change every second (rates, percentages, gigabytes) are set with every
// digit in a cell as wide as the widest digit, so the text doesn't jitter as it changes,
// whatever the font. Other characters keep their own width.

double width(const QFont& font, const QString& text);

// Draws `text` with its baseline starting at `baselineOrigin`, in the painter's font and
// pen.
void draw(QPainter& painter, QPointF baselineOrigin, const QString& text);

} // namespace corkwheel::MonospacedDigits
