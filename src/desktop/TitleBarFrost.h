// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QImage>

namespace corkwheel {

// The frosted glass of the edit-mode title bar, made from what the panel draws beneath it:
// blurred so that none of its detail shows through, laid on dark glass so the bar is
// opaque, hazed a little so a black panel still shows a pane, and darkened as far as the
// bar's white name and symbol need to stand out clearly on its brightest spot.
namespace TitleBarFrost {

// The frost is made at a quarter of the bar's size in points and blurred there, which
// costs a sixteenth of blurring it in full; drawn stretched smoothly, it comes out as
// soft as the full blur would, and no detail survives the shrinking anyway.
inline constexpr int kShrink = 4;
// In the shrunk image's pixels.
inline constexpr int kBlurRadius = 1;
inline constexpr int kBlurPasses = 3;
// The relative luminance the bar never goes above: white on it has a contrast of 4.5:1
// at the least, with some margin.
inline constexpr double kBrightest = 0.16;

// `under` is what the panel draws under the bar, at its device pixel ratio. The frost is
// smaller: it is meant to be drawn stretched over the whole bar.
QImage frost(const QImage& under);

// The relative luminance of an sRGB colour, 0 for black to 1 for white.
double luminance(QRgb colour);

} // namespace TitleBarFrost

} // namespace corkwheel
