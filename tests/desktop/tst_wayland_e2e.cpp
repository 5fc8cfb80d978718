// SPDX-License-Identifier: GPL-3.0-or-later

// Panel windows as layer surfaces of a real Wayland compositor: sway, headless, which
// scripts/in-wayland-desktop.sh starts. The first test runs the corkwheel binary, which must
// choose Wayland itself (there is no X server to fall back on); the others run the store and
// the windows manager inside this process, itself a Wayland client. Everything is checked
// the way a user sees it: the output's pixels, taken with grim, and the pointer, moved with
// swaymsg.

#include "support/Contrast.h"
#include "support/CorkwheelProcess.h"
#include "support/InProcessDesktop.h"
#include "support/OrdinaryWindow.h"
#include "support/PanelFixtures.h"
#include "support/ScreenPanels.h"
#include "support/ScreenPixels.h"
#include "support/StoreFixture.h"
#include "support/WaylandPointer.h"

#include "desktop/DesktopPanelHostView.h"
#include "desktop/DesktopWindowsManager.h"
#include "platform/DesktopPlatform.h"

#include <QApplication>
#include <QMouseEvent>
#include <QTemporaryDir>
#include <QTest>
#include <QUrl>
#include <QWidget>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// sway's background here (scripts/lib/wayland-desktop.sh).
constexpr QColor kDesktopColor(0x33, 0x66, 0x99);

bool panelIsSeenAt(QPoint at) {
    return isColor(screenPixel(at), kPanelColor);
}

bool windowIsSeenAt(QPoint at) {
    return isColor(screenPixel(at), kWindowColor);
}

void swaymsg(const QStringList& arguments) {
    run(QStringLiteral("swaymsg"), arguments);
}

// The output's size (scripts/lib/wayland-desktop.sh).
constexpr QSize kOutputSize(1280, 800);

// Small enough to float in the output's middle clear of the first test panel.
constexpr QSize kFloatingSize(160, 80);

// Halfway down a panel's title bar, in edit mode.
constexpr int kBarMiddle = DesktopPanelHostView::kTitleBarHeight / 2;

// Counts the presses of the mouse that reach any window of this process but `besides`.
class PressCounter : public QObject {
public:
    explicit PressCounter(const QWindow* besides) : m_besides(besides) {}

    int count = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::MouseButtonPress && watched->isWindowType() &&
            watched != m_besides)
            ++count;
        return false;
    }

private:
    const QWindow* m_besides;
};

} // namespace

class WaylandEndToEndTest : public QObject, public InProcessDesktop {
    Q_OBJECT

private:
    std::unique_ptr<OrdinaryWindow> m_ordinary;
    WaylandPointer m_pointer;

    Panel m_alpha = filledPanel(QStringLiteral("E2E Alpha"), {100, 100, 300, 80});
    Panel m_beta = filledPanel(QStringLiteral("E2E Beta"), {500, 300, 300, 80});
    Panel m_off = filledPanel(QStringLiteral("E2E Off"), {100, 600, 240, 60}, false);

    void openWindowOver(const QRect& panel) {
        m_ordinary = std::make_unique<OrdinaryWindow>();
        QVERIFY(QTest::qWaitForWindowExposed(m_ordinary.get()));
        QTRY_VERIFY_WITH_TIMEOUT(windowIsSeenAt(sampleOf(panel)), kWait);
    }

private Q_SLOTS:
    void initTestCase() {
        if (qEnvironmentVariableIsEmpty("SWAYSOCK"))
            QSKIP("SWAYSOCK is not set: these tests run under sway, which "
                  "scripts/in-wayland-desktop.sh starts");
        const QString missing = missingTool({QStringLiteral("grim"), QStringLiteral("swaymsg")});
        QVERIFY2(missing.isEmpty(), qPrintable(missing));
        QCOMPARE(QGuiApplication::platformName(), QStringLiteral("wayland"));
        QTRY_VERIFY_WITH_TIMEOUT(isColor(screenPixel({5, 5}), kDesktopColor), kWait);
        QVERIFY2(m_pointer.plugIn(QStringLiteral(CORKWHEEL_POINTER_DEVICE), kOutputSize),
                 "the compositor takes no virtual pointer");
    }

