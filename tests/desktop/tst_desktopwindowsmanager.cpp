// SPDX-License-Identifier: GPL-3.0-or-later

// The set of desktop windows follows the store: one controller per panel, disabled panels
// kept but ordered out, every change reconciled at once.

#include "support/PanelFixtures.h"
#include "support/RecordingDesktopPlatform.h"
#include "support/StoreFixture.h"

#include "desktop/DesktopPanelController.h"
#include "desktop/DesktopPanelHostView.h"
#include "desktop/DesktopPanelWindow.h"
#include "desktop/DesktopWindowsManager.h"
#include "desktop/PanelSnapGuides.h"
#include "engine/PanelRunner.h"

#include <QSignalSpy>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;
using Op = RecordingDesktopPlatform::Op;

class DesktopWindowsManagerTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<RecordingDesktopPlatform> m_platform;
    MockClock m_time;
    std::unique_ptr<StoreFixture> m_fixture;
    std::unique_ptr<DesktopWindowsManager> m_manager;
    Panel m_clock;
    Panel m_notes;
    Panel m_disabled;

    PanelStore& store() { return *m_fixture->store; }

    void start(const QList<Panel>& panels) {
        m_fixture = std::make_unique<StoreFixture>(panels);
        m_manager = std::make_unique<DesktopWindowsManager>(store(), *m_platform,
                                                            clockOnlyServices(m_time));
    }

    void startWithThreePanels() { start({m_clock, m_notes, m_disabled}); }

    DesktopPanelController* controllerOf(const Panel& panel) const {
        return m_manager->controller(panel.id);
    }
    const QWidget* windowOf(const Panel& panel) const { return controllerOf(panel)->window(); }
    bool isShown(const Panel& panel) const { return m_platform->state(windowOf(panel)).shown; }

    // Under a panel's short text, halfway along its bottom edge: the dark backdrop shows
    // there, or the translucent panel. Drawn at the panel's size, as a window system would
    // place it, without a window background, as a translucent window is.
    QColor belowText(const Panel& panel) const {
        const QSize size(static_cast<int>(panel.frame.width), static_cast<int>(panel.frame.height));
        QImage image(size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        controllerOf(panel)->window()->render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        return image.pixelColor(size.width() / 2, size.height() - 4);
    }
    static bool isDarkBackdrop(const QColor& color) {
        return color.alpha() == 255 && color.lightness() < 40;
    }

private Q_SLOTS:
    void init() {
        m_platform = std::make_unique<RecordingDesktopPlatform>();
        m_clock = textPanel(QStringLiteral("Clock"), {40, 40, 360, 80});
        m_notes = textPanel(QStringLiteral("Notes"), {40, 140, 280, 210});
        m_disabled = textPanel(QStringLiteral("Off"), {40, 370, 420, 60}, false);
    }

    void cleanup() {
        m_manager.reset();
        m_fixture.reset();
    }

    void startShowsEnabledPanelsAndKeepsDisabledOnesOut() {
        startWithThreePanels();
        QCOMPARE(m_manager->controllerCount(), 3);
        QVERIFY(isShown(m_clock));
        QVERIFY(isShown(m_notes));
        QVERIFY(!isShown(m_disabled));
        QCOMPARE(m_platform->state(windowOf(m_notes)).frame, QRect(40, 140, 280, 210));
        QVERIFY(m_platform->state(windowOf(m_clock)).pinned);
    }

    void emptyPanelListClosesEveryWindow() {
        startWithThreePanels();
        QList<const QWidget*> windows = {windowOf(m_clock), windowOf(m_notes),
                                         windowOf(m_disabled)};
        m_platform->clearCalls();
        for (const Panel& panel : {m_clock, m_notes, m_disabled})
            store().removePanel(panel.id);
        QCOMPARE(m_manager->controllerCount(), 0);
        QCOMPARE(m_platform->count(Op::Close), 3);
        for (const QWidget* window : windows) {
            QVERIFY(m_platform->state(window).closed);
            QCOMPARE(m_platform->count(Op::OrderOut, window), 1);
        }
        // Each window is ordered out right before it is closed.
        const auto& calls = m_platform->calls();
        for (qsizetype i = 0; i < calls.size(); ++i) {
            if (calls[i].op == Op::Close) {
                QVERIFY(i > 0);
                QCOMPARE(calls[i - 1].op, Op::OrderOut);
                QCOMPARE(calls[i - 1].window, calls[i].window);
            }
        }
    }

    void disablingPanelOrdersWindowOutButKeepsItsController() {
        startWithThreePanels();
        DesktopPanelController* controller = controllerOf(m_notes);
        const QWidget* window = controller->window();
        Panel disabled = m_notes;
        disabled.isEnabled = false;
        store().update(disabled);
        QCOMPARE(controllerOf(m_notes), controller);
        QVERIFY(!isShown(m_notes));
        QVERIFY(refreshesOnTime(controller->runner(), m_time));

        m_platform->clearCalls();
        store().update(m_notes);
        QCOMPARE(controllerOf(m_notes)->window(), window);
        QVERIFY(isShown(m_notes));
        QCOMPARE(m_platform->count(Op::OrderFront, window), 1);
        QCOMPARE(m_platform->count(Op::Close), 0);
    }

    void panelDisabledFromTheStartIsNeverOrderedFront() {
        startWithThreePanels();
        QVERIFY(!isShown(m_disabled));
        QCOMPARE(m_platform->count(Op::OrderFront, windowOf(m_disabled)), 0);
        QCOMPARE(m_platform->count(Op::OrderFront, windowOf(m_clock)), 1);
    }

    void hidingAllOrdersEveryWindowOutAndShowingBringsBackOnlyEnabledOnes() {
        startWithThreePanels();
        store().setPanelsHidden(true);
        QVERIFY(!isShown(m_clock));
        QVERIFY(!isShown(m_notes));
        QVERIFY(!isShown(m_disabled));
        QCOMPARE(m_manager->controllerCount(), 3);

        m_platform->clearCalls();
        store().setPanelsHidden(false);
        QVERIFY(isShown(m_clock));
        QVERIFY(isShown(m_notes));
        QVERIFY(!isShown(m_disabled));
        QCOMPARE(m_platform->count(Op::OrderFront, windowOf(m_disabled)), 0);
    }

    void deletingPanelStopsItsRefreshTimerBeforeItsWindowCloses() {
        startWithThreePanels();
        const PanelRunner* runner = &controllerOf(m_notes)->runner();
        QVERIFY(refreshesOnTime(*runner, m_time));
        std::optional<bool> refreshesAtClose;
        m_platform->onClose = [&](const QWidget*) {
            refreshesAtClose = refreshesOnTime(*runner, m_time);
        };
        store().removePanel(m_notes.id);
        QCOMPARE(refreshesAtClose, std::optional<bool>(false));
        QCOMPARE(m_manager->controller(m_notes.id), nullptr);
        QCOMPARE(m_manager->controllerCount(), 2);
    }

    void togglingEditModeReachesEveryControllerInOnePass() {
        startWithThreePanels();
        m_platform->clearCalls();
        QSignalSpy passes(m_manager.get(), &DesktopWindowsManager::reconciled);
        // What every controller has when the pass ends.
        QList<bool> editModesAtPassEnd;
        const QObject listening; // ends the connection with the test
        connect(m_manager.get(), &DesktopWindowsManager::reconciled, &listening, [&] {
            for (const Panel& panel : {m_clock, m_notes, m_disabled})
                editModesAtPassEnd.append(controllerOf(panel)->hostView()->editMode());
        });
        store().setEditMode(true);
        QCOMPARE(passes.count(), 1);
        QCOMPARE(editModesAtPassEnd, QList<bool>({true, true, true}));
        for (const Panel& panel : {m_clock, m_notes, m_disabled}) {
            QVERIFY(controllerOf(panel)->hostView()->editMode());
            QVERIFY(!m_platform->state(windowOf(panel)).pinned);
            QCOMPARE(m_platform->count(Op::SetPinned, windowOf(panel)), 1);
        }
        QVERIFY(!isShown(m_disabled));
        QCOMPARE(m_platform->count(Op::OrderFront, windowOf(m_disabled)), 0);
    }

    void changeLeavingPanelAsItWasCausesNoWindowOperation() {
        startWithThreePanels();
        m_platform->clearCalls();
        store().update(m_notes);
        QCOMPARE(m_platform->calls().size(), 0);

        Panel renamed = m_clock;
        renamed.name = QStringLiteral("Wall clock");
        store().update(renamed);
        QVERIFY(m_platform->callsFor(windowOf(m_clock)) > 0);
        QCOMPARE(m_platform->callsFor(windowOf(m_notes)), 0);
        QCOMPARE(m_platform->callsFor(windowOf(m_disabled)), 0);
    }

    void newPanelGetsWindowAndOthersAreLeftAlone() {
        start({m_clock});
        m_platform->clearCalls();
        store().addPanel(PanelType::Text);
        QCOMPARE(m_manager->controllerCount(), 2);
        const Panel added = store().panels().last();
        QVERIFY(isShown(added));
        QCOMPARE(m_platform->callsFor(windowOf(m_clock)), 0);
    }

    void duplicateIdentifiersShareOneControllerAndTheLastWins() {
        Panel twin = m_clock;
        twin.frame = {500, 500, 200, 100};
        start({m_clock, twin});
        QCOMPARE(m_manager->controllerCount(), 1);
        QCOMPARE(m_platform->state(windowOf(m_clock)).frame, QRect(500, 500, 200, 100));
    }

    void destroyingManagerLeavesWindowsAsTheyAre() {
        startWithThreePanels();
        m_platform->clearCalls();
        m_manager.reset();
        QCOMPARE(m_platform->calls().size(), 0);
    }

    void compositorStartingLaterMakesEveryWindowTranslucent() {
        m_platform->compositor = false;
        startWithThreePanels();
        QVERIFY(isDarkBackdrop(belowText(m_clock)));
        m_platform->setCompositor(true);
        for (const Panel& panel : {m_clock, m_notes, m_disabled})
            QCOMPARE(belowText(panel).alpha(), 0);
    }

    void compositorQuittingGivesEveryWindowItsDarkBackdrop() {
        startWithThreePanels();
        QCOMPARE(belowText(m_notes).alpha(), 0);
        m_platform->setCompositor(false);
        for (const Panel& panel : {m_clock, m_notes, m_disabled})
            QVERIFY(isDarkBackdrop(belowText(panel)));
    }

    // A monitor plugged in left of the main one moves the main screen's corner, and the
    // panels go with it; unplugged again, they come back.
    void mainScreenMovingTakesEveryPanelAlong() {
        startWithThreePanels();
        m_platform->setScreen(QRect(1920, 0, 1920, 1080));
        QCOMPARE(m_platform->state(windowOf(m_clock)).frame, QRect(1960, 40, 360, 80));
        QCOMPARE(m_platform->state(windowOf(m_notes)).frame, QRect(1960, 140, 280, 210));
        QCOMPARE(m_platform->state(windowOf(m_disabled)).frame, QRect(1960, 370, 420, 60));
        m_platform->setScreen(QRect(0, 0, 1920, 1080));
        QCOMPARE(m_platform->state(windowOf(m_clock)).frame, QRect(40, 40, 360, 80));
    }

    // A monitor unplugged takes its panels onto the main screen for as long as it is gone,
    // and the document stays as it was.
    void panelsOfAnUnpluggedMonitorComeToTheMainScreenAndGoBack() {
        const QRect main(0, 0, 1920, 1080);
        const QRect right(1920, 0, 1280, 1024);
        m_platform->otherScreens = {right};
        m_notes.frame = {2000, 140, 280, 210};
        startWithThreePanels();
        QTRY_VERIFY_WITH_TIMEOUT(!m_fixture->savedPanels().isEmpty(), 2000);
        QSignalSpy changed(&store(), &PanelStore::panelsChanged);
        QCOMPARE(m_platform->state(windowOf(m_notes)).frame, QRect(2000, 140, 280, 210));
        m_platform->setScreens(main, {});
        QCOMPARE(m_platform->state(windowOf(m_notes)).frame, QRect(1640, 140, 280, 210));
        QCOMPARE(m_platform->state(windowOf(m_clock)).frame, QRect(40, 40, 360, 80));
        m_platform->setScreens(main, {right});
        QCOMPARE(m_platform->state(windowOf(m_notes)).frame, QRect(2000, 140, 280, 210));
        QCOMPARE(m_platform->state(windowOf(m_notes)).screen, right);
        QCOMPARE(changed.count(), 0);
    }

    void mainScreenResizedLeavesPanelsWhereTheyAre() {
        startWithThreePanels();
        m_platform->setScreen(QRect(0, 0, 1280, 720));
        QCOMPARE(m_platform->state(windowOf(m_clock)).frame, QRect(40, 40, 360, 80));
        QCOMPARE(m_platform->state(windowOf(m_notes)).frame, QRect(40, 140, 280, 210));
    }

    void mainScreenMovingLeavesTheDocumentAlone() {
        startWithThreePanels();
        QTRY_VERIFY_WITH_TIMEOUT(!m_fixture->savedPanels().isEmpty(), 2000);
        QSignalSpy changed(&store(), &PanelStore::panelsChanged);
        m_platform->setScreen(QRect(1920, 0, 1920, 1080));
        QCOMPARE(changed.count(), 0);
        QCOMPARE(controllerOf(m_clock)->panel().frame, m_clock.frame);
    }

    void destroyedManagerStopsWatchingCompositorAndScreens() {
        startWithThreePanels();
        QVERIFY(m_platform->compositorWatcher);
        QVERIFY(m_platform->screensWatcher);
        m_manager.reset();
        QVERIFY(!m_platform->compositorWatcher);
        QVERIFY(!m_platform->screensWatcher);
    }

    void dragIsSavedToDocumentAfterTheLastChange() {
        startWithThreePanels();
        store().setEditMode(true);
        QTRY_VERIFY_WITH_TIMEOUT(!m_fixture->savedPanels().isEmpty(), 2000);
        QSignalSpy written(&store(), &PanelStore::documentWritten);
        DesktopPanelHostView* host = controllerOf(m_notes)->hostView();
        Q_EMIT host->moveDragged(QPointF(100, 50));
        Q_EMIT host->moveDragged(QPointF(200, 60.5));
        Q_EMIT host->moveDragEnded();
        QCOMPARE(written.count(), 0);
        QVERIFY(written.wait(2000));
        QCOMPARE(written.count(), 1);
        QCOMPARE(m_fixture->savedPanels().at(1).frame, (PanelFrame{240, 200.5, 280, 210}));
        QCOMPARE(m_platform->state(windowOf(m_notes)).frame, QRect(240, 201, 280, 210));
    }

    // Away from the lines of the screen (1920 × 1080): x 0, 960, 1920 and y 0, 540, 1080.
    void moveDragLinesUpWithEnabledPanelsOnlyAndShowsGuide() {
        const Panel shown = textPanel(QStringLiteral("Shown"), {100, 40, 200, 80});
        const Panel off = textPanel(QStringLiteral("Off"), {500, 400, 200, 60}, false);
        const Panel mover = textPanel(QStringLiteral("Mover"), {40, 200, 150, 90});
        start({shown, off, mover});
        store().setEditMode(true);
        DesktopPanelHostView* host = controllerOf(mover)->hostView();

        // 5 points right of the shown panel's left edge: lined up, with the guide along the
        // mover's left edge, reaching up to the shown panel.
        Q_EMIT host->moveDragged(QPointF(65, 0));
        QCOMPARE(controllerOf(mover)->panel().frame, (PanelFrame{100, 200, 150, 90}));
        QCOMPARE(host->snapGuides()->guides(), (QList<QLineF>{QLineF(0, -160, 0, 90)}));

        // 3 points right of the disabled panel's left edge: left where dragged.
        Q_EMIT host->moveDragged(QPointF(463, 0));
        QCOMPARE(controllerOf(mover)->panel().frame, (PanelFrame{503, 200, 150, 90}));
        QVERIFY(host->snapGuides()->guides().isEmpty());

        Q_EMIT host->moveDragged(QPointF(65, 0), Qt::ShiftModifier);
        QCOMPARE(controllerOf(mover)->panel().frame, (PanelFrame{105, 200, 150, 90}));

        Q_EMIT host->moveDragged(QPointF(65, 0));
        Q_EMIT host->moveDragEnded();
        QCOMPARE(store().panels().at(2).frame, (PanelFrame{100, 200, 150, 90}));
        QVERIFY(host->snapGuides()->guides().isEmpty());
    }

    // A desktop panel along the top of the screen: the top of what windows may take is
    // where a dragged panel lines up, not the screen's own edge beneath that panel.
    void moveDragLinesUpWithTheTopOfTheWorkArea() {
        m_platform->workArea = QRect(0, 32, 1920, 1048);
        const Panel mover = textPanel(QStringLiteral("Mover"), {40, 200, 150, 90});
        start({mover});
        store().setEditMode(true);
        DesktopPanelHostView* host = controllerOf(mover)->hostView();
        Q_EMIT host->moveDragged(QPointF(0, -163));
        QCOMPARE(controllerOf(mover)->panel().frame, (PanelFrame{40, 32, 150, 90}));
        Q_EMIT host->moveDragged(QPointF(0, -196));
        QCOMPARE(controllerOf(mover)->panel().frame, (PanelFrame{40, 4, 150, 90}));
    }

    void dragStepAmongFiveHundredPanelsTouchesOnlyTheDraggedWindow() {
        QList<Panel> panels;
        for (int i = 0; i < 500; ++i) {
            panels.append(textPanel(QStringLiteral("Panel %1").arg(i),
                                    {double(i % 20) * 90, double(i / 20) * 40, 120, 50}));
        }
        start(panels);
        store().setEditMode(true);
        m_platform->clearCalls();
        DesktopPanelHostView* host = controllerOf(panels[250])->hostView();

        constexpr int kSteps = 20;
        for (int step = 1; step <= kSteps; ++step)
            Q_EMIT host->moveDragged(QPointF(step, step));

        // Each step is one full pass over 500 panels, yet only the dragged window moves.
        QCOMPARE(m_platform->calls().size(), kSteps);
        QCOMPARE(m_platform->count(Op::SetFrame, windowOf(panels[250])), kSteps);
    }
};

QTEST_MAIN(DesktopWindowsManagerTest)
#include "tst_desktopwindowsmanager.moc"
