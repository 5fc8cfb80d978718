// SPDX-License-Identifier: GPL-3.0-or-later

// A drawing with its shadow, kept between redraws: what each redraw reports as changed,
// and that a layer brought up to date looks exactly like one drawn afresh.

#include "support/ViewTesting.h"

#include "render/ShadowedLayer.h"

#include <QFont>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

const QSize kSize(100, 60);
const QColor kRed(255, 0, 0);
const QColor kBlue(0, 0, 255);

ShadowedLayer::Drawing bar(const QRectF& rect, const QColor& color = Qt::white) {
    return [rect, color](QPainter& painter) { painter.fillRect(rect, color); };
}

ShadowedLayer::Drawing text(const QString& shown) {
    return [shown](QPainter& painter) {
        QFont font;
        font.setPixelSize(20);
        painter.setFont(font);
        painter.setPen(Qt::white);
        painter.drawText(QPointF(6, 30), shown);
    };
}

QImage painted(const ShadowedLayer& layer, double ratio) {
    return paintImage(kSize, ratio, [&](QPainter& painter) { layer.paint(painter, QPointF()); });
}

QRegion whole() {
    return QRegion(QRect(QPoint(), kSize));
}

bool isRed(QColor color) {
    return color.alpha() > 200 && color.red() > 200 && color.blue() < 60;
}

} // namespace

class ShadowedLayerTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void firstDrawingChangesEverything() {
        ShadowedLayer layer;
        QVERIFY(!layer.holds(kSize, 1, true));
        QCOMPARE(layer.redraw(kSize, 1, true, bar(QRectF(10, 10, 20, 4))), whole());
        QVERIFY(layer.holds(kSize, 1, true));
    }

    void sameDrawingAgainChangesNothing() {
        ShadowedLayer layer;
        layer.redraw(kSize, 1, true, text(QStringLiteral("12:00:01")));
        QVERIFY(layer.redraw(kSize, 1, true, text(QStringLiteral("12:00:01"))).isEmpty());
    }

    void changeIsReportedWithItsShadowAndNothingElse_data() { addRatios(); }

    void changeIsReportedWithItsShadowAndNothingElse() {
        QFETCH(double, ratio);
        ShadowedLayer layer;
        layer.redraw(kSize, ratio, true, bar(QRectF(10, 10, 20, 4)));
        const QRegion changed = layer.redraw(kSize, ratio, true, [](QPainter& painter) {
            bar(QRectF(10, 10, 20, 4))(painter);
            bar(QRectF(70, 40, 4, 4))(painter);
        });
        QVERIFY(changed.contains(QRect(70, 40, 4, 4)));
        // The shadow, one point down and blurred, changed too.
        QVERIFY(changed.contains(QRect(70, 45, 4, 2)));
        QVERIFY(changed.boundingRect().width() < 20);
        QVERIFY(!changed.intersects(QRect(10, 10, 20, 6)));
    }

    void updatedLayerLooksLikeOneDrawnAfresh_data() { addRatios(); }

    void updatedLayerLooksLikeOneDrawnAfresh() {
        QFETCH(double, ratio);
        ShadowedLayer ticking;
        ticking.redraw(kSize, ratio, true, text(QStringLiteral("12:00:01")));
        const QRegion changed =
            ticking.redraw(kSize, ratio, true, text(QStringLiteral("12:00:02")));
        QVERIFY(!changed.isEmpty());
        QVERIFY(changed.boundingRect().left() > 30);
        ShadowedLayer fresh;
        fresh.redraw(kSize, ratio, true, text(QStringLiteral("12:00:02")));
        QCOMPARE(painted(ticking, ratio), painted(fresh, ratio));
    }

    void newColourIsDrawnInTheNewColour() {
        ShadowedLayer layer;
        layer.redraw(kSize, 1, false, bar(QRectF(10, 10, 20, 4), kRed));
        QVERIFY(countPixels(painted(layer, 1), QRectF(QPointF(), kSize), isRed) > 0);
        const QRegion changed = layer.redraw(kSize, 1, false, bar(QRectF(10, 10, 20, 4), kBlue));
        QVERIFY(changed.contains(QRect(10, 10, 20, 4)));
        const QImage image = painted(layer, 1);
        QCOMPARE(countPixels(image, QRectF(QPointF(), kSize), isRed), 0);
        QCOMPARE(countPixels(image, QRectF(10, 10, 20, 4), near(kBlue, 10, 250)), 80);
    }

    void removedDrawingTakesItsShadowAlong() {
        ShadowedLayer layer;
        layer.redraw(kSize, 1, true, bar(QRectF(10, 10, 20, 4)));
        layer.redraw(kSize, 1, true, [](QPainter&) {});
        QCOMPARE(countPixels(painted(layer, 1), QRectF(QPointF(), kSize), isVisible), 0);
    }

    void otherSizeRatioOrShadowChangesEverything() {
        ShadowedLayer layer;
        layer.redraw(kSize, 1, true, bar(QRectF(10, 10, 20, 4)));
        QCOMPARE(layer.redraw(kSize, 1, false, bar(QRectF(10, 10, 20, 4))), whole());
        QCOMPARE(layer.redraw(kSize, 2, false, bar(QRectF(10, 10, 20, 4))), whole());
        QCOMPARE(layer.redraw(QSize(50, 60), 2, false, bar(QRectF(10, 10, 20, 4))),
                 QRegion(0, 0, 50, 60));
    }

    void clearedLayerStartsAfresh() {
        ShadowedLayer layer;
        layer.redraw(kSize, 1, true, bar(QRectF(10, 10, 20, 4)));
        layer.clear();
        QVERIFY(!layer.holds(kSize, 1, true));
        QCOMPARE(layer.redraw(kSize, 1, true, bar(QRectF(10, 10, 20, 4))), whole());
    }
};

QTEST_MAIN(ShadowedLayerTest)
#include "tst_shadowedlayer.moc"
