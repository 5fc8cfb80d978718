// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/ImageBody.h"

#include "model/PanelType.h"
#include "render/DevicePixelRatio.h"
#include "render/PanelColors.h"
#include "render/Symbols.h"

#include <QPainter>

#include <cmath>

namespace corkwheel {

namespace {

constexpr double kGlassPadding = 14;

} // namespace

double ImageBody::padding(const PanelStyle& style) {
    return style.showGlassBackground ? kGlassPadding : 0;
}

QRectF ImageBody::fittedRect(const QSizeF& imageSize, const QRectF& area,
                             TextAlignmentOption alignment) {
    if (imageSize.isEmpty() || area.isEmpty())
        return {};
    const QSizeF size = imageSize.scaled(area.size(), Qt::KeepAspectRatio);
    double left = area.left();
    if (alignment == TextAlignmentOption::Center)
        left += (area.width() - size.width()) / 2;
    else if (alignment == TextAlignmentOption::Trailing)
        left += area.width() - size.width();
    return QRectF(QPointF(left, area.top()), size);
}

void ImageBody::paint(QPainter& painter, const QRectF& rect, const QImage& image,
                      const PanelStyle& style) {
    const double inset = padding(style);
    const QRectF area = rect.adjusted(inset, inset, -inset, -inset);
    if (area.isEmpty())
        return;
    if (image.isNull()) {
        paintPlaceholder(painter, area);
        return;
    }
    const QRectF target = fittedRect(image.deviceIndependentSize(), area, style.textAlignment);
    const double ratio = paintRatio(painter);
    const QSize pixels(std::max(1, static_cast<int>(std::lround(target.width() * ratio))),
                       std::max(1, static_cast<int>(std::lround(target.height() * ratio))));
    painter.drawImage(target, scaled(image, pixels));
}

const QImage& ImageBody::scaled(const QImage& image, const QSize& pixels) {
    if (m_sourceKey != image.cacheKey() || m_scaled.size() != pixels) {
        m_scaled = image.size() == pixels
                       ? image
                       : image.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        m_sourceKey = image.cacheKey();
    }
    return m_scaled;
}

void ImageBody::paintPlaceholder(QPainter& painter, const QRectF& area) {
    QRectF box(0, 0, kPlaceholderSize, kPlaceholderSize);
    box.moveCenter(area.center());
    Symbols::paint(painter, box, symbolName(PanelType::Image), PanelColors::placeholder());
}

} // namespace corkwheel
