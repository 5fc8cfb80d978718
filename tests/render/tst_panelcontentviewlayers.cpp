// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/ContentViewFixture.h"
#include "support/ViewTesting.h"

#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

// How a panel content view draws the layers under and over every body: the background,
// the glass and the opacity.

class PanelContentViewLayersTest : public QObject, private ContentViewFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { resetView(); }

    void cleanup() { releaseView(); }

    void transparentBackgroundWithoutGlassLeavesNoBackground_data() { addRatios(); }

    void transparentBackgroundWithoutGlassLeavesNoBackground() {
        QFETCH(double, ratio);
        Panel panel = sizedTextPanel(QStringLiteral("Hi"));
        panel.style.backgroundColor = CodableColor{0.2, 0.4, 0.6, 0};
        panel.style.showGlassBackground = false;
        show(panel);
        const QImage image = renderView(ratio);
        QCOMPARE(colorAt(image, QPointF(0, 0)).alpha(), 0);
        QCOMPARE(colorAt(image, QPointF(199, 99)).alpha(), 0);
        QCOMPARE(colorAt(image, QPointF(100, 80)).alpha(), 0);
        QVERIFY(countPixels(image, QRectF(0, 0, 200, 100), isVisible) > 0);
    }

    void backgroundColourFillsTheRoundedShape_data() {
        QTest::addColumn<double>("ratio");
        QTest::addColumn<double>("radius");
        QTest::newRow("ratio 1, rounded") << 1.0 << 16.0;
        QTest::newRow("ratio 2, rounded") << 2.0 << 16.0;
        QTest::newRow("ratio 1, square") << 1.0 << 0.0;
    }

    void backgroundColourFillsTheRoundedShape() {
        QFETCH(double, ratio);
        QFETCH(double, radius);
        Panel panel = sizedTextPanel(QString());
        panel.style.backgroundColor = codable(kRed);
        panel.style.cornerRadius = radius;
        show(panel);
        const QImage image = renderView(ratio);
        QCOMPARE(colorAt(image, QPointF(100, 50)), kRed);
        QCOMPARE(colorAt(image, QPointF(100, 0.5)), kRed);
        const QColor corner = colorAt(image, QPointF(0.5, 0.5));
        if (radius > 0)
            QCOMPARE(corner.alpha(), 0);
        else
            QCOMPARE(corner, kRed);
    }

    void glassIsATranslucentDarkFill_data() { addRatios(); }

    void glassIsATranslucentDarkFill() {
        QFETCH(double, ratio);
        Panel panel = sizedTextPanel(QString());
        panel.style.showGlassBackground = true;
        show(panel);
        const QImage image = renderView(ratio);
        const QColor middle = colorAt(image, QPointF(100, 50));
        QVERIFY2(middle.alphaF() > 0.3 && middle.alphaF() < 0.6,
                 qPrintable(middle.name(QColor::HexArgb)));
        QVERIFY(middle.lightness() < 60);
        QCOMPARE(colorAt(image, QPointF(0.5, 0.5)).alpha(), 0);
    }

    void glassLiesOverTheBackgroundColour() {
        Panel panel = sizedTextPanel(QString());
        panel.style.backgroundColor = codable(kRed);
        panel.style.showGlassBackground = true;
        show(panel);
        const QColor middle = colorAt(renderView(1), QPointF(100, 50));
        QCOMPARE(middle.alpha(), 255);
        QVERIFY(middle.red() > 100 && middle.red() < 200);
        QVERIFY(middle.green() < 40);
    }

    void opacityZeroHidesTheContentEntirely_data() { addRatios(); }

    void opacityZeroHidesTheContentEntirely() {
        QFETCH(double, ratio);
        Panel panel = sizedTextPanel(QStringLiteral("HELLO"));
        panel.style.backgroundColor = codable(kRed);
        panel.style.showGlassBackground = true;
        panel.style.opacity = 0;
        PanelContentView& view = show(panel);
        view.show();
        QVERIFY(view.isVisible());
        QCOMPARE(countPixels(renderView(ratio), QRectF(0, 0, 200, 100), isVisible), 0);
    }

    void partialOpacityFadesThePanelAsOnePiece_data() { addRatios(); }

    void partialOpacityFadesThePanelAsOnePiece() {
        QFETCH(double, ratio);
        Panel panel = sizedTextPanel(QStringLiteral("HELLO"));
        panel.style.backgroundColor = codable(kRed);
        panel.style.opacity = 0.5;
        show(panel);
        const QImage image = renderView(ratio);
        int maxAlpha = 0;
        countPixels(image, QRectF(0, 0, 200, 100), [&](QColor c) {
            maxAlpha = std::max(maxAlpha, c.alpha());
            return false;
        });
        QVERIFY2(std::abs(maxAlpha - 128) <= 2, qPrintable(QString::number(maxAlpha)));
        // The text still shows, lighter than the background around it.
        const QRectF text = inkBounds(image, [](QColor c) { return c.green() > 128; });
        QVERIFY(!text.isEmpty());
    }
};

QTEST_MAIN(PanelContentViewLayersTest)
#include "tst_panelcontentviewlayers.moc"
