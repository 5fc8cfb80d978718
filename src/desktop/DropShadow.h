#pragma once

#include <QImage>
#include <QRectF>

#include <functional>

class QPainter;

namespace corkwheel::DropShadow {

// The shadow under a panel's text and statistics, which keeps them legible on any
// wallpaper: black at 0.6, blurred with a radius of 3 points, one point down.
inline constexpr double kOpacity = 0.6;
inline constexpr double kRadius = 3;
inline constexpr double kOffsetY = 1;

// Paints `content` within `area` and, when `visible`, the shadow of what it painted beneath
// it. The content is first painted into a buffer at the painter's device pixel ratio,
// whose alpha becomes the shadow; without a shadow it is painted straight onto `painter`.
void paint(QPainter& painter, const QRectF& area, bool visible,
           const std::function<void(QPainter&)>& content);

// The shadow of `image`: its alpha blurred (a Gaussian whose standard deviation is half of
// `radiusPixels`, made of three box blurs), as black at `opacity`. Same size and device
// pixel ratio as `image`.
QImage shadowOf(const QImage& image, double radiusPixels, double opacity);

} // namespace corkwheel::DropShadow
