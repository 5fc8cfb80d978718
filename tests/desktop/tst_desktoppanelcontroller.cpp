// SPDX-License-Identifier: GPL-3.0-or-later

// One panel's desktop window: where it goes, how it switches between pinned and editable,
// and what move and resize drags write back to the store.

#include "support/PanelFixtures.h"
#include "support/RecordingDesktopPlatform.h"
#include "support/StoreFixture.h"
#include "support/ViewTesting.h"

#include "desktop/DesktopPanelController.h"
#include "desktop/DesktopPanelHostView.h"
#include "desktop/DesktopPanelWindow.h"
#include "desktop/PanelTitleBar.h"
#include "engine/PanelRunner.h"

#include <QSignalSpy>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;
using Op = RecordingDesktopPlatform::Op;

namespace {

const PanelFrame kFrame{40, 40, 360, 80};
// A second monitor right of the main one (RecordingDesktopPlatform's 1920 x 1080).
const QRect kMainScreen(0, 0, 1920, 1080);
const QRect kRightScreen(1920, 0, 1280, 1024);
// Halfway along and down the title bar.
const QPointF kInTitleBar(180, DesktopPanelHostView::kTitleBarHeight / 2.0);

} // namespace

class DesktopPanelControllerTest : public QObject {
    Q_OBJECT

private:
    RecordingDesktopPlatform m_platform;
    MockClock m_clock;
    std::unique_ptr<StoreFixture> m_fixture;
    Panel m_panel;

    PanelStore& store() { return *m_fixture->store; }
    Panel storedPanel() { return store().panels().first(); }

    std::unique_ptr<DesktopPanelController> makeController() {
        auto controller = std::make_unique<DesktopPanelController>(m_panel, &store(), m_platform,
                                                                   clockOnlyServices(m_clock));
        // What the windows manager does right after creating it.
        controller->apply(m_panel, false, false);
        return controller;
    }

    std::unique_ptr<DesktopPanelController> makeEditableController() {
        auto controller = makeController();
        controller->apply(m_panel, true, false);
        m_platform.clearCalls();
        return controller;
    }

    // The panel, in the store too, at `frame`.
    void placePanel(const PanelFrame& frame) {
        m_panel.frame = frame;
        m_fixture = std::make_unique<StoreFixture>(QList<Panel>{m_panel});
    }

    QRect windowFrame(const DesktopPanelController& controller) const {
        return m_platform.state(controller.window()).frame;
    }

private Q_SLOTS:
    void init() {
        m_panel = textPanel(QStringLiteral("Notes"), kFrame);
        m_fixture = std::make_unique<StoreFixture>(QList<Panel>{m_panel});
        m_platform = RecordingDesktopPlatform();
    }

    void cleanup() { m_fixture.reset(); }

    void newPanelShowsPinnedWindowAtItsFrame() {
        DesktopPanelController controller(m_panel, &store(), m_platform,
                                          clockOnlyServices(m_clock));
        // Shown by the first apply, which knows whether the panel is hidden.
        QVERIFY(!m_platform.state(controller.window()).shown);
        controller.apply(m_panel, false, false);
        const auto state = m_platform.state(controller.window());
        QCOMPARE(state.frame, QRect(40, 40, 360, 80));
        QVERIFY(state.shown);
        QVERIFY(state.pinned);
        QCOMPARE(m_platform.count(Op::Prepare), 1);
        QVERIFY(refreshesOnTime(controller.runner(), m_clock));
        QCOMPARE(controller.hostView()->size(), QSize(360, 80));
        QVERIFY(!controller.hostView()->editMode());
        QCOMPARE(controller.window()->windowTitle(), QStringLiteral("Notes"));
    }

    void frameIsMeasuredFromMainScreenTopLeft() {
        m_platform.screen = QRect(1920, 100, 1280, 1024);
        auto controller = makeController();
        QCOMPARE(windowFrame(*controller), QRect(1960, 140, 360, 80));
    }

    void withoutScreenFrameIsUsedAsIs() {
        m_platform.screen = std::nullopt;
        auto controller = makeController();
        QCOMPARE(windowFrame(*controller), QRect(40, 40, 360, 80));
    }

