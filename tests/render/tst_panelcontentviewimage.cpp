// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/ContentViewFixture.h"
#include "support/ViewTesting.h"

#include <QTemporaryDir>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

// How a panel content view draws the image body.

class PanelContentViewImageTest : public QObject, private ContentViewFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { resetView(); }

    void cleanup() { releaseView(); }

    void imageIsScaledToFitKeepingItsAspect_data() { addRatios(); }

    void imageIsScaledToFitKeepingItsAspect() {
        QFETCH(double, ratio);
        QTemporaryDir folder;
        QImage picture(400, 200, QImage::Format_ARGB32);
        picture.fill(kBlue);
        Panel panel = Panel::makeDefault(PanelType::Image);
        panel.imageSource = writeImage(folder, picture);
        panel.frame = PanelFrame{0, 0, 200, 200};
        show(panel);
        QVERIFY(!m_runner->image().isNull());
        const QImage image = renderView(ratio);
        QCOMPARE(inkBounds(image, isVisible), QRectF(0, 0, 200, 100));
        QCOMPARE(colorAt(image, QPointF(100, 50)), kBlue);
    }

    void imageIsPlacedAtTheTopByTheAlignment_data() {
        QTest::addColumn<int>("alignment");
        QTest::addColumn<double>("left");
        QTest::newRow("leading") << int(TextAlignmentOption::Leading) << 0.0;
        QTest::newRow("center") << int(TextAlignmentOption::Center) << 50.0;
        QTest::newRow("trailing") << int(TextAlignmentOption::Trailing) << 100.0;
    }

    void imageIsPlacedAtTheTopByTheAlignment() {
        QFETCH(int, alignment);
        QFETCH(double, left);
        QTemporaryDir folder;
        QImage picture(50, 100, QImage::Format_ARGB32);
        picture.fill(kBlue);
        Panel panel = Panel::makeDefault(PanelType::Image);
        panel.imageSource = writeImage(folder, picture);
        panel.frame = PanelFrame{0, 0, 200, 200};
        panel.style.textAlignment = TextAlignmentOption(alignment);
        show(panel);
        QCOMPARE(inkBounds(renderView(1), isVisible), QRectF(left, 0, 100, 200));
    }

    void imageKeepsItsDetailAtDevicePixelRatio2() {
        // One-pixel stripes, shown at half their size on a screen of twice the density:
        // every stripe still gets its own device pixel.
        QTemporaryDir folder;
        QImage picture(200, 200, QImage::Format_ARGB32);
        for (int x = 0; x < 200; ++x) {
            for (int y = 0; y < 200; ++y)
                picture.setPixelColor(x, y, x % 2 ? Qt::black : Qt::white);
        }
        Panel panel = Panel::makeDefault(PanelType::Image);
        panel.imageSource = writeImage(folder, picture);
        panel.frame = PanelFrame{0, 0, 100, 100};
        show(panel);
        const QImage image = renderView(2);
        QCOMPARE(image.size(), QSize(200, 200));
        QVERIFY(image.pixelColor(100, 100).lightness() > 200);
        QVERIFY(image.pixelColor(101, 100).lightness() < 55);
    }

    void missingImageShowsTheDimmedPhotoSymbolInTheMiddle_data() { addRatios(); }

    void missingImageShowsTheDimmedPhotoSymbolInTheMiddle() {
        QFETCH(double, ratio);
        Panel panel = Panel::makeDefault(PanelType::Image);
        panel.imageSource = QStringLiteral("/nonexistent/picture.png");
        panel.frame = PanelFrame{0, 0, 200, 120};
        show(panel);
        QVERIFY(m_runner->image().isNull());
        const QImage image = renderView(ratio);
        const QRectF ink = inkBounds(image, isVisible);
        QVERIFY(ink.width() > 20 && ink.width() <= 32);
        QVERIFY(std::abs(ink.center().x() - 100) <= 2 && std::abs(ink.center().y() - 60) <= 3);
        int maxAlpha = 0;
        countPixels(image, ink, [&](QColor c) {
            maxAlpha = std::max(maxAlpha, c.alpha());
            return false;
        });
        QVERIFY2(maxAlpha > 110 && maxAlpha < 140, qPrintable(QString::number(maxAlpha)));
        QVERIFY(countPixels(image, ink, near(Qt::white, 10, 100)) > 20);
    }

    void glassPadsTheImageBy14Points() {
        QTemporaryDir folder;
        QImage picture(100, 100, QImage::Format_ARGB32);
        picture.fill(kBlue);
        Panel panel = Panel::makeDefault(PanelType::Image);
        panel.imageSource = writeImage(folder, picture);
        panel.frame = PanelFrame{0, 0, 128, 128};
        panel.style.showGlassBackground = true;
        show(panel);
        QCOMPARE(inkBounds(renderView(1), near(kBlue)), QRectF(14, 14, 100, 100));
    }
};

QTEST_MAIN(PanelContentViewImageTest)
#include "tst_panelcontentviewimage.moc"
