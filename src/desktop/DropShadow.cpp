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
// counts as transparent. Integer sums: this runs on every redraw of every shadowed panel.
void blurLine(uchar* values, int count, qsizetype stride, int radius, std::vector<uchar>& line) {
    line.resize(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i)
        line[i] = values[i * stride];
    const int window = 2 * radius + 1;
    int sum = 0;
    for (int i = 0; i < radius && i < count; ++i)
        sum += line[i];
    for (int i = 0; i < count; ++i) {
        if (i + radius < count)
            sum += line[i + radius];
        if (i - radius - 1 >= 0)
            sum -= line[i - radius - 1];
        values[i * stride] = static_cast<uchar>((sum + window / 2) / window);
    }
}

void boxBlur(QImage& alpha, const QRect& area, int radius) {
    if (radius <= 0 || area.isEmpty())
        return;
    std::vector<uchar> line;
    const qsizetype stride = alpha.bytesPerLine();
    uchar* origin = alpha.bits() + area.top() * stride + area.left();
    for (int y = 0; y < area.height(); ++y)
        blurLine(origin + y * stride, area.width(), 1, radius, line);
    for (int x = 0; x < area.width(); ++x)
        blurLine(origin + x, area.height(), stride, radius, line);
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

QImage blackFrom(const QImage& alpha, double opacity) {
    QImage shadow(alpha.size(), QImage::Format_ARGB32_Premultiplied);
    shadow.setDevicePixelRatio(alpha.devicePixelRatio());
    const int scale = std::clamp(static_cast<int>(std::lround(opacity * 256)), 0, 256);
    const int width = shadow.width();
    for (int y = 0; y < shadow.height(); ++y) {
        const uchar* from = alpha.constScanLine(y);
        auto* to = reinterpret_cast<QRgb*>(shadow.scanLine(y));
        for (int x = 0; x < width; ++x)
            to[x] = qRgba(0, 0, 0, (from[x] * scale) >> 8);
    }
    return shadow;
}

} // namespace

QImage shadowOf(const QImage& image, double radiusPixels, double opacity) {
    QImage alpha = image.convertToFormat(QImage::Format_Alpha8);
    const double sigma = radiusPixels / 2.0;
    if (sigma > 0) {
        const std::array<int, kPasses> widths = boxWidths(sigma);
        int reach = 0;
        for (const int width : widths)
            reach += (width - 1) / 2;
        // Only around what was painted can the blur leave anything.
        const QRect area = paintedArea(alpha).adjusted(-reach, -reach, reach, reach) &
                           QRect(QPoint(), alpha.size());
        for (const int width : widths)
            boxBlur(alpha, area, (width - 1) / 2);
    }
    return blackFrom(alpha, opacity);
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
