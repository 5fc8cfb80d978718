// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QImage>
#include <QList>
#include <QRect>

namespace corkwheel::ChangedArea {

// Where `after` differs from `before`, two images of the same size and 32-bit format, as
// rectangles of pixels: one per run of changed rows, as wide as the changes within it. Runs
// with fewer than `gap` unchanged rows between them are joined into one.
QList<QRect> between(const QImage& before, const QImage& after, int gap);

} // namespace corkwheel::ChangedArea
