// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Shared by the view tests: rendering of widgets into images at a chosen device pixel
// ratio, and the made-up machine that real panel runners read.

#include "support/FakeMachine.h"

#include <QColor>
#include <QEvent>
#include <QFont>
#include <QFontDatabase>
#include <QImage>
#include <QPainter>
#include <QRectF>
#include <QRegion>
#include <QTest>
#include <QWidget>

#include <cmath>
#include <functional>
#include <memory>

namespace corkwheel::test {

// Rows "ratio 1" and "ratio 2" of a column "ratio": the device pixel ratios every drawing
// is checked at.
inline void addRatios() {
    QTest::addColumn<double>("ratio");
    QTest::newRow("ratio 1") << 1.0;
    QTest::newRow("ratio 2") << 2.0;
}

// Counts the paint events that a widget and its children receive, and keeps the area that
// the widget's own last one repainted.
class PaintCounter : public QObject {
public:
    explicit PaintCounter(QWidget& widget) : m_widget(&widget) {
        widget.installEventFilter(this);
        for (QWidget* child : widget.findChildren<QWidget*>())
            child->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() != QEvent::Paint)
            return false;
        ++count;
        if (watched == m_widget)
            lastArea = static_cast<QPaintEvent*>(event)->region();
        return false;
    }

    // Waits for the first `paints` paint events and a moment longer, so that what is
    // counted next comes from what the test does. False when they never came.
    bool settle(int paints = 1) {
        const bool painted = QTest::qWaitFor([this, paints] { return count >= paints; });
        QTest::qWait(50);
        return painted;
    }

    int count = 0;
    QRegion lastArea;

private:
    QWidget* m_widget;
};

// `widget` and its children as the window system would show them over a transparent
// desktop, at device pixel ratio `ratio`.
inline QImage render(QWidget& widget, double ratio) {
    QImage image(QSize(static_cast<int>(std::ceil(widget.width() * ratio)),
                       static_cast<int>(std::ceil(widget.height() * ratio))),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image;
}

// An image painted by `paint` at `ratio`, `size` points large.
inline QImage paintImage(const QSizeF& size, double ratio,
                         const std::function<void(QPainter&)>& paint) {
    QImage image(QSize(static_cast<int>(std::ceil(size.width() * ratio)),
                       static_cast<int>(std::ceil(size.height() * ratio))),
                 QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    paint(painter);
    return image;
}

// The colour at a point given in points.
inline QColor colorAt(const QImage& image, QPointF point) {
    const double ratio = image.devicePixelRatio();
    const int x = std::clamp(static_cast<int>(std::floor(point.x() * ratio)), 0, image.width() - 1);
    const int y =
        std::clamp(static_cast<int>(std::floor(point.y() * ratio)), 0, image.height() - 1);
    return image.pixelColor(x, y);
}

// The device pixels of `image` within `area` (in points) that satisfy `test`.
inline int countPixels(const QImage& image, const QRectF& area,
                       const std::function<bool(QColor)>& test) {
    const double ratio = image.devicePixelRatio();
    const QRect pixels = QRectF(area.topLeft() * ratio, area.size() * ratio)
                             .toAlignedRect()
                             .intersected(image.rect());
    int count = 0;
    for (int y = pixels.top(); y <= pixels.bottom(); ++y) {
        for (int x = pixels.left(); x <= pixels.right(); ++x) {
            if (test(image.pixelColor(x, y)))
                ++count;
        }
    }
    return count;
}

inline bool isVisible(QColor color) {
    return color.alpha() > 0;
}

// At least `minimumAlpha` opaque (nearly opaque by default) and close to `reference` in
// every channel.
inline std::function<bool(QColor)> near(QColor reference, int tolerance = 40,
                                        int minimumAlpha = 200) {
    return [reference, tolerance, minimumAlpha](QColor color) {
        return color.alpha() >= minimumAlpha &&
               std::abs(color.red() - reference.red()) <= tolerance &&
               std::abs(color.green() - reference.green()) <= tolerance &&
               std::abs(color.blue() - reference.blue()) <= tolerance;
    };
}

// The bounding box, in points, of the pixels that satisfy `test`; empty when none do.
inline QRectF inkBounds(const QImage& image, const std::function<bool(QColor)>& test) {
    QRect bounds;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (test(image.pixelColor(x, y)))
                bounds |= QRect(x, y, 1, 1);
        }
    }
    const double ratio = image.devicePixelRatio();
    return QRectF(QPointF(bounds.topLeft()) / ratio, QSizeF(bounds.size()) / ratio);
}

// An image of text drawn by `draw` in `font` and a white pen, `size` points large at
// `ratio`, over transparency.
inline QImage textImage(const QSizeF& size, const QFont& font, double ratio,
                        const std::function<void(QPainter&)>& draw) {
    return paintImage(size, ratio, [&](QPainter& painter) {
        painter.setFont(font);
        painter.setPen(Qt::white);
        draw(painter);
    });
}

// The system's proportional and fixed-width fonts at the sizes panels use for figures.
inline QFont proportionalFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPixelSize(13);
    return font;
}

inline QFont fixedFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPixelSize(12);
    return font;
}

} // namespace corkwheel::test
