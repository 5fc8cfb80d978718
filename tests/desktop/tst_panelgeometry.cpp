// SPDX-License-Identifier: GPL-3.0-or-later

// Where panel windows go and the frames that move and resize drags make.

#include "support/PanelFixtures.h"

#include "desktop/PanelGeometry.h"

#include <QTest>

Q_DECLARE_METATYPE(corkwheel::PanelFrame)

using namespace corkwheel;

namespace {

const QRect kMainScreen(0, 0, 1920, 1080);

// A second monitor right of the main one, lower and narrower, its top 100 pixels down.
const QRect kRightScreen(1920, 100, 1280, 1024);
const QList<QRect> kTwoScreens{kMainScreen, kRightScreen};

} // namespace

class PanelGeometryTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void panelFrameOnMainScreenAtOriginIsItsWindowFrame() {
        const QRectF rect = PanelGeometry::toScreen({40, 140, 280, 210}, kMainScreen);
        QCOMPARE(rect, QRectF(40, 140, 280, 210));
    }

    void panelFrameIsMeasuredFromMainScreenTopLeft() {
        const QRect mainScreen(1280, 200, 1920, 1080);
        QCOMPARE(PanelGeometry::toScreen({40, 140, 280, 210}, mainScreen),
                 QRectF(1320, 340, 280, 210));
        QCOMPARE(PanelGeometry::toPanel(QRectF(1320, 340, 280, 210), mainScreen),
                 (PanelFrame{40, 140, 280, 210}));
    }

    void withoutScreenNothingIsTranslated() {
        QCOMPARE(PanelGeometry::toScreen({-5.5, 7.25, 100, 60}, std::nullopt),
                 QRectF(-5.5, 7.25, 100, 60));
        QCOMPARE(PanelGeometry::toPanel(QRectF(-5.5, 7.25, 100, 60), std::nullopt),
                 (PanelFrame{-5.5, 7.25, 100, 60}));
    }

    void conversionKeepsFractions() {
        const QRect mainScreen(-1920, 0, 1920, 1080);
        const PanelFrame frame{10.25, 20.75, 300.5, 80.125};
        QCOMPARE(PanelGeometry::toPanel(PanelGeometry::toScreen(frame, mainScreen), mainScreen),
                 frame);
    }

    void moveShiftsStartFrameBySignedTranslation() {
        const QRectF start(100, 100, 300, 80);
        QCOMPARE(PanelGeometry::moved(start, {25, -40}), QRectF(125, 60, 300, 80));
        QCOMPARE(PanelGeometry::moved(start, {-100.5, 0.25}), QRectF(-0.5, 100.25, 300, 80));
    }

    void resizeKeepsTopLeftAndAddsTranslation() {
        const QRectF start(100, 100, 300, 80);
        QCOMPARE(PanelGeometry::resized(start, {50, 20}), QRectF(100, 100, 350, 100));
    }

    void resizeStopsAtMinimumSize_data() {
        QTest::addColumn<QPointF>("translation");
        QTest::addColumn<QSizeF>("size");
        QTest::newRow("narrower than 120") << QPointF(-250, 0) << QSizeF(120, 80);
        QTest::newRow("lower than 50") << QPointF(0, -70) << QSizeF(300, 50);
        QTest::newRow("both") << QPointF(-1000, -1000) << QSizeF(120, 50);
        QTest::newRow("exactly the minimum") << QPointF(-180, -30) << QSizeF(120, 50);
    }

    void resizeStopsAtMinimumSize() {
        QFETCH(QPointF, translation);
        QFETCH(QSizeF, size);
        const QRectF rect = PanelGeometry::resized(QRectF(100, 100, 300, 80), translation);
        QCOMPARE(rect.topLeft(), QPointF(100, 100));
        QCOMPARE(rect.size(), size);
    }

    void framesCloserThanHalfAPointAreTheSame_data() {
        QTest::addColumn<PanelFrame>("other");
        QTest::addColumn<bool>("same");
        QTest::newRow("identical") << PanelFrame{40, 40, 360, 80} << true;
        QTest::newRow("all just under") << PanelFrame{40.49, 39.51, 360.49, 79.51} << true;
        QTest::newRow("x off by 0.5") << PanelFrame{40.5, 40, 360, 80} << false;
        QTest::newRow("y off by 0.5") << PanelFrame{40, 39.5, 360, 80} << false;
        QTest::newRow("width off by 0.6") << PanelFrame{40, 40, 360.6, 80} << false;
        QTest::newRow("height off by 1") << PanelFrame{40, 40, 360, 81} << false;
    }

    void framesCloserThanHalfAPointAreTheSame() {
        QFETCH(PanelFrame, other);
        QFETCH(bool, same);
        QCOMPARE(PanelGeometry::isSameFrame({40, 40, 360, 80}, other), same);
        QCOMPARE(PanelGeometry::isSameFrame(other, {40, 40, 360, 80}), same);
    }

    void screenHoldingIsTheOneWithTheLargerPartOfTheFrame_data() {
        QTest::addColumn<QRectF>("frame");
        QTest::addColumn<std::optional<QRect>>("screen");
        QTest::newRow("inside the main") << QRectF(40, 40, 300, 80) << std::optional(kMainScreen);
        QTest::newRow("inside the other")
            << QRectF(2000, 200, 300, 80) << std::optional(kRightScreen);
        QTest::newRow("more on the other")
            << QRectF(1800, 200, 300, 80) << std::optional(kRightScreen);
        QTest::newRow("more on the main")
            << QRectF(1700, 200, 300, 80) << std::optional(kMainScreen);
        // 120 wide on each, all its 180 rows on the main, the lower 100 on the other.
        QTest::newRow("as wide on each, higher on the main")
            << QRectF(1800, 20, 240, 180) << std::optional(kMainScreen);
        QTest::newRow("half on each") << QRectF(1770, 200, 300, 80) << std::optional(kMainScreen);
        QTest::newRow("a fraction more on the other")
            << QRectF(1770.5, 200, 300, 80) << std::optional(kRightScreen);
        QTest::newRow("above the other, right of the main")
            << QRectF(2000, 0, 300, 80) << std::optional<QRect>();
        QTest::newRow("left of every screen")
            << QRectF(-400, 40, 300, 80) << std::optional<QRect>();
        QTest::newRow("touching the main's edge")
            << QRectF(-300, 40, 300, 80) << std::optional<QRect>();
    }

    void screenHoldingIsTheOneWithTheLargerPartOfTheFrame() {
        QFETCH(QRectF, frame);
        QFETCH(std::optional<QRect>, screen);
        QCOMPARE(PanelGeometry::screenHolding(frame, kTwoScreens), screen);
    }

    void screenHoldingWithoutScreensIsNone() {
        QCOMPARE(PanelGeometry::screenHolding(QRectF(40, 40, 300, 80), {}), std::nullopt);
    }

    void clampedInsideMovesTheLeastThatFits_data() {
        QTest::addColumn<QRectF>("frame");
        QTest::addColumn<QRectF>("clamped");
        QTest::newRow("inside already") << QRectF(40.5, 40, 300, 80) << QRectF(40.5, 40, 300, 80);
        QTest::newRow("beyond the right edge")
            << QRectF(2000, 300, 300, 80) << QRectF(1620, 300, 300, 80);
        QTest::newRow("beyond the bottom right corner")
            << QRectF(1800.25, 1100, 300, 80) << QRectF(1620, 1000, 300, 80);
        QTest::newRow("above and left") << QRectF(-50, -10, 300, 80) << QRectF(0, 0, 300, 80);
        QTest::newRow("wider and higher than the screen")
            << QRectF(500, 500, 2500, 1200) << QRectF(0, 0, 2500, 1200);
    }

    void clampedInsideMovesTheLeastThatFits() {
        QFETCH(QRectF, frame);
        QFETCH(QRectF, clamped);
        QCOMPARE(PanelGeometry::clampedInside(frame, kMainScreen), clamped);
    }

    void clampedInsideAScreenAwayFromTheOrigin() {
        QCOMPARE(PanelGeometry::clampedInside(QRectF(0, 0, 300, 80), kRightScreen),
                 QRectF(1920, 100, 300, 80));
    }

    // Where a monitor was unplugged, its panels come onto the main screen, inside it; a
    // panel that some screen still holds part of stays where it is.
    void shownFrameIsTheFrameUnlessNoScreenHoldsIt_data() {
        QTest::addColumn<QList<QRect>>("screens");
        QTest::addColumn<QRectF>("frame");
        QTest::addColumn<QRectF>("shown");
        QTest::newRow("on the other screen")
            << kTwoScreens << QRectF(2000, 200, 300, 80) << QRectF(2000, 200, 300, 80);
        QTest::newRow("across both")
            << kTwoScreens << QRectF(1800, 200, 300, 80) << QRectF(1800, 200, 300, 80);
        QTest::newRow("its screen unplugged")
            << QList<QRect>{kMainScreen} << QRectF(2000, 200, 300, 80)
            << QRectF(1620, 200, 300, 80);
        QTest::newRow("partly on the main still")
            << QList<QRect>{kMainScreen} << QRectF(1800, 200, 300, 80)
            << QRectF(1800, 200, 300, 80);
        QTest::newRow("below the other, the main right of it")
            << QList<QRect>{kRightScreen, kMainScreen} << QRectF(1950, 1200, 300, 80)
            << QRectF(1950, 1044, 300, 80);
        QTest::newRow("no screens")
            << QList<QRect>{} << QRectF(5000, 200, 300, 80) << QRectF(5000, 200, 300, 80);
    }

    void shownFrameIsTheFrameUnlessNoScreenHoldsIt() {
        QFETCH(QList<QRect>, screens);
        QFETCH(QRectF, frame);
        QFETCH(QRectF, shown);
        QCOMPARE(PanelGeometry::shownFrame(frame, screens), shown);
    }

    // A layer surface's margins: the rounded frame's corner from its output's corner.
    void windowPlaceIsMeasuredFromItsScreen() {
        const WindowPlace place =
            PanelGeometry::windowPlace(QRectF(2000.4, 220.6, 300, 80), kRightScreen);
        QCOMPARE(place.frame, QRect(2000, 221, 300, 80));
        QCOMPARE(place.screen, kRightScreen);
        QCOMPARE(place.onScreen, QPoint(80, 121));
    }

    void windowPlaceOnAScreenLeftOfTheOriginIsPositive() {
        const QRect left(-1280, 0, 1280, 1024);
        QCOMPARE(PanelGeometry::windowPlace(QRectF(-1160, 40, 300, 80), left).onScreen,
                 QPoint(120, 40));
    }

    void windowPlaceWithoutScreenIsTheFrameFromTheOrigin() {
        const WindowPlace place = PanelGeometry::windowPlace(QRectF(40, 50, 300, 80), QRect());
        QCOMPARE(place.frame, QRect(40, 50, 300, 80));
        QCOMPARE(place.onScreen, QPoint(40, 50));
    }

    void windowRectRoundsEachComponentToNearest() {
        QCOMPARE(PanelGeometry::windowRect(QRectF(10.4, 10.6, 100.5, 49.49)),
                 QRect(10, 11, 101, 49));
        QCOMPARE(PanelGeometry::windowRect(QRectF(-10.6, -0.4, 120, 50)), QRect(-11, 0, 120, 50));
    }

    // A hand-edited frame far beyond any screen gets a window at the edge of what a window
    // can be given: positions within the X protocol's 16 bits, so none wraps onto the screen,
    // and sides of at least 1 and at most 16384 pixels.
    void windowRectKeepsAFarFrameWithinWhatAWindowCanBe_data() {
        QTest::addColumn<QRectF>("frame");
        QTest::addColumn<QRect>("window");
        QTest::newRow("far right and down")
            << QRectF(1e12, 1e300, 300, 200) << QRect(32767, 32767, 300, 200);
        QTest::newRow("far left and up")
            << QRectF(-1e300, -65636, 300, 200) << QRect(-32767, -32767, 300, 200);
        QTest::newRow("2^31 wide and 2^53 high")
            << QRectF(0, 0, 0x1p31, 0x1p53) << QRect(0, 0, 16384, 16384);
        QTest::newRow("no size") << QRectF(10, 10, 0, -1) << QRect(10, 10, 1, 1);
        QTest::newRow("a ten-thousandth of a point")
            << QRectF(1e-300, 1e-4, 1e-300, 120.4) << QRect(0, 0, 1, 120);
    }

    void windowRectKeepsAFarFrameWithinWhatAWindowCanBe() {
        QFETCH(QRectF, frame);
        QFETCH(QRect, window);
        QCOMPARE(PanelGeometry::windowRect(frame), window);
    }
};

QTEST_APPLESS_MAIN(PanelGeometryTest)
#include "tst_panelgeometry.moc"