    void panelOnAnotherMonitorIsShownThereAtItsFrame() {
        m_platform.otherScreens = {kRightScreen};
        placePanel({2000, 40, 300, 80});
        auto controller = makeController();
        const auto state = m_platform.state(controller->window());
        QCOMPARE(state.frame, QRect(2000, 40, 300, 80));
        QCOMPARE(state.screen, kRightScreen);
        QCOMPARE(state.onScreen, QPoint(80, 40));
    }

    void panelAcrossTwoMonitorsIsShownOnTheOneHoldingMostOfIt() {
        m_platform.otherScreens = {kRightScreen};
        placePanel({1800, 40, 300, 80});
        auto controller = makeController();
        auto state = m_platform.state(controller->window());
        QCOMPARE(state.frame, QRect(1800, 40, 300, 80));
        QCOMPARE(state.screen, kRightScreen);
        QCOMPARE(state.onScreen, QPoint(-120, 40));

        Panel moreOnTheMain = m_panel;
        moreOnTheMain.frame.x = 1700;
        controller->apply(moreOnTheMain, false, false);
        state = m_platform.state(controller->window());
        QCOMPARE(state.screen, kMainScreen);
        QCOMPARE(state.onScreen, QPoint(1700, 40));
    }

    // Its saved frame stays as it was, so the panel goes back once the monitor does.
    void panelOfAnUnpluggedMonitorIsShownInsideTheMainOneUntilItReturns() {
        m_platform.otherScreens = {kRightScreen};
        placePanel({2000, 1000, 300, 80});
        auto controller = makeController();
        QSignalSpy changes(&store(), &PanelStore::panelsChanged);
        m_platform.setScreens(kMainScreen, {});
        controller->followScreens();
        auto state = m_platform.state(controller->window());
        QCOMPARE(state.frame, QRect(1620, 1000, 300, 80));
        QCOMPARE(state.screen, kMainScreen);
        QCOMPARE(controller->placedFrame(), QRectF(1620, 1000, 300, 80));
        QCOMPARE(controller->panel().frame, m_panel.frame);
        QCOMPARE(changes.count(), 0);

        m_platform.setScreens(kMainScreen, {kRightScreen});
        controller->followScreens();
        state = m_platform.state(controller->window());
        QCOMPARE(state.frame, QRect(2000, 1000, 300, 80));
        QCOMPARE(state.screen, kRightScreen);
    }

    // On Wayland a window goes onto another output only by being made anew, which would end
    // the drag: it goes over once the drag ends.
    void dragOntoAnotherMonitorMovesTheWindowThereWhenItEnds() {
        m_platform.otherScreens = {kRightScreen};
        auto controller = makeEditableController();
        // With Shift held: nothing lines up with the screen's edges.
        Q_EMIT controller->hostView()->moveDragged(QPointF(1900, 10), Qt::ShiftModifier);
        auto state = m_platform.state(controller->window());
        QCOMPARE(state.frame, QRect(1940, 50, 360, 80));
        QCOMPARE(state.screen, kMainScreen);
        QCOMPARE(state.onScreen, QPoint(1940, 50));
        Q_EMIT controller->hostView()->moveDragEnded();
        state = m_platform.state(controller->window());
        QCOMPARE(state.frame, QRect(1940, 50, 360, 80));
        QCOMPARE(state.screen, kRightScreen);
        QCOMPARE(state.onScreen, QPoint(20, 50));
        QCOMPARE(storedPanel().frame, (PanelFrame{1940, 50, 360, 80}));
    }

    void dragOfAPanelShownInsideTheMainScreenStartsWhereItIsShown() {
        placePanel({2000, 40, 300, 80});
        auto controller = makeEditableController();
        QCOMPARE(windowFrame(*controller), QRect(1620, 40, 300, 80));
        Q_EMIT controller->hostView()->moveDragged(QPointF(-20, 30), Qt::ShiftModifier);
        Q_EMIT controller->hostView()->moveDragEnded();
        QCOMPARE(windowFrame(*controller), QRect(1600, 70, 300, 80));
        QCOMPARE(storedPanel().frame, (PanelFrame{1600, 70, 300, 80}));
    }

