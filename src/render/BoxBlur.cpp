// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/BoxBlur.h"

#include <algorithm>
#include <array>
#include <vector>

namespace corkwheel::BoxBlur {

namespace {

// The rounded mean of a window's sum. A multiplication, not a division: this runs for every
// pixel of every pass. Exact: the mean of an odd window is never within float error of a
// half.
struct Mean {
    explicit Mean(int window) : inverse(1.0f / static_cast<float>(window)) {}
    uchar operator()(int sum) const {
        return static_cast<uchar>(static_cast<float>(sum) * inverse + 0.5f);
    }
    float inverse;
};

// Runs `step` for every column from 0 to `count`: in blocks of a fixed size, which the
// compiler turns into vector instructions, then one at a time for the rest.
template <typename Step> void forColumns(int count, Step step) {
    constexpr int kBlock = 16;
    int x = 0;
    for (; x + kBlock <= count; x += kBlock) {
        for (int k = 0; k < kBlock; ++k)
            step(x + k);
    }
    for (; x < count; ++x)
        step(x);
}

// The steps of a blur, each over `count` columns of a row. The pointers never overlap,
// which lets the compiler work on many columns at once.
void addRow(int* __restrict sums, const uchar* __restrict values, int count) {
    forColumns(count, [=](int x) { sums[x] += values[x]; });
}

void subtractRow(int* __restrict sums, const uchar* __restrict values, int count) {
    forColumns(count, [=](int x) { sums[x] -= values[x]; });
}

void writeMeans(uchar* __restrict values, const int* __restrict sums, int count, Mean mean) {
    forColumns(count, [=](int x) { values[x] = mean(sums[x]); });
}

// One box blur of `radius` along the rows of `area`; outside the area counts as
// transparent. Each row is summed as the 2·radius+1 shifts of itself.
void blurRows(QImage& alpha, const QRect& area, int radius) {
    const int width = area.width();
    const Mean mean(2 * radius + 1);
    std::vector<uchar> padded(static_cast<size_t>(width + 2 * radius), 0);
    std::vector<int> sums(static_cast<size_t>(width));
    for (int y = area.top(); y <= area.bottom(); ++y) {
        uchar* values = alpha.scanLine(y) + area.left();
        std::copy(values, values + width, padded.begin() + radius);
        std::fill(sums.begin(), sums.end(), 0);
        for (int shift = 0; shift <= 2 * radius; ++shift)
            addRow(sums.data(), padded.data() + shift, width);
        writeMeans(values, sums.data(), width, mean);
    }
}

// The same along the columns of `area`, worked through a row at a time with a running sum
// per column, so the image is read and written in rows. The rows that leave the window
// have been overwritten by then; their values are kept aside meanwhile.
void blurColumns(QImage& alpha, const QRect& area, int radius) {
    const int width = area.width();
    const int height = area.height();
    const auto row = [&](int y) { return alpha.scanLine(area.top() + y) + area.left(); };
    const Mean mean(2 * radius + 1);
    std::vector<int> sums(static_cast<size_t>(width), 0);
    std::vector<uchar> kept(static_cast<size_t>(width) * static_cast<size_t>(radius + 1));
    for (int y = 0; y < radius && y < height; ++y)
        addRow(sums.data(), row(y), width);
    for (int y = 0; y < height; ++y) {
        uchar* slot = kept.data() + static_cast<size_t>(y % (radius + 1)) * width;
        if (y + radius < height)
            addRow(sums.data(), row(y + radius), width);
        // The slot holds row y - radius - 1, which leaves the window now.
        if (y - radius - 1 >= 0)
            subtractRow(sums.data(), slot, width);
        uchar* current = row(y);
        std::copy(current, current + width, slot);
        writeMeans(current, sums.data(), width, mean);
    }
}

// One 8-bit image per channel of `image` (premultiplied ARGB), each `margin` pixels larger
// on every side, filled there with the nearest edge pixel.
std::array<QImage, 4> paddedChannels(const QImage& image, int margin) {
    const QSize size = image.size() + QSize(2 * margin, 2 * margin);
    std::array<QImage, 4> channels;
    for (QImage& channel : channels)
        channel = QImage(size, QImage::Format_Alpha8);
    for (int y = 0; y < size.height(); ++y) {
        const int sourceY = std::clamp(y - margin, 0, image.height() - 1);
        const auto* source = reinterpret_cast<const QRgb*>(image.constScanLine(sourceY));
        std::array<uchar*, 4> rows{};
        for (size_t c = 0; c < 4; ++c)
            rows[c] = channels[c].scanLine(y);
        for (int x = 0; x < size.width(); ++x) {
            const QRgb pixel = source[std::clamp(x - margin, 0, image.width() - 1)];
            rows[0][x] = static_cast<uchar>(qAlpha(pixel));
            rows[1][x] = static_cast<uchar>(qRed(pixel));
            rows[2][x] = static_cast<uchar>(qGreen(pixel));
            rows[3][x] = static_cast<uchar>(qBlue(pixel));
        }
    }
    return channels;
}

// The middle of the padded channels, merged back into one image of `size`.
QImage merged(const std::array<QImage, 4>& channels, QSize size, int margin) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < size.height(); ++y) {
        auto* target = reinterpret_cast<QRgb*>(image.scanLine(y));
        std::array<const uchar*, 4> rows{};
        for (size_t c = 0; c < 4; ++c)
            rows[c] = channels[c].constScanLine(y + margin) + margin;
        for (int x = 0; x < size.width(); ++x) {
            // Each channel was blurred alone; rounding can leave a colour a step above its
            // alpha, which premultiplied pixels must not be.
            const int alpha = rows[0][x];
            target[x] = qRgba(std::min<int>(rows[1][x], alpha), std::min<int>(rows[2][x], alpha),
                              std::min<int>(rows[3][x], alpha), alpha);
        }
    }
    return image;
}

} // namespace

QImage blurColours(const QImage& image, int radius, int passes) {
    QImage source = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (radius <= 0 || passes <= 0 || source.isNull())
        return source;
    const int margin = radius * passes;
    std::array<QImage, 4> channels = paddedChannels(source, margin);
    for (QImage& channel : channels) {
        for (int pass = 0; pass < passes; ++pass)
            blur(channel, channel.rect(), radius);
    }
    QImage blurred = merged(channels, source.size(), margin);
    blurred.setDevicePixelRatio(image.devicePixelRatio());
    return blurred;
}

void blur(QImage& alpha, const QRect& area, int radius) {
    if (radius <= 0 || area.isEmpty())
        return;
    blurRows(alpha, area, radius);
    blurColumns(alpha, area, radius);
}

} // namespace corkwheel::BoxBlur
