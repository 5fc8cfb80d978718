// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QImage>
#include <QRect>

namespace corkwheel::DropShadow {

// The shadow under a panel's text and statistics, which keeps them legible on any
// wallpaper: black at 0.6, blurred with a radius of 3 points, one point down.
inline constexpr double kOpacity = 0.6;
inline constexpr double kRadius = 3;
inline constexpr double kOffsetY = 1;

// The shadow of `image`: its alpha blurred (a Gaussian whose standard deviation is half of
// `radiusPixels`, made of three box blurs), as black at `opacity`. Same size and device
// pixel ratio as `image`.
QImage shadowOf(const QImage& image, double radiusPixels, double opacity);

// How many pixels beyond a pixel the blur of `radiusPixels` spreads it.
int reach(double radiusPixels);

// Brings `shadow`, the shadow `shadowOf` made of `image`, up to date after `image` changed
// within `changed` (pixels). Only the shadow around the change is blurred again; it comes
// out exactly as `shadowOf` would make it. Returns the pixels of `shadow` rewritten.
QRect updateShadow(QImage& shadow, const QImage& image, const QRect& changed, double radiusPixels,
                   double opacity);

} // namespace corkwheel::DropShadow
