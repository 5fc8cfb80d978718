#include "desktop/DropShadow.h"

#include "desktop/DevicePixelRatio.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

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

// One box blur of `radius` along a line of `count` values `stride` apart; outside the line
// counts as transparent.
void blurLine(float* values, int count, int stride, int radius, std::vector<float>& scratch) {
    scratch.resize(count);
    for (int i = 0; i < count; ++i)
        scratch[i] = values[i * stride];
    const float scale = 1.0f / static_cast<float>(2 * radius + 1);
    float sum = 0;
    for (int i = 0; i < radius && i < count; ++i)
        sum += scratch[i];
    for (int i = 0; i < count; ++i) {
        if (i + radius < count)
            sum += scratch[i + radius];
        if (i - radius - 1 >= 0)
            sum -= scratch[i - radius - 1];
        values[i * stride] = sum * scale;
    }
}

void boxBlur(std::vector<float>& alpha, int width, int height, int radius) {
    if (radius <= 0)
        return;
    std::vector<float> scratch;
    for (int y = 0; y < height; ++y)
        blurLine(alpha.data() + static_cast<size_t>(y) * width, width, 1, radius, scratch);
    for (int x = 0; x < width; ++x)
        blurLine(alpha.data() + x, height, width, radius, scratch);
}

std::vector<float> alphaOf(const QImage& image) {
    std::vector<float> alpha(static_cast<size_t>(image.width()) * image.height());
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            alpha[static_cast<size_t>(y) * image.width() + x] = static_cast<float>(qAlpha(line[x]));
    }
    return alpha;
}

QImage blackFrom(const std::vector<float>& alpha, const QImage& like, double opacity) {
    QImage shadow(like.size(), QImage::Format_ARGB32_Premultiplied);
    shadow.setDevicePixelRatio(like.devicePixelRatio());
    for (int y = 0; y < shadow.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(shadow.scanLine(y));
        for (int x = 0; x < shadow.width(); ++x) {
            const double a = alpha[static_cast<size_t>(y) * shadow.width() + x] * opacity;
            line[x] = qRgba(0, 0, 0, std::clamp(static_cast<int>(std::lround(a)), 0, 255));
        }
    }
    return shadow;
}

} // namespace

QImage shadowOf(const QImage& image, double radiusPixels, double opacity) {
    const QImage source = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    std::vector<float> alpha = alphaOf(source);
    const double sigma = radiusPixels / 2.0;
    if (sigma > 0) {
        for (const int width : boxWidths(sigma))
            boxBlur(alpha, source.width(), source.height(), (width - 1) / 2);
    }
    return blackFrom(alpha, source, opacity);
}

void paint(QPainter& painter, const QRectF& area, bool visible,
           const std::function<void(QPainter&)>& content) {
    if (!visible) {
        content(painter);
        return;
    }
    if (area.isEmpty())
        return;
    const double ratio = paintRatio(painter);
    QImage layer(static_cast<int>(std::ceil(area.width() * ratio)),
                 static_cast<int>(std::ceil(area.height() * ratio)),
                 QImage::Format_ARGB32_Premultiplied);
    layer.setDevicePixelRatio(ratio);
    layer.fill(Qt::transparent);
    {
        QPainter layerPainter(&layer);
        layerPainter.setRenderHints(painter.renderHints());
        layerPainter.translate(-area.topLeft());
        content(layerPainter);
    }
    painter.drawImage(area.topLeft() + QPointF(0, kOffsetY),
                      shadowOf(layer, kRadius * ratio, kOpacity));
    painter.drawImage(area.topLeft(), layer);
}

} // namespace corkwheel::DropShadow