    void pressWithoutMoveOnAPanelShownInsideTheMainScreenKeepsItsFrame() {
        placePanel({2000, 40, 300, 80});
        auto controller = makeEditableController();
        QCOMPARE(windowFrame(*controller), QRect(1620, 40, 300, 80));
        Q_EMIT controller->hostView()->moveDragEnded();
        QCOMPARE(storedPanel().frame, m_panel.frame);
        QCOMPARE(windowFrame(*controller), QRect(1620, 40, 300, 80));
    }

    void frameWithinHalfPointDoesNotMoveWindow() {
        auto controller = makeController();
        m_platform.clearCalls();
        Panel nudged = m_panel;
        nudged.frame = {40.49, 39.6, 360.3, 80.45};
        controller->apply(nudged, false, false);
        QCOMPARE(m_platform.count(Op::SetFrame), 0);
        QCOMPARE(windowFrame(*controller), QRect(40, 40, 360, 80));
        QCOMPARE(controller->panel(), nudged);
    }

    void frameHalfPointAwayMovesWindow() {
        auto controller = makeController();
        m_platform.clearCalls();
        Panel moved = m_panel;
        moved.frame = {40.5, 40, 360, 80};
        controller->apply(moved, false, false);
        QCOMPARE(m_platform.count(Op::SetFrame), 1);
        QCOMPARE(windowFrame(*controller), QRect(41, 40, 360, 80));
        QCOMPARE(controller->lastPushedFrame(), moved.frame);
    }

    void resizePastMinimumStopsAt120By50WithTopLeftFixed() {
        auto controller = makeEditableController();
        Q_EMIT controller->hostView()->resizeDragged(QPointF(-1000, -1000));
        QCOMPARE(windowFrame(*controller), QRect(40, 40, 120, 50));
        QCOMPARE(storedPanel().frame, (PanelFrame{40, 40, 120, 50}));
        QCOMPARE(controller->hostView()->size(), QSize(120, 50));
    }

    void resizeDraggedBackEnlargesFromStartFrame() {
        auto controller = makeEditableController();
        Q_EMIT controller->hostView()->resizeDragged(QPointF(-1000, -1000));
        Q_EMIT controller->hostView()->resizeDragged(QPointF(-200, 10));
        QCOMPARE(windowFrame(*controller), QRect(40, 40, 160, 90));
        QCOMPARE(storedPanel().frame, (PanelFrame{40, 40, 160, 90}));
    }

    void storeEchoOfWrittenFrameDoesNotMoveWindowAgain() {
        auto controller = makeEditableController();
        Q_EMIT controller->hostView()->moveDragged(QPointF(10.3, 5.2));
        QCOMPARE(m_platform.count(Op::SetFrame), 1);
        controller->apply(storedPanel(), true, false);
        QCOMPARE(m_platform.count(Op::SetFrame), 1);
        QCOMPARE(m_platform.callsFor(controller->window()), 1);

        // A later change of something else carries the same frame along.
        Panel renamed = storedPanel();
        renamed.name = QStringLiteral("Renamed");
        controller->apply(renamed, true, false);
        QCOMPARE(m_platform.count(Op::SetFrame), 1);
        QCOMPARE(windowFrame(*controller), QRect(50, 45, 360, 80));
    }

    void moveDragComputesEveryFrameFromDragStart() {
        auto controller = makeEditableController();
        Q_EMIT controller->hostView()->moveDragged(QPointF(10, 10));
        Q_EMIT controller->hostView()->moveDragged(QPointF(30, -20));
        QCOMPARE(windowFrame(*controller), QRect(70, 20, 360, 80));
        Q_EMIT controller->hostView()->moveDragEnded();
        Q_EMIT controller->hostView()->moveDragged(QPointF(5, 5));
        QCOMPARE(windowFrame(*controller), QRect(75, 25, 360, 80));
        QCOMPARE(storedPanel().frame, (PanelFrame{75, 25, 360, 80}));
    }

