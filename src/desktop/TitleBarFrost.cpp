// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/TitleBarFrost.h"

#include "render/BoxBlur.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace corkwheel::TitleBarFrost {

namespace {

const QColor kGlass(30, 30, 33);
const QColor kHaze = QColor::fromRgbF(1, 1, 1, 0.08f);

// Every encoded 8-bit value in linear light: the bar's pixels are measured one by one.
const std::array<double, 256>& linearTable() {
    static const std::array<double, 256> table = [] {
        std::array<double, 256> values{};
        for (size_t channel = 0; channel < values.size(); ++channel) {
            const double value = static_cast<double>(channel) / 255.0;
            values[channel] =
                value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        }
        return values;
    }();
    return table;
}

double linear(int channel) {
    return linearTable()[static_cast<size_t>(channel)];
}

double brightest(const QImage& image) {
    double most = 0;
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            most = std::max(most, luminance(row[x]));
    }
    return most;
}

// Scales every colour so that the brightest is no brighter than kBrightest. Luminance
// follows a power of about 2.4 of the encoded value, so a factor on the encoded values
// takes it down by that power; a second pass catches what the approximation left over.
void darken(QImage& image) {
    for (int pass = 0; pass < 2; ++pass) {
        const double most = brightest(image);
        if (most <= kBrightest)
            return;
        const double factor = std::pow(kBrightest / most, 1 / 2.4) * 0.98;
        for (int y = 0; y < image.height(); ++y) {
            auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
            for (int x = 0; x < image.width(); ++x) {
                const QRgb pixel = row[x];
                row[x] = qRgb(static_cast<int>(qRed(pixel) * factor),
                              static_cast<int>(qGreen(pixel) * factor),
                              static_cast<int>(qBlue(pixel) * factor));
            }
        }
    }
}

} // namespace

double luminance(QRgb colour) {
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) +
           0.0722 * linear(qBlue(colour));
}

QImage frost(const QImage& under) {
    if (under.isNull())
        return {};
    const QSizeF points = under.deviceIndependentSize();
    const QSize shrunk(std::max(1, static_cast<int>(std::ceil(points.width() / kShrink))),
                       std::max(1, static_cast<int>(std::ceil(points.height() / kShrink))));
    QImage small = under.scaled(shrunk, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    small.setDevicePixelRatio(1);
    const QImage blurred = BoxBlur::blurColours(small, kBlurRadius, kBlurPasses);
    QImage glass(shrunk, QImage::Format_RGB32);
    glass.fill(kGlass);
    {
        QPainter painter(&glass);
        painter.drawImage(QPointF(), blurred);
        painter.fillRect(glass.rect(), kHaze);
    }
    darken(glass);
    return glass;
}

} // namespace corkwheel::TitleBarFrost
