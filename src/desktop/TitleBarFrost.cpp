// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/TitleBarFrost.h"

#include "render/BoxBlur.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <utility>

namespace corkwheel {

namespace {

const QColor kGlass(30, 30, 33);
const QColor kSeeThroughGlass(30, 30, 33,
                              static_cast<int>(TitleBarFrost::kSeeThroughOpacity * 255 + 0.5));
const QColor kHaze = QColor::fromRgbF(1, 1, 1, 0.08f);

// How far, in the shrunk image's pixels, a change spreads through the blur.
constexpr int kReach = TitleBarFrost::kBlurRadius * TitleBarFrost::kBlurPasses;

// While the brightest spot changes a little, as a clock's digits do, the darkening stays as
// it is, up to this much darker than needed: otherwise every tick would darken, and paint,
// the whole bar again.
constexpr double kDarkeningSlack = 0.9;

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

// A premultiplied pixel with its colour, not its opacity, scaled by `factor`.
QRgb scaled(QRgb pixel, double factor) {
    return qRgba(static_cast<int>(qRed(pixel) * factor), static_cast<int>(qGreen(pixel) * factor),
                 static_cast<int>(qBlue(pixel) * factor), qAlpha(pixel));
}

bool darkEnough(QRgb pixel) {
    return TitleBarFrost::luminance(TitleBarFrost::overWhite(pixel)) <= TitleBarFrost::kBrightest;
}

// The factor on the colour of a premultiplied pixel that takes it, over white, no brighter
// than kBrightest. Found by halving: the white behind a see-through pixel does not darken
// with it, so no power of the luminance tells the factor. The glass hides enough of the
// white that black is always dark enough.
double darkeningFor(QRgb pixel) {
    if (darkEnough(pixel))
        return 1;
    double dark = 0;
    double light = 1;
    for (int step = 0; step < 12; ++step) {
        const double middle = (dark + light) / 2;
        (darkEnough(scaled(pixel, middle)) ? dark : light) = middle;
    }
    return dark;
}

// The premultiplied mean of the pixels of `image` in `block`.
QRgb mean(const QImage& image, const QRect& block) {
    std::array<int, 4> sums{};
    for (int y = block.top(); y <= block.bottom(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = block.left(); x <= block.right(); ++x) {
            sums[0] += qAlpha(row[x]);
            sums[1] += qRed(row[x]);
            sums[2] += qGreen(row[x]);
            sums[3] += qBlue(row[x]);
        }
    }
    const int count = std::max(1, block.width() * block.height());
    const auto average = [count](int sum) { return (sum + count / 2) / count; };
    return qRgba(average(sums[1]), average(sums[2]), average(sums[3]), average(sums[0]));
}

// The first and the last of the pixels (device pixels of the bar, along one axis) that the
// shrunk pixel at `index` stands for: at least one.
std::pair<int, int> span(int index, double pixelsPerShrunk, int length) {
    const int first = std::min(length - 1, static_cast<int>(index * pixelsPerShrunk));
    const int end = std::min(length, static_cast<int>((index + 1) * pixelsPerShrunk));
    return {first, std::max(first, end - 1)};
}

} // namespace

double TitleBarFrost::luminance(QRgb colour) {
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) +
           0.0722 * linear(qBlue(colour));
}

QRgb TitleBarFrost::overWhite(QRgb premultiplied) {
    const int behind = 255 - qAlpha(premultiplied);
    return qRgb(std::min(255, qRed(premultiplied) + behind),
                std::min(255, qGreen(premultiplied) + behind),
                std::min(255, qBlue(premultiplied) + behind));
}

QRect TitleBarFrost::areaFor(const QRect& changed, QSize barSize) {
    const QRect bar(QPoint(), barSize);
    const QRect within = changed & bar;
    if (within.isEmpty())
        return {};
    const int left = within.left() / kShrink * kShrink;
    const int right = (within.right() / kShrink + 1) * kShrink;
    return QRect(left, 0, right - left, barSize.height()) & bar;
}

bool TitleBarFrost::holds(QSize size, double ratio) const {
    return !m_frost.isNull() && m_barSize == size && m_under.devicePixelRatio() == ratio;
}

void TitleBarFrost::setSeeThrough(bool seeThrough) {
    if (seeThrough == m_seeThrough)
        return;
    m_seeThrough = seeThrough;
    m_frost = QImage();
}

QRect TitleBarFrost::update(const QImage& part, const QRect& area, QSize barSize) {
    const QRect bar(QPoint(), barSize);
    const QRect within = area & bar;
    if (bar.isEmpty() || part.isNull())
        return {};
    const bool fresh = !holds(barSize, part.devicePixelRatio());
    if (fresh)
        start(barSize, part.devicePixelRatio());
    if (!replaceUnder(part, within) && !fresh)
        return {};
    const int last = m_shrunk.width() - 1;
    const int first = fresh ? 0 : std::clamp(within.left() / kShrink, 0, last);
    const int end = fresh ? last : std::clamp(within.right() / kShrink, 0, last);
    shrink(first, end);
    const int litFirst = std::max(0, first - kReach);
    const int litLast = std::min(last, end + kReach);
    lightColumns(litFirst, litLast);
    const double needed = neededDarkening();
    if (fresh || !keepsDarkening(needed)) {
        m_darkening = needed;
        darken(0, last);
        return bar;
    }
    darken(litFirst, litLast);
    return barColumns(litFirst, litLast) | within;
}

