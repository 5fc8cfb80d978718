// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/ShadowedLayer.h"

#include "render/ChangedArea.h"
#include "render/DropShadow.h"

#include <QPainter>

#include <cmath>
#include <utility>

namespace corkwheel {

namespace {

QSize inPixels(const QSize& size, double ratio) {
    return QSize(static_cast<int>(std::ceil(size.width() * ratio)),
                 static_cast<int>(std::ceil(size.height() * ratio)));
}

} // namespace

bool ShadowedLayer::holds(const QSize& size, double ratio, bool shadowed) const {
    return !m_drawing.isNull() && size == m_size && ratio == m_ratio && shadowed == m_shadowed;
}

void ShadowedLayer::clear() {
    m_drawing = QImage();
    m_shadow = QImage();
    m_spare = QImage();
}

// The drawing before last is cleared and drawn over: an image made afresh every second
// would have its memory mapped and faulted in again, and a new paint engine made for it.
QImage ShadowedLayer::takeCanvas(const QSize& size, double ratio) {
    QImage canvas = std::exchange(m_spare, QImage());
    const QSize pixels = inPixels(size, ratio);
    if (canvas.size() != pixels)
        canvas = QImage(pixels, QImage::Format_ARGB32_Premultiplied);
    canvas.setDevicePixelRatio(ratio);
    canvas.fill(Qt::transparent);
    return canvas;
}

QRegion ShadowedLayer::redraw(const QSize& size, double ratio, bool shadowed,
                              const Drawing& drawing) {
    QImage next = takeCanvas(size, ratio);
    {
        QPainter painter(&next);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                               QPainter::SmoothPixmapTransform);
        drawing(painter);
    }
    if (holds(size, ratio, shadowed))
        return takeChanges(std::move(next));
    m_size = size;
    m_ratio = ratio;
    m_shadowed = shadowed;
    m_spare = std::exchange(m_drawing, std::move(next));
    m_shadow = shadowed ? DropShadow::shadowOf(m_drawing, DropShadow::kRadius * ratio,
                                               DropShadow::kOpacity)
                        : QImage();
    return QRegion(QRect(QPoint(), size));
}

QRegion ShadowedLayer::takeChanges(QImage next) {
    const double radius = DropShadow::kRadius * m_ratio;
    // Changes closer together than this would blur the same shadow pixels twice.
    const int gap = 2 * DropShadow::reach(radius);
    const QList<QRect> changes = ChangedArea::between(m_drawing, next, gap);
    m_spare = std::exchange(m_drawing, std::move(next));
    QRegion changed;
    for (const QRect& pixels : changes) {
        changed += inPoints(pixels, 0);
        if (m_shadowed) {
            const QRect shadow =
                DropShadow::updateShadow(m_shadow, m_drawing, pixels, radius, DropShadow::kOpacity);
            changed += inPoints(shadow, DropShadow::kOffsetY);
        }
    }
    return changed;
}

QRegion ShadowedLayer::inPoints(const QRect& pixels, double down) const {
    const QRectF points(QPointF(pixels.topLeft()) / m_ratio, QSizeF(pixels.size()) / m_ratio);
    return QRegion(points.translated(0, down).toAlignedRect());
}

void ShadowedLayer::paint(QPainter& painter, const QPointF& topLeft) const {
    if (!m_shadow.isNull())
        painter.drawImage(topLeft + QPointF(0, DropShadow::kOffsetY), m_shadow);
    painter.drawImage(topLeft, m_drawing);
}

} // namespace corkwheel
