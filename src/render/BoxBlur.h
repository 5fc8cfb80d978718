// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QImage>
#include <QRect>

namespace corkwheel::BoxBlur {

// One box blur of `radius` over `area` of an 8-bit alpha image: each pixel becomes the
// rounded mean of the 2·radius+1 pixels around it in its row, then the same in its column.
// Outside the area counts as transparent.
void blur(QImage& alpha, const QRect& area, int radius);

// The same `passes` times over every channel of a colour image, which comes back as
// ARGB32_Premultiplied. Beyond its edges the image counts as repeating its edge pixels at
// each pass, so the edges keep their colour instead of fading out.
QImage blurColours(const QImage& image, int radius, int passes);

} // namespace corkwheel::BoxBlur
