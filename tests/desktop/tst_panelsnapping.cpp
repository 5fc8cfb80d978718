// SPDX-License-Identifier: GPL-3.0-or-later

// How a dragged panel lines up with the panels around it and with its screen.

#include "desktop/PanelSnapping.h"

#include <QTest>

using namespace corkwheel;
using Drag = PanelSnapping::Drag;

Q_DECLARE_METATYPE(corkwheel::PanelSnapping::Drag)

namespace {

const QRectF kScreen(0, 0, 1920, 1080);
// Lines at x 600, 750, 900 and y 300, 400, 500; and at x 790, 890, 990 and y 800, 850, 900.
const QRectF kOther(600, 300, 300, 200);
const QRectF kFarOther(790, 800, 200, 100);
// The dragged panel is 200 × 120: its lines lie 100 apart across and 60 apart down.
constexpr double kWidth = 200;
constexpr double kHeight = 120;

QRectF at(double x, double y) {
    return {x, y, kWidth, kHeight};
}

PanelSnapping::Snapped snapped(const QRectF& proposed, Drag drag,
                               Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    return PanelSnapping::snap(proposed, drag, {kOther, kFarOther}, kScreen, modifiers);
}

} // namespace

class PanelSnappingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void draggedFrameLinesUp_data() {
        QTest::addColumn<QRectF>("proposed");
        QTest::addColumn<Drag>("drag");
        QTest::addColumn<QRectF>("expected");

        // Across, at a height where nothing lines up down.
        QTest::newRow("left to left") << at(605, 200) << Drag::Move << at(600, 200);
        QTest::newRow("left to right") << at(897, 200) << Drag::Move << at(900, 200);
        QTest::newRow("right to left") << at(403, 200) << Drag::Move << at(400, 200);
        QTest::newRow("right to right") << at(706, 200) << Drag::Move << at(700, 200);
        QTest::newRow("left to centre") << at(746, 200) << Drag::Move << at(750, 200);
        QTest::newRow("centre to centre") << at(653, 200) << Drag::Move << at(650, 200);
        QTest::newRow("left to screen left") << at(-6, 200) << Drag::Move << at(0, 200);
        QTest::newRow("right to screen right") << at(1725, 200) << Drag::Move << at(1720, 200);
        QTest::newRow("centre to screen centre") << at(857, 200) << Drag::Move << at(860, 200);
        QTest::newRow("8 points off") << at(608, 200) << Drag::Move << at(600, 200);

        // Down, at a place where nothing lines up across.
        QTest::newRow("top to top") << at(100, 305) << Drag::Move << at(100, 300);
        QTest::newRow("bottom to bottom") << at(100, 383) << Drag::Move << at(100, 380);
        QTest::newRow("top to bottom") << at(100, 496) << Drag::Move << at(100, 500);
        QTest::newRow("bottom to top") << at(100, 176) << Drag::Move << at(100, 180);
        QTest::newRow("middle to middle") << at(100, 337) << Drag::Move << at(100, 340);
        QTest::newRow("top to screen top") << at(100, 7) << Drag::Move << at(100, 0);
        QTest::newRow("bottom to screen bottom") << at(100, 955) << Drag::Move << at(100, 960);
        QTest::newRow("middle to screen middle") << at(100, 476) << Drag::Move << at(100, 480);

        QTest::newRow("both ways at once") << at(604, 303) << Drag::Move << at(600, 300);
        QTest::newRow("nearer of two, left") << at(596, 200) << Drag::Move << at(600, 200);
        QTest::newRow("nearer of two, right") << at(593, 200) << Drag::Move << at(590, 200);
        QTest::newRow("nothing within 8") << at(609, 200) << Drag::Move << at(609, 200);

        // Resizing moves only the right and bottom edges.
        QTest::newRow("resize right edge")
            << QRectF(100, 200, 496, 120) << Drag::Resize << QRectF(100, 200, 500, 120);
        QTest::newRow("resize bottom edge")
            << QRectF(100, 200, 200, 96) << Drag::Resize << QRectF(100, 200, 200, 100);
        QTest::newRow("resize leaves left edge") << at(605, 200) << Drag::Resize << at(605, 200);
        QTest::newRow("resize keeps minimum width")
            << QRectF(635, 200, 120, 120) << Drag::Resize << QRectF(635, 200, 120, 120);
        QTest::newRow("resize keeps minimum height")
            << QRectF(100, 255, 200, 50) << Drag::Resize << QRectF(100, 255, 200, 50);
    }

    void draggedFrameLinesUp() {
        QFETCH(QRectF, proposed);
        QFETCH(Drag, drag);
        QFETCH(QRectF, expected);
        QCOMPARE(snapped(proposed, drag).frame, expected);
    }

    void shiftLeavesFrameAsDragged() {
        const PanelSnapping::Snapped moved = snapped(at(605, 303), Drag::Move, Qt::ShiftModifier);
        QCOMPARE(moved.frame, at(605, 303));
        QVERIFY(moved.guides.isEmpty());
        const QRectF resized(100, 200, 496, 96);
        QCOMPARE(snapped(resized, Drag::Resize, Qt::ShiftModifier).frame, resized);
    }

    void guideRunsAlongLinedUpEdgeAcrossBothPanels() {
        const PanelSnapping::Snapped moved = snapped(at(605, 200), Drag::Move);
        QCOMPARE(moved.guides, (QList<QLineF>{QLineF(600, 200, 600, 500)}));
    }

    void guideAlongScreenEdgeSpansTheScreen() {
        const PanelSnapping::Snapped moved = snapped(at(100, 7), Drag::Move);
        QCOMPARE(moved.guides, (QList<QLineF>{QLineF(0, 0, 1920, 0)}));
    }

    void nothingLinedUpDrawsNoGuide() {
        QVERIFY(snapped(at(609, 200), Drag::Move).guides.isEmpty());
    }
};

QTEST_GUILESS_MAIN(PanelSnappingTest)
#include "tst_panelsnapping.moc"
