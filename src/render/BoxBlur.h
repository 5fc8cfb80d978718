// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QImage>
#include <QRect>

namespace corkwheel::BoxBlur {

// One box blur of `radius` over `area` of an 8-bit alpha image: each pixel becomes the
// rounded mean of the 2·radius+1 pixels around it in its row, then the same in its column.
// Outside the area counts as transparent.
void blur(QImage& alpha, const QRect& area, int radius);

} // namespace corkwheel::BoxBlur