// The frost replaces what lies under it: see-through, it must not let the panel's own
// detail show.
void TitleBarFrost::paint(QPainter& painter, const QPainterPath& shape) const {
    painter.save();
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(QPointF(), m_under);
    if (!shape.isEmpty())
        painter.setClipPath(shape, Qt::IntersectClip);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRectF(QPointF(), QSizeF(m_barSize)), m_frost);
    painter.restore();
}

void TitleBarFrost::start(QSize barSize, double ratio) {
    m_barSize = barSize;
    m_under = QImage(barSize * ratio, QImage::Format_ARGB32_Premultiplied);
    m_under.setDevicePixelRatio(ratio);
    m_under.fill(Qt::transparent);
    const QSize shrunk(std::max(1, (barSize.width() + kShrink - 1) / kShrink),
                       std::max(1, (barSize.height() + kShrink - 1) / kShrink));
    m_shrunk = QImage(shrunk, QImage::Format_ARGB32_Premultiplied);
    m_lit = QImage(shrunk, QImage::Format_ARGB32_Premultiplied);
    m_neededInColumn.assign(static_cast<size_t>(shrunk.width()), 1);
    m_frost = QImage(shrunk, QImage::Format_ARGB32_Premultiplied);
}

// Copies `part` into what lies under the bar; false when it is what lay there already.
bool TitleBarFrost::replaceUnder(const QImage& part, const QRect& area) {
    const QImage source = part.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const QPoint at = (QPointF(area.topLeft()) * m_under.devicePixelRatio()).toPoint();
    const QRect target = QRect(at, source.size()) & m_under.rect();
    const size_t bytes = static_cast<size_t>(target.width()) * sizeof(QRgb);
    bool changed = false;
    for (int y = target.top(); y <= target.bottom(); ++y) {
        const uchar* from = source.constScanLine(y - at.y());
        uchar* to = m_under.scanLine(y) + static_cast<size_t>(target.left()) * sizeof(QRgb);
        if (std::memcmp(from, to, bytes) != 0) {
            std::memcpy(to, from, bytes);
            changed = true;
        }
    }
    return changed;
}

// The shrunk image's columns `first` to `last` again, each pixel the mean of what it
// stands for under the bar.
void TitleBarFrost::shrink(int first, int last) {
    const double pixelsPerShrunk = kShrink * m_under.devicePixelRatio();
    for (int y = 0; y < m_shrunk.height(); ++y) {
        const auto [top, bottom] = span(y, pixelsPerShrunk, m_under.height());
        auto* row = reinterpret_cast<QRgb*>(m_shrunk.scanLine(y));
        for (int x = first; x <= last; ++x) {
            const auto [left, right] = span(x, pixelsPerShrunk, m_under.width());
            row[x] = mean(m_under, QRect(QPoint(left, top), QPoint(right, bottom)));
        }
    }
}

// The columns `first` to `last` of the shrunk image blurred and laid on the glass. The blur
// reads as far again on either side.
void TitleBarFrost::lightColumns(int first, int last) {
    const int from = std::max(0, first - kReach);
    const int to = std::min(m_shrunk.width() - 1, last + kReach);
    const QImage blurred = BoxBlur::blurColours(
        m_shrunk.copy(from, 0, to - from + 1, m_shrunk.height()), kBlurRadius, kBlurPasses);
    const QRect columns(first, 0, last - first + 1, m_lit.height());
    QPainter painter(&m_lit);
    painter.setClipRect(columns);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(columns, m_seeThrough ? kSeeThroughGlass : kGlass);
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.drawImage(QPoint(from, 0), blurred);
    painter.fillRect(columns, kHaze);
    painter.end();
    for (int x = first; x <= last; ++x)
        m_neededInColumn[static_cast<size_t>(x)] = neededInColumn(x);
}

double TitleBarFrost::neededInColumn(int x) const {
    double needed = 1;
    for (int y = 0; y < m_lit.height(); ++y) {
        const QRgb pixel = reinterpret_cast<const QRgb*>(m_lit.constScanLine(y))[x];
        needed = std::min(needed, darkeningFor(pixel));
    }
    return needed;
}

// The brightest spot of the lit glass decides how far all of it is darkened.
double TitleBarFrost::neededDarkening() const {
    return *std::min_element(m_neededInColumn.begin(), m_neededInColumn.end());
}

// Whether the darkening in use still lets the name stand out, without making the bar
// much darker than the `needed` one.
bool TitleBarFrost::keepsDarkening(double needed) const {
    return m_darkening <= needed && m_darkening >= needed * kDarkeningSlack;
}

void TitleBarFrost::darken(int first, int last) {
    for (int y = 0; y < m_lit.height(); ++y) {
        const auto* from = reinterpret_cast<const QRgb*>(m_lit.constScanLine(y));
        auto* to = reinterpret_cast<QRgb*>(m_frost.scanLine(y));
        for (int x = first; x <= last; ++x)
            to[x] = scaled(from[x], m_darkening);
    }
}

// The part of the bar that the frost's columns `first` to `last` colour: stretched
// smoothly, each column blends into the bar beside its own place.
QRect TitleBarFrost::barColumns(int first, int last) const {
    const double pointsPerShrunk = double(m_barSize.width()) / m_frost.width();
    const int left = static_cast<int>(std::floor((first - 1) * pointsPerShrunk));
    const int right = static_cast<int>(std::ceil((last + 2) * pointsPerShrunk));
    return QRect(left, 0, right - left, m_barSize.height()) & QRect(QPoint(), m_barSize);
}

} // namespace corkwheel
