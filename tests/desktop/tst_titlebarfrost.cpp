// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/DesktopPanelHostView.h"
#include "desktop/TitleBarFrost.h"

#include <QPainter>
#include <QTest>

#include <algorithm>
#include <cstdlib>

using namespace corkwheel;

namespace {

const QSize kBar(240, DesktopPanelHostView::kTitleBarHeight);

// What a panel might draw under its title bar: a mid-grey pane with dark vertical strokes.
QImage striped(QSize size, double ratio) {
    QImage image(size * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(QColor(120, 120, 120));
    QPainter painter(&image);
    for (int x = 4; x < size.width(); x += 6)
        painter.fillRect(QRectF(x, 2, 2, size.height() - 4), QColor(20, 20, 20));
    return image;
}

// `area` of `image`, in points.
QImage part(const QImage& image, const QRect& area) {
    const double ratio = image.devicePixelRatio();
    QImage copy = image.copy(
        QRectF(QPointF(area.topLeft()) * ratio, QSizeF(area.size()) * ratio).toAlignedRect());
    copy.setDevicePixelRatio(ratio);
    return copy;
}

// `image` with `area` painted over in `colour`.
QImage paintedOver(QImage image, const QRect& area, QColor colour) {
    QPainter painter(&image);
    painter.fillRect(area, colour);
    return image;
}

int largestDifference(const QImage& a, const QImage& b) {
    int largest = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            largest = std::max({largest, std::abs(qRed(p) - qRed(q)),
                                std::abs(qGreen(p) - qGreen(q)), std::abs(qBlue(p) - qBlue(q))});
        }
    }
    return largest;
}

double brightest(const QImage& image) {
    double most = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            most = std::max(most, TitleBarFrost::luminance(image.pixel(x, y)));
    }
    return most;
}

QImage frostOf(const QImage& under, bool seeThrough = false) {
    TitleBarFrost frost;
    frost.setSeeThrough(seeThrough);
    frost.update(under, QRect(QPoint(), kBar), kBar);
    return frost.frost();
}

// A clear panel with only its text drawn: the strokes in `colour`, nothing between them.
QImage clearStrokes(QColor colour) {
    QImage image(kBar, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    for (int x = 4; x < kBar.width(); x += 6)
        painter.fillRect(QRectF(x, 2, 2, kBar.height() - 4), colour);
    return image;
}

// The frost as it looks over a desktop of one colour, `backdrop`.
QImage over(const QImage& frost, QColor backdrop) {
    QImage image(frost.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(backdrop);
    QPainter painter(&image);
    painter.drawImage(0, 0, frost);
    return image;
}

int leastOpacity(const QImage& image) {
    int least = 255;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            least = std::min(least, qAlpha(image.pixel(x, y)));
    }
    return least;
}

} // namespace

class TitleBarFrostTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void firstFrostCoversTheWholeBar() {
        TitleBarFrost frost;
        QVERIFY(!frost.holds(kBar, 1));
        const QRect changed = frost.update(striped(kBar, 1), QRect(QPoint(), kBar), kBar);
        QCOMPARE(changed, QRect(QPoint(), kBar));
        QVERIFY(frost.holds(kBar, 1));
        QVERIFY(!frost.holds(kBar, 2));
        QVERIFY(!frost.holds(QSize(200, kBar.height()), 1));
        QCOMPARE(frost.frost().size(), QSize(60, 7));
    }

    void frostHasNoneOfTheStrokesSharpness() {
        const QImage frost = frostOf(striped(kBar, 1));
        const int step = std::abs(qGray(frost.pixel(20, 3)) - qGray(frost.pixel(21, 3)));
        QVERIFY2(step < 8, qPrintable(QString::number(step)));
    }

    void sameContentAgainChangesNothing() {
        TitleBarFrost frost;
        const QImage under = striped(kBar, 1);
        frost.update(under, QRect(QPoint(), kBar), kBar);
        const QRect area(100, 0, 20, kBar.height());
        QVERIFY(frost.update(part(under, area), area, kBar).isEmpty());
    }

    void changedPartFrostsAsTheWholeBarFrostedAnew_data() {
        QTest::addColumn<double>("ratio");
        QTest::newRow("1x") << 1.0;
        QTest::newRow("2x") << 2.0;
        QTest::newRow("1.5x") << 1.5;
    }

    void changedPartFrostsAsTheWholeBarFrostedAnew() {
        QFETCH(double, ratio);
        TitleBarFrost frost;
        frost.update(striped(kBar, ratio), QRect(QPoint(), kBar), kBar);
        const QImage changed = paintedOver(striped(kBar, ratio), QRect(130, 6, 9, 14), Qt::black);
        const QRect area = TitleBarFrost::areaFor(QRect(130, 6, 9, 14), kBar);
        QVERIFY(!frost.update(part(changed, area), area, kBar).isEmpty());
        QCOMPARE(largestDifference(frost.frost(), frostOf(changed)), 0);
    }

    void smallChangeRepaintsOnlyTheColumnsAroundIt() {
        TitleBarFrost frost;
        frost.update(striped(kBar, 1), QRect(QPoint(), kBar), kBar);
        const QRect dot(130, 6, 9, 14);
        const QRect area = TitleBarFrost::areaFor(dot, kBar);
        const QRect repaint =
            frost.update(part(paintedOver(striped(kBar, 1), dot, Qt::black), area), area, kBar);
        QVERIFY(repaint.contains(dot));
        QCOMPARE(repaint.height(), kBar.height());
        QVERIFY2(repaint.width() < 60, qPrintable(QString::number(repaint.width())));
    }

    void areaForTakesWholeShrunkPixelsAndTheWholeHeight() {
        QCOMPARE(TitleBarFrost::areaFor(QRect(5, 10, 6, 3), kBar), QRect(4, 0, 8, kBar.height()));
        QCOMPARE(TitleBarFrost::areaFor(QRect(236, 0, 10, 5), kBar),
                 QRect(236, 0, 4, kBar.height()));
        QVERIFY(TitleBarFrost::areaFor(QRect(0, 40, 10, 5), kBar).isEmpty());
    }

    void whitePanelIsDarkenedUntilWhiteStandsOut() {
        QImage white(kBar, QImage::Format_ARGB32_Premultiplied);
        white.fill(Qt::white);
        QVERIFY(brightest(frostOf(white)) <= TitleBarFrost::kBrightest);
    }

    void brighterSpotDarkensTheWholeBarAgain() {
        TitleBarFrost frost;
        frost.update(striped(kBar, 1), QRect(QPoint(), kBar), kBar);
        const QRect spot(100, 0, 40, kBar.height());
        const QImage bright = paintedOver(striped(kBar, 1), spot, Qt::white);
        const QRect area = TitleBarFrost::areaFor(spot, kBar);
        QCOMPARE(frost.update(part(bright, area), area, kBar), QRect(QPoint(), kBar));
        QVERIFY(brightest(frost.frost()) <= TitleBarFrost::kBrightest);
        QCOMPARE(largestDifference(frost.frost(), frostOf(bright)), 0);
    }

    // A clock's digits under the bar change its brightest spot a little at every tick;
    // the bar is not darkened, nor painted, all over again each time.
    void darkeningStaysWhileTheBrightestSpotChangesALittle() {
        const QRect spot(100, 4, 30, 18);
        TitleBarFrost frost;
        frost.update(paintedOver(striped(kBar, 1), spot, Qt::white), QRect(QPoint(), kBar), kBar);
        const QImage dimmer = paintedOver(striped(kBar, 1), spot, QColor(245, 245, 245));
        const QRect area = TitleBarFrost::areaFor(spot, kBar);
        const QRect repaint = frost.update(part(dimmer, area), area, kBar);
        QVERIFY(!repaint.isEmpty());
        QVERIFY(repaint.width() < kBar.width());
        QVERIFY(brightest(frost.frost()) <= TitleBarFrost::kBrightest);
    }

    void seeThroughFrostLetsTheDesktopShowWhereThePanelIsClear() {
        const QImage frost = frostOf(clearStrokes(Qt::black), true);
        const int opacity = leastOpacity(frost);
        QVERIFY2(opacity < 250, qPrintable(QString::number(opacity)));
        QVERIFY2(opacity >= TitleBarFrost::kSeeThroughOpacity * 255 - 1,
                 qPrintable(QString::number(opacity)));
        QVERIFY(qGray(over(frost, Qt::white).pixel(30, 3)) >
                qGray(over(frost, Qt::black).pixel(30, 3)) + 30);
        const int step = std::abs(qGray(frost.pixel(20, 3)) - qGray(frost.pixel(21, 3)));
        QVERIFY2(step < 8, qPrintable(QString::number(step)));
    }

    void opaqueFrostHidesTheDesktopOverAClearPanel() {
        const QImage frost = frostOf(clearStrokes(Qt::black));
        QCOMPARE(leastOpacity(frost), 255);
    }

    void seeThroughFrostStaysOpaqueWhereThePanelIs() {
        const QImage frost = frostOf(striped(kBar, 1), true);
        QCOMPARE(leastOpacity(frost), 255);
        QCOMPARE(largestDifference(frost, frostOf(striped(kBar, 1))), 0);
    }

    // White text on a clear panel over a white desktop: the brightest a see-through bar
    // can be.
    void seeThroughFrostKeepsTheNameReadableOverAWhiteDesktop() {
        const QImage frost = frostOf(clearStrokes(Qt::white), true);
        QVERIFY(leastOpacity(frost) < 255);
        QVERIFY(brightest(over(frost, Qt::white)) <= TitleBarFrost::kBrightest);
    }

    void otherGlassNeedsTheWholeBarAgain() {
        TitleBarFrost frost;
        frost.update(striped(kBar, 1), QRect(QPoint(), kBar), kBar);
        frost.setSeeThrough(true);
        QVERIFY(!frost.holds(kBar, 1));
        QCOMPARE(frost.update(clearStrokes(Qt::black), QRect(QPoint(), kBar), kBar),
                 QRect(QPoint(), kBar));
        QVERIFY(frost.holds(kBar, 1));
        QVERIFY(leastOpacity(frost.frost()) < 255);
    }

    void darkPanelIsNotDarkenedFurther() {
        QImage black(kBar, QImage::Format_ARGB32_Premultiplied);
        black.fill(Qt::black);
        const QImage frost = frostOf(black);
        // Black with the glass's haze of 8 % white over it, no darker.
        QVERIFY2(std::abs(qGray(frost.pixel(30, 3)) - 20) <= 1,
                 qPrintable(QString::number(qGray(frost.pixel(30, 3)))));
    }
};

QTEST_GUILESS_MAIN(TitleBarFrostTest)
#include "tst_titlebarfrost.moc"
