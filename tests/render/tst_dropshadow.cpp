// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/ViewTesting.h"

#include "render/DropShadow.h"
#include "render/ShadowedLayer.h"

#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// `content` in a 40 by 30 point layer, with or without its shadow.
QImage paintLayer(double ratio, bool shadow, const ShadowedLayer::Drawing& content) {
    ShadowedLayer layer;
    layer.redraw(QSize(40, 30), ratio, shadow, content);
    return paintImage(QSizeF(40, 30), ratio,
                      [&](QPainter& painter) { layer.paint(painter, QPointF()); });
}

// A white bar 20 points wide and 4 high at (10, 10), with or without its shadow.
QImage paintBar(double ratio, bool shadow) {
    return paintLayer(ratio, shadow, [](QPainter& content) {
        content.fillRect(QRectF(10, 10, 20, 4), Qt::white);
    });
}

} // namespace

class DropShadowTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void shadowIsBlurredBlackBelowTheContent_data() { addRatios(); }

    void shadowIsBlurredBlackBelowTheContent() {
        QFETCH(double, ratio);
        const QImage image = paintBar(ratio, true);
        // The content itself, unchanged.
        QCOMPARE(colorAt(image, QPointF(20, 12)), QColor(Qt::white));
        // Just under the bar: black, translucent, at most 0.6.
        const QColor under = colorAt(image, QPointF(20, 14.3));
        QCOMPARE(under.rgb() & 0xffffff, 0u);
        QVERIFY2(under.alphaF() > 0.2 && under.alphaF() <= 0.61,
                 qPrintable(QString::number(under.alphaF())));
        // It fades with distance and is gone a few points away.
        QVERIFY(colorAt(image, QPointF(20, 16)).alpha() < under.alpha());
        QCOMPARE(colorAt(image, QPointF(20, 24)).alpha(), 0);
        // One point down: more shadow below the bar than above it.
        QVERIFY(colorAt(image, QPointF(20, 9.5)).alpha() < under.alpha());
    }

    void noShadowWhenHidden_data() { addRatios(); }

    void noShadowWhenHidden() {
        QFETCH(double, ratio);
        const QImage image = paintBar(ratio, false);
        QCOMPARE(countPixels(image, QRectF(0, 0, 40, 30), isVisible),
                 countPixels(image, QRectF(10, 10, 20, 4), isVisible));
        QCOMPARE(colorAt(image, QPointF(20, 12)), QColor(Qt::white));
    }

    void contentKeepsTheDeviceResolution() {
        // A line one device pixel high stays one device pixel high at ratio 2.
        const QImage image = paintLayer(2, true, [](QPainter& content) {
            content.fillRect(QRectF(10, 10, 20, 0.5), Qt::white);
        });
        QCOMPARE(image.pixelColor(40, 20), QColor(Qt::white));
        QVERIFY(image.pixelColor(40, 21).alpha() < 255);
        QVERIFY(image.pixelColor(40, 21) != QColor(Qt::white));
    }

    void shadowBroughtUpToDateIsTheShadowOfTheWholeImage() {
        QImage image(60, 40, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter(&image).fillRect(QRect(10, 10, 20, 4), Qt::white);
        QImage shadow = DropShadow::shadowOf(image, 6, 0.6);
        // A second bar, close enough for both shadows to meet.
        const QRect changed(28, 16, 10, 3);
        QPainter(&image).fillRect(changed, Qt::white);
        const QRect rewritten = DropShadow::updateShadow(shadow, image, changed, 6, 0.6);
        QCOMPARE(shadow, DropShadow::shadowOf(image, 6, 0.6));
        QVERIFY(rewritten.contains(changed));
        QVERIFY(!rewritten.contains(QPoint(10, 10)));
    }

    void shadowOfAnEmptyImageIsEmpty() {
        QImage image(16, 16, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        const QImage shadow = DropShadow::shadowOf(image, 3, 0.6);
        QCOMPARE(shadow.size(), image.size());
        QCOMPARE(countPixels(shadow, QRectF(0, 0, 16, 16), isVisible), 0);
    }
};

QTEST_MAIN(DropShadowTest)
#include "tst_dropshadow.moc"
