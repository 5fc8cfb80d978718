// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/BoxBlur.h"

#include <algorithm>
#include <array>
#include <cstddef>
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

// One box blur of `radius` along a line of `count` pixels of four channels each, starting
// at `first` and `stride` values apart. The line's end pixels count as repeated beyond its
// ends. `line` is room for a copy of it, to read from while it is written.
void blurLine(int* first, int count, ptrdiff_t stride, int radius, std::vector<int>& line) {
    line.resize(static_cast<size_t>(count) * 4);
    for (int i = 0; i < count; ++i)
        std::copy_n(first + i * stride, 4, line.begin() + static_cast<ptrdiff_t>(i) * 4);
    const auto pixel = [&](int i) {
        return line.data() + static_cast<ptrdiff_t>(std::clamp(i, 0, count - 1)) * 4;
    };
    std::array<int, 4> sums{};
    for (int i = -radius; i <= radius; ++i) {
        for (size_t c = 0; c < 4; ++c)
            sums[c] += pixel(i)[c];
    }
    const Mean mean(2 * radius + 1);
    for (int i = 0; i < count; ++i) {
        int* values = first + i * stride;
        const int* entering = pixel(i + radius + 1);
        const int* leaving = pixel(i - radius);
        for (size_t c = 0; c < 4; ++c) {
            values[c] = mean(sums[c]);
            sums[c] += entering[c] - leaving[c];
        }
    }
}

} // namespace

// The channels are worked on side by side, as integers: the images this is for are small,
// and splitting them into a plane per channel cost more than the blur itself.
QImage blurColours(const QImage& image, int radius, int passes) {
    QImage blurred = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (radius <= 0 || passes <= 0 || blurred.isNull())
        return blurred;
    const int width = blurred.width();
    const int height = blurred.height();
    const ptrdiff_t rowStride = static_cast<ptrdiff_t>(width) * 4;
    std::vector<int> values(static_cast<size_t>(rowStride) * height);
    for (int y = 0; y < height; ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(blurred.constScanLine(y));
        int* to = values.data() + y * rowStride;
        for (int x = 0; x < width; ++x, to += 4) {
            to[0] = qAlpha(row[x]);
            to[1] = qRed(row[x]);
            to[2] = qGreen(row[x]);
            to[3] = qBlue(row[x]);
        }
    }
    std::vector<int> line;
    for (int pass = 0; pass < passes; ++pass) {
        for (int y = 0; y < height; ++y)
            blurLine(values.data() + y * rowStride, width, 4, radius, line);
        for (int x = 0; x < width; ++x)
            blurLine(values.data() + static_cast<ptrdiff_t>(x) * 4, height, rowStride, radius,
                     line);
    }
    for (int y = 0; y < height; ++y) {
        auto* row = reinterpret_cast<QRgb*>(blurred.scanLine(y));
        const int* from = values.data() + y * rowStride;
        for (int x = 0; x < width; ++x, from += 4) {
            // Each channel was blurred alone; rounding can leave a colour a step above its
            // alpha, which premultiplied pixels must not be.
            const int alpha = from[0];
            row[x] = qRgba(std::min(from[1], alpha), std::min(from[2], alpha),
                           std::min(from[3], alpha), alpha);
        }
    }
    return blurred;
}

void blur(QImage& alpha, const QRect& area, int radius) {
    if (radius <= 0 || area.isEmpty())
        return;
    blurRows(alpha, area, radius);
    blurColumns(alpha, area, radius);
}

} // namespace corkwheel::BoxBlur