    void dragStoresUnroundedFrame() {
        auto controller = makeEditableController();
        Q_EMIT controller->hostView()->moveDragged(QPointF(10.25, 0.75));
        QCOMPARE(storedPanel().frame, (PanelFrame{50.25, 40.75, 360, 80}));
        QCOMPARE(windowFrame(*controller), QRect(50, 41, 360, 80));
        Q_EMIT controller->hostView()->moveDragEnded();
        QCOMPARE(storedPanel().frame, (PanelFrame{50.25, 40.75, 360, 80}));
    }

    void everyDragStepAndItsEndWriteTheStore() {
        auto controller = makeEditableController();
        QSignalSpy changes(&store(), &PanelStore::panelsChanged);
        // With Shift held: the right edge would otherwise line up with the screen's centre.
        Q_EMIT controller->hostView()->moveDragged(QPointF(1, 1), Qt::ShiftModifier);
        Q_EMIT controller->hostView()->moveDragged(QPointF(2, 2), Qt::ShiftModifier);
        Q_EMIT controller->hostView()->moveDragEnded();
        QCOMPARE(changes.count(), 3);
        QCOMPARE(storedPanel().frame, (PanelFrame{42, 42, 360, 80}));
    }

    void dragEndedWithoutMovementCommitsUnchangedFrame() {
        auto controller = makeEditableController();
        QSignalSpy changes(&store(), &PanelStore::panelsChanged);
        Q_EMIT controller->hostView()->resizeDragEnded();
        QCOMPARE(changes.count(), 1);
        QCOMPARE(storedPanel().frame, kFrame);
        QCOMPARE(m_platform.count(Op::SetFrame), 0);
    }

    void resizeKeepsFramesInMainScreenCoordinates() {
        m_platform.screen = QRect(100, 50, 1280, 1024);
        auto controller = makeEditableController();
        Q_EMIT controller->hostView()->resizeDragged(QPointF(40, 20));
        QCOMPARE(windowFrame(*controller), QRect(140, 90, 400, 100));
        QCOMPARE(storedPanel().frame, (PanelFrame{40, 40, 400, 100}));
    }

    void togglingEditModeReappliesPanelToRunnerAndRebuildsHostView() {
        auto controller = makeController();
        // A stopped runner shows whether it was handed the panel again: applying restarts it.
        controller->runner().stop();
        controller->apply(m_panel, true, false);
        QVERIFY(refreshesOnTime(controller->runner(), m_clock));
        QVERIFY(controller->hostView()->editMode());
        QCOMPARE(controller->hostView()->panel(), m_panel);

        controller->runner().stop();
        controller->apply(m_panel, false, false);
        QVERIFY(refreshesOnTime(controller->runner(), m_clock));
        QVERIFY(!controller->hostView()->editMode());
    }

    void editModeLiftsWindowAndTakesMouse() {
        auto controller = makeController();
        QVERIFY(m_platform.state(controller->window()).pinned);
        controller->apply(m_panel, true, false);
        QVERIFY(!m_platform.state(controller->window()).pinned);
        controller->apply(m_panel, false, false);
        QVERIFY(m_platform.state(controller->window()).pinned);
        QCOMPARE(m_platform.count(Op::SetFrame, controller->window()), 1);
    }

    void hiddenEnabledPanelComesBackAtItsLastFrame() {
        auto controller = makeController();
        controller->apply(m_panel, false, true);
        QVERIFY(!m_platform.state(controller->window()).shown);
        m_platform.clearCalls();
        controller->apply(m_panel, false, false);
        QVERIFY(m_platform.state(controller->window()).shown);
        QCOMPARE(m_platform.count(Op::OrderFront), 1);
        QCOMPARE(m_platform.count(Op::SetFrame), 0);
        QCOMPARE(windowFrame(*controller), QRect(40, 40, 360, 80));
    }

    void unchangedApplyDoesNothing() {
        auto controller = makeController();
        m_platform.clearCalls();
        controller->runner().stop();
        controller->apply(m_panel, false, false);
        QCOMPARE(m_platform.calls().size(), 0);
        QVERIFY(!refreshesOnTime(controller->runner(), m_clock));
    }

