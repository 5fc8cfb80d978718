// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/DropShadow.h"

#include "render/BoxBlur.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace corkwheel::DropShadow {

namespace {

constexpr int kPasses = 3;

// Widths of three box blurs that together approximate a Gaussian of `sigma`.
std::array<int, kPasses> boxWidths(double sigma) {
    const double ideal = std::sqrt(12.0 * sigma * sigma / kPasses + 1.0);
    int lower = static_cast<int>(std::floor(ideal));
    if (lower % 2 == 0)
        --lower;
    const int upper = lower + 2;
    const double idealLowerCount =
        (12.0 * sigma * sigma - kPasses * lower * lower - 4.0 * kPasses * lower - 3.0 * kPasses) /
        (-4.0 * lower - 4.0);
    const long lowerCount = std::lround(idealLowerCount);
    std::array<int, kPasses> widths{};
    for (int i = 0; i < kPasses; ++i)
        widths[i] = i < lowerCount ? lower : upper;
    return widths;
}

// The smallest rectangle holding every pixel that is not fully transparent.
QRect paintedArea(const QImage& alpha) {
    const int width = alpha.width();
    const int height = alpha.height();
    int left = width, top = height, right = -1, bottom = -1;
    for (int y = 0; y < height; ++y) {
        const uchar* row = alpha.constScanLine(y);
        for (int x = 0; x < width; ++x) {
            if (row[x] == 0)
                continue;
            left = std::min(left, x);
            right = std::max(right, x);
            top = std::min(top, y);
            bottom = std::max(bottom, y);
        }
    }
    return right < 0 ? QRect() : QRect(QPoint(left, top), QPoint(right, bottom));
}

// Writes the part `area` of `alpha` into `shadow` at `to`, as black at `opacity`.
void paintBlack(const QImage& alpha, const QRect& area, double opacity, QImage& shadow,
                const QPoint& to) {
    const int scale = std::clamp(static_cast<int>(std::lround(opacity * 256)), 0, 256);
    for (int y = 0; y < area.height(); ++y) {
        const uchar* from = alpha.constScanLine(area.top() + y) + area.left();
        auto* into = reinterpret_cast<QRgb*>(shadow.scanLine(to.y() + y)) + to.x();
        for (int x = 0; x < area.width(); ++x)
            into[x] = qRgba(0, 0, 0, (from[x] * scale) >> 8);
    }
}

// Blurs `alpha` where anything was painted and as far around it as the blur reaches.
void blurPainted(QImage& alpha, double radiusPixels) {
    const double sigma = radiusPixels / 2.0;
    if (sigma <= 0)
        return;
    const int spread = reach(radiusPixels);
    // Only around what was painted can the blur leave anything.
    const QRect area = paintedArea(alpha).adjusted(-spread, -spread, spread, spread) &
                       QRect(QPoint(), alpha.size());
    for (const int width : boxWidths(sigma))
        BoxBlur::blur(alpha, area, (width - 1) / 2);
}

} // namespace

int reach(double radiusPixels) {
    const double sigma = radiusPixels / 2.0;
    if (sigma <= 0)
        return 0;
    int spread = 0;
    for (const int width : boxWidths(sigma))
        spread += (width - 1) / 2;
    return spread;
}

QImage shadowOf(const QImage& image, double radiusPixels, double opacity) {
    QImage alpha = image.convertToFormat(QImage::Format_Alpha8);
    blurPainted(alpha, radiusPixels);
    QImage shadow(alpha.size(), QImage::Format_ARGB32_Premultiplied);
    shadow.setDevicePixelRatio(alpha.devicePixelRatio());
    paintBlack(alpha, alpha.rect(), opacity, shadow, QPoint());
    return shadow;
}

// A shadow pixel depends only on the image within the blur's reach of it. So the shadow
// around the change, up to the reach, is blurred from the image up to twice the reach,
// and blurring that piece on its own gives those pixels exactly their values in the whole.
QRect updateShadow(QImage& shadow, const QImage& image, const QRect& changed, double radiusPixels,
                   double opacity) {
    const int spread = reach(radiusPixels);
    const QRect bounds = image.rect();
    const QRect rewritten = changed.adjusted(-spread, -spread, spread, spread) & bounds;
    if (rewritten.isEmpty())
        return {};
    const QRect source =
        changed.adjusted(-2 * spread, -2 * spread, 2 * spread, 2 * spread) & bounds;
    QImage alpha = image.copy(source).convertToFormat(QImage::Format_Alpha8);
    blurPainted(alpha, radiusPixels);
    paintBlack(alpha, rewritten.translated(-source.topLeft()), opacity, shadow,
               rewritten.topLeft());
    return rewritten;
}

} // namespace corkwheel::DropShadow
