// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/PanelStyle.h"

#include <QImage>
#include <QRectF>
#include <QSizeF>

class QPainter;

namespace corkwheel {

// An image panel's picture, scaled to fit the panel keeping its aspect ratio and placed
// at the top by the style's alignment; without a picture, a dimmed "photo" symbol in the
// middle. Keeps the last scaled picture, as panels redraw far more often than their
// picture or size change.
class ImageBody {
public:
    static double padding(const PanelStyle& style);
    // Where a picture of `imageSize` goes in `area`: as large as fits, same aspect ratio,
    // at the top-left, top centre or top-right.
    static QRectF fittedRect(const QSizeF& imageSize, const QRectF& area,
                             TextAlignmentOption alignment);

    void paint(QPainter& painter, const QRectF& rect, const QImage& image, const PanelStyle& style);

    static constexpr double kPlaceholderSize = 32;

private:
    const QImage& scaled(const QImage& image, const QSize& pixels);
    static void paintPlaceholder(QPainter& painter, const QRectF& area);

    QImage m_scaled;
    qint64 m_sourceKey = 0;
};

} // namespace corkwheel