    void withStoreGoneDragStillMovesWindow() {
        auto controller = makeEditableController();
        m_fixture->store.reset();
        Q_EMIT controller->hostView()->moveDragged(QPointF(20, 0));
        Q_EMIT controller->hostView()->moveDragEnded();
        QCOMPARE(windowFrame(*controller), QRect(60, 40, 360, 80));
        QCOMPARE(controller->panel().frame, (PanelFrame{60, 40, 360, 80}));
    }

    // The face the inspector's picker stores is the face the panel's window draws.
    void panelWindowDrawsTheFaceItsStyleNames() {
        const auto widthIn = [&](const char* face) -> double {
            m_panel.textTemplate = QStringLiteral("MMMMMMMM");
            m_panel.style.fontName = QLatin1String(face);
            m_panel.style.fontSize = 24;
            m_panel.style.showShadow = false;
            auto controller = makeController();
            double width = 0;
            [[maybe_unused]] const bool drawn = QTest::qWaitFor([&] {
                width = inkBounds(render(*controller->hostView(), 1), isVisible).width();
                return width > 0;
            });
            return width;
        };
        const double regular = widthIn("DejaVuSans");
        const double bold = widthIn("DejaVuSans-Bold");
        QVERIFY2(regular > 0 && bold > regular + 8,
                 qPrintable(QStringLiteral("%1 %2").arg(regular).arg(bold)));
    }

    void withoutCompositorWindowPaintsDarkBackdrop() {
        m_platform.compositor = false;
        auto controller = makeController();
        QVERIFY(controller->window()->hasDarkBackdrop());
    }

    void withCompositorWindowStaysClear() {
        auto controller = makeController();
        QVERIFY(!controller->window()->hasDarkBackdrop());
    }

    void glassPanelAsksForBlurBehindItsShape() {
        m_panel.style.showGlassBackground = true;
        auto controller = makeController();
        const QPainterPath shape = m_platform.state(controller->window()).blurShape;
        QCOMPARE(shape.boundingRect(), QRectF(0, 0, 360, 80));
        QVERIFY(!shape.contains(QPointF(0.5, 0.5))); // the rounded corner is left out

        Panel plain = m_panel;
        plain.style.showGlassBackground = false;
        controller->apply(plain, false, false);
        QVERIFY(m_platform.state(controller->window()).blurShape.isEmpty());
    }

    void editModeBlursBehindTheTitleBarWhereTheCompositorBlurs() {
        m_platform.blurOffered = true;
        auto controller = makeEditableController();
        const QPainterPath shape = m_platform.state(controller->window()).blurShape;
        QVERIFY(shape.contains(kInTitleBar));
        QVERIFY(!shape.contains(QPointF(180, 40)));
        QVERIFY(controller->hostView()->findChild<PanelTitleBar*>()->seeThrough());

        controller->apply(m_panel, false, false);
        QVERIFY(m_platform.state(controller->window()).blurShape.isEmpty());
        QVERIFY(!controller->hostView()->findChild<PanelTitleBar*>()->seeThrough());
    }

    void blurStartedInEditModeIsTakenWhenTheCompositorChanges() {
        auto controller = makeEditableController();
        QVERIFY(!controller->hostView()->findChild<PanelTitleBar*>()->seeThrough());
        m_platform.blurOffered = true;
        controller->updateBackdrop();
        QVERIFY(m_platform.state(controller->window()).blurShape.contains(kInTitleBar));
        QVERIFY(controller->hostView()->findChild<PanelTitleBar*>()->seeThrough());
    }

    void plainPanelNeverAsksForBlurWhereTheCompositorDoesNotBlur() {
        auto controller = makeEditableController();
        Q_EMIT controller->hostView()->resizeDragged(QPointF(10, 10));
        QCOMPARE(m_platform.count(Op::BlurBehind), 0);
    }
};

QTEST_MAIN(DesktopPanelControllerTest)
#include "tst_desktoppanelcontroller.moc"