    void cleanup() {
        swaymsg({QStringLiteral("workspace"), QStringLiteral("number"), QStringLiteral("1")});
        m_ordinary.reset();
        m_manager.reset();
        m_fixture.reset();
        QTRY_VERIFY_WITH_TIMEOUT(!panelIsSeenAt(sampleOf(rectOf(m_alpha.frame))), kWait);
    }

    void binaryShowsEachEnabledPanelAtItsFrame() {
        CorkwheelProcess corkwheel({m_alpha, m_beta, m_off}, QString());
        QVERIFY(corkwheel.process().waitForStarted());
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(rectOf(m_alpha.frame))), kWait * 2);
        const QImage screen = screenshot();
        for (const Panel& panel : {m_alpha, m_beta}) {
            const QRect frame = rectOf(panel.frame);
            QVERIFY(isColor(screen.pixelColor(sampleOf(frame)), kPanelColor));
            // Its edges are where the frame says, not an output's centre or corner.
            QVERIFY(isColor(screen.pixelColor(frame.center() + QPoint(frame.width() / 2 - 4, 0)),
                            kPanelColor));
            QVERIFY(isColor(screen.pixelColor(frame.center() + QPoint(frame.width() / 2 + 4, 0)),
                            kDesktopColor));
            QVERIFY(isColor(screen.pixelColor(frame.center() - QPoint(0, frame.height() / 2 + 4)),
                            kDesktopColor));
        }
        QVERIFY(isColor(screen.pixelColor(sampleOf(rectOf(m_off.frame))), kDesktopColor));
    }

    // A web view joining the window makes Qt create its native window anew; it stays a
    // layer surface at the frame, not an ordinary window over the whole output.
    void webpagePanelStaysALayerSurfaceAtItsFrame() {
        const WhitePage white;
        QVERIFY(white.isValid());
        const Panel panel = white.panel({500, 300, 300, 200});
        const QRect frame = rectOf(panel.frame);
        CorkwheelProcess corkwheel({panel}, QString());
        QVERIFY(corkwheel.process().waitForStarted());
        // The page is drawn only once the view has joined, so what is seen then is the
        // window it was made anew as.
        QTRY_VERIFY_WITH_TIMEOUT(isColor(screenPixel(frame.center()), Qt::white), kWait * 3);
        const QImage screen = screenshot();
        QVERIFY(isColor(screen.pixelColor(frame.center()), Qt::white));
        QVERIFY(isColor(screen.pixelColor(frame.topLeft() - QPoint(10, 10)), kDesktopColor));
        QVERIFY(isColor(screen.pixelColor(frame.bottomRight() + QPoint(10, 10)), kDesktopColor));
    }

    void ordinaryWindowOpenedOverPanelCoversIt() {
        startInProcess({m_alpha});
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(rectOf(m_alpha.frame))), kWait);
        openWindowOver(rectOf(m_alpha.frame));
    }

    void panelStaysShownOnAnotherWorkspace() {
        startInProcess({m_alpha});
        const QPoint sample = sampleOf(rectOf(m_alpha.frame));
        openWindowOver(rectOf(m_alpha.frame));
        swaymsg({QStringLiteral("workspace"), QStringLiteral("number"), QStringLiteral("2")});
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sample), kWait);
    }

    void hiddenPanelsAreUnmappedAndComeBackBelowWindows() {
        startInProcess({m_alpha});
        const QPoint sample = sampleOf(rectOf(m_alpha.frame));
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sample), kWait);
        store().setPanelsHidden(true);
        QTRY_VERIFY_WITH_TIMEOUT(isColor(screenPixel(sample), kDesktopColor), kWait);
        store().setPanelsHidden(false);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sample), kWait);
        openWindowOver(rectOf(m_alpha.frame));
    }

    void editModeLiftsDragsAndPinsAgain() {
        startInProcess({m_alpha});
        const QRect start = rectOf(m_alpha.frame);
        openWindowOver(start);

        store().setEditMode(true);
        // Above ordinary windows, taking the mouse: a drag of its title bar moves it.
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(start)), kWait);
        const QPoint titleBar = start.topLeft() + QPoint(60, kBarMiddle);
        m_pointer.drag(titleBar, titleBar + QPoint(40, 300));
        const QRect moved = start.translated(40, 300);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(moved)), kWait);
        QTRY_COMPARE_WITH_TIMEOUT(rectOf(savedFrame(m_alpha)), moved, kWait);
        QVERIFY(m_ordinary->presses.isEmpty());

        // Back below the window, which now gets the pointer over the panel.
        store().setEditMode(false);
        QTRY_VERIFY_WITH_TIMEOUT(windowIsSeenAt(sampleOf(moved)), kWait);
        m_pointer.click(sampleOf(moved));
        QTRY_COMPARE_WITH_TIMEOUT(m_ordinary->presses.size(), 1, kWait);
        QCOMPARE(rectOf(savedFrame(m_alpha)), moved);
    }

    // Let go 5 points right of another panel's left edge, a moved panel lines up with it,
    // on the output and in the document; its title bar stays dark enough for its white name.
    void moveDragEndingNearAnotherPanelSavesItLinedUp() {
        const Panel still = filledPanel(QStringLiteral("E2E Still"), {600, 300, 300, 80});
        const Panel mover = filledPanel(QStringLiteral("E2E Mover"), {100, 600, 300, 80});
        startInProcess({still, mover});
        store().setEditMode(true);
        const QRect start = rectOf(mover.frame);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(start)), kWait);
        const QPoint titleBar = start.topLeft() + QPoint(60, kBarMiddle);
        m_pointer.drag(titleBar, titleBar + QPoint(505, 0));
        const QRect linedUp(600, 600, 300, 80);
        QTRY_COMPARE_WITH_TIMEOUT(rectOf(savedFrame(mover)), linedUp, kWait);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(linedUp)), kWait);
        const QColor bar = screenPixel(linedUp.topLeft() + QPoint(250, kBarMiddle));
        QVERIFY(!isColor(bar, kPanelColor));
        QVERIFY2(whiteContrast(bar) >= 4.5, qPrintable(bar.name()));
    }

    // A pinned panel has no input region: a click on it over the bare desktop never
    // reaches its window.
    void pinnedPanelLetsClicksThrough() {
        startInProcess({m_alpha});
        const QRect frame = rectOf(m_alpha.frame);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(frame)), kWait);
        const OrdinaryWindow later(kFloatingSize);
        const QPoint laterAt = QRect(QPoint(), kOutputSize).center();
        QTRY_VERIFY_WITH_TIMEOUT(windowIsSeenAt(laterAt), kWait);
        PressCounter presses(later.windowHandle());
        qApp->installEventFilter(&presses);
        m_pointer.click(frame.center());
        // A click made after it has reached its window, and this process gets its input in
        // the order it was made.
        m_pointer.click(laterAt);
        QTRY_COMPARE_WITH_TIMEOUT(later.presses.size(), 1, kWait);
        QCOMPARE(presses.count, 0);
        // In edit mode the same click reaches it; the panel may show its title bar a moment
        // before it takes the pointer, and a user would click again then.
        store().setEditMode(true);
        QTRY_VERIFY_WITH_TIMEOUT(!panelIsSeenAt(frame.topLeft() + QPoint(60, kBarMiddle)), kWait);
        for (int click = 0; click < 10 && presses.count == 0; ++click) {
            m_pointer.click(frame.center());
            [[maybe_unused]] const bool reached =
                QTest::qWaitFor([&presses] { return presses.count > 0; }, 500);
        }
        QVERIFY(presses.count > 0);
        qApp->removeEventFilter(&presses);
    }

    // Last, as it leaves the desktop with another output.
    void panelsMoveToTheNewMainOutputWhenTheirsGoesAway() {
        startInProcess({m_alpha});
        const QPoint sample = sampleOf(rectOf(m_alpha.frame));
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sample), kWait);
        swaymsg({QStringLiteral("create_output")});
        swaymsg({QStringLiteral("output"), QStringLiteral("HEADLESS-2"), QStringLiteral("position"),
                 QStringLiteral("1280"), QStringLiteral("0"), QStringLiteral("bg"),
                 QStringLiteral("#993333"), QStringLiteral("solid_color")});
        swaymsg({QStringLiteral("output"), QStringLiteral("HEADLESS-1"), QStringLiteral("unplug")});
        // The screenshot now holds the other output alone, its corner at the image's.
        QTRY_VERIFY_WITH_TIMEOUT(isColor(screenPixel({5, 5}), QColor(0x99, 0x33, 0x33)), kWait);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sample), kWait);
    }
};

QTEST_MAIN(WaylandEndToEndTest)
#include "tst_wayland_e2e.moc"
