// SPDX-License-Identifier: GPL-3.0-or-later

// Panel windows on a real X display under a real window manager. CTest runs this test once
// under each window manager of the desktops Corkwheel is checked with (Openbox, xfwm4,
// mutter, KWin, and the desktop icons programs of LXQt and Xfce), each on a display of its
// own that scripts/in-virtual-desktop.sh starts. Most tests run the corkwheel binary; the
// last ones run the store and the windows manager inside this process, so they can hide and
// resize panels directly. Everything is checked from outside, the way a user sees it: the
// screen's pixels, what the pointer is over, and what the window manager reports.

#include "support/Contrast.h"
#include "support/DisplayTestMain.h"
#include "support/EditorOnDisplay.h"
#include "support/InProcessDesktop.h"
#include "support/OrdinaryWindow.h"
#include "support/PanelFixtures.h"
#include "support/PrivateConfigHome.h"
#include "support/ScreenPanels.h"
#include "support/StoreFixture.h"
#include "support/XDisplayTools.h"

#include "desktop/DesktopPanelController.h"
#include "desktop/DesktopPanelHostView.h"
#include "desktop/DesktopPanelWindow.h"
#include "desktop/DesktopWindowsManager.h"
#include "desktop/PanelResizeHandle.h"
#include "platform/DesktopPlatform.h"

#include <QApplication>
#include <QDBusInterface>
#include <QDBusReply>
#include <QElapsedTimer>
#include <QPainter>
#include <QScreen>
#include <QTest>
#include <QToolButton>

#include <algorithm>
#include <numeric>
#include <optional>
#include <utility>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// Nowhere near a panel, an ordinary window or a desktop icon: the bare desktop.
constexpr QPoint kEmptyDesktop(1600, 950);

// Whether `window`, or a window inside it, is of the desktop type.
bool isDesktopWindow(WId window) {
    const QString tree = run(QStringLiteral("xwininfo"),
                             {QStringLiteral("-tree"), QStringLiteral("-id"), hex(window)});
    QRegularExpressionMatchIterator ids =
        QRegularExpression(QStringLiteral("(0x[0-9a-f]+)")).globalMatch(tree);
    while (ids.hasNext()) {
        if (atoms(ids.next().captured(1).toULongLong(nullptr, 16),
                  QStringLiteral("_NET_WM_WINDOW_TYPE"))
                .contains(QStringLiteral("_NET_WM_WINDOW_TYPE_DESKTOP")))
            return true;
    }
    return false;
}

// Where the desktop behind a clear panel shows 4-pixel black and white stripes, then white,
// then black, in the screen's columns.
constexpr int kWhiteFrom = 450;
constexpr int kBlackFrom = 625;

QColor backdropColour(int screenX) {
    if (screenX >= kBlackFrom)
        return Qt::black;
    if (screenX >= kWhiteFrom)
        return Qt::white;
    return screenX / 4 % 2 ? Qt::white : Qt::black;
}

// An application's window painted in the backdrop's colours, whichever place the window
// manager gives it.
class StripedWindow : public QWidget {
public:
    explicit StripedWindow(const QRect& geometry) {
        setWindowTitle(QStringLiteral("E2E Stripes"));
        setGeometry(geometry);
        show();
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        for (int x = 0; x < width(); ++x)
            painter.fillRect(x, 0, 1, height(), backdropColour(mapToGlobal(QPoint(x, 0)).x()));
    }
    void moveEvent(QMoveEvent*) override { update(); }
};

// The greys of the screen's pixels from `from` on, `length` of them along the row.
QList<int> screenGreys(QPoint from, int length) {
    const QImage row =
        QGuiApplication::primaryScreen()->grabWindow(0, from.x(), from.y(), length, 1).toImage();
    QList<int> greys;
    for (int x = 0; x < row.width(); ++x)
        greys.append(qGray(row.pixel(x, 0)));
    return greys;
}

int spread(const QList<int>& greys) {
    const auto [least, most] = std::minmax_element(greys.cbegin(), greys.cend());
    return greys.isEmpty() ? 0 : *most - *least;
}

int mean(const QList<int>& greys) {
    return greys.isEmpty() ? 0 : std::accumulate(greys.cbegin(), greys.cend(), 0) / greys.size();
}

// KWin's blur effect, loaded for as long as this lives: KWin leaves it out under a software
// renderer, as on this virtual desktop, but blurs all the same once asked.
class KWinBlur {
public:
    KWinBlur() { m_loaded = call(QStringLiteral("loadEffect")); }
    ~KWinBlur() {
        if (m_loaded)
            call(QStringLiteral("unloadEffect"));
    }
    bool loaded() const { return m_loaded; }

private:
    static bool call(const QString& method) {
        QDBusInterface effects(QStringLiteral("org.kde.KWin"), QStringLiteral("/Effects"),
                               QStringLiteral("org.kde.kwin.Effects"));
        const QDBusReply<bool> reply = effects.call(method, QStringLiteral("blur"));
        return method == QStringLiteral("unloadEffect") || (reply.isValid() && reply.value());
    }
    bool m_loaded = false;
};

} // namespace

class DesktopEndToEndTest : public QObject, public InProcessDesktop {
    Q_OBJECT

public:
    explicit DesktopEndToEndTest(bool hasDisplay) : m_hasDisplay(hasDisplay) {}

private:
    bool m_hasDisplay;
    PrivateConfigHome m_configHome;
    std::unique_ptr<CorkwheelProcess> m_corkwheel;
    std::unique_ptr<OrdinaryWindow> m_ordinary;

    Panel m_alpha = filledPanel(QStringLiteral("E2E Alpha"), {100, 100, 300, 80});
    Panel m_beta = filledPanel(QStringLiteral("E2E Beta"), {100, 400, 300, 80});
    Panel m_off = filledPanel(QStringLiteral("E2E Off"), {100, 600, 240, 60}, false);

    // Starts the binary and returns the X window of `shown` once it is mapped.
    WId startCorkwheel(const QList<Panel>& panels, const Panel& shown) {
        m_corkwheel = std::make_unique<CorkwheelProcess>(panels);
        if (!m_corkwheel->process().waitForStarted())
            return 0;
        return shownWindowNamed(shown.name);
    }

    WId windowOf(const Panel& panel) const {
        return m_manager->controller(panel.id)->window()->winId();
    }

    static bool panelIsSeenAt(QPoint at) { return isColor(screenPixel(at), kPanelColor); }
    static bool windowIsSeenAt(QPoint at) { return isColor(screenPixel(at), kWindowColor); }

    // The pointer over the panel falls through to whatever the bare desktop is (the root
    // window or an icons window), never to the panel or a frame around it.
    static void verifyPointerPassesThrough(const QRect& panel, WId window) {
        const WId desktop = windowUnderPointer(kEmptyDesktop);
        const WId underPanel = windowUnderPointer(sampleOf(panel));
        QVERIFY(underPanel != window);
        QCOMPARE(hex(underPanel), hex(desktop));
    }

    // KWin 6 (Plasma 6 on X11) keeps docks above ordinary windows, so panels are ordinary
    // windows kept below there, which it hides while the desktop is shown.
    static bool kwinHidesPanelsWithTheWindows() { return isKWin6(); }

    static bool isKWin6() {
        if (windowManagerName() != QStringLiteral("KWin"))
            return false;
        return run(QStringLiteral("kwin_x11"), {QStringLiteral("--version")})
            .contains(QRegularExpression(QStringLiteral("^kwin\\S* 6\\.")));
    }

    // What `read` reads off the screen once the drawing has settled: reads alike for a
    // stretch longer than a compositor's frame under load, or the last read when it does not
    // settle.
    template <typename Read> static auto onceSettled(Read read) {
        constexpr int kSettled = 300;
        auto last = read();
        QElapsedTimer timer;
        timer.start();
        QElapsedTimer unchanged;
        unchanged.start();
        while (timer.elapsed() < kWait && unchanged.elapsed() < kSettled) {
            QTest::qWait(50);
            auto now = read();
            if (now != last)
                unchanged.restart();
            last = std::move(now);
        }
        return last;
    }

    // Desktop environments draw the desktop in a window of their own, which some window
    // managers lift while the desktop is shown or clicked; an icons program stands for it,
    // or else a window of that type, made here.
    static std::unique_ptr<DesktopStandIn> standInForTheDesktop() {
        if (qEnvironmentVariableIsSet("CORKWHEEL_E2E_DESKTOP_ICONS"))
            return {};
        return std::make_unique<DesktopStandIn>();
    }

    // Opens an ordinary window over `panel`, kept until the test ends (or the next one is
    // opened), and checks that it hides the panel.
    void openWindowOver(const QRect& panel) {
        m_ordinary =
            std::make_unique<OrdinaryWindow>(kOrdinaryTitle, panel.adjusted(-40, -40, 40, 40));
        QVERIFY(QTest::qWaitForWindowExposed(m_ordinary.get()));
        QTRY_VERIFY_WITH_TIMEOUT(screenGeometry(m_ordinary->winId()).contains(sampleOf(panel)),
                                 kWait);
        QTRY_VERIFY_WITH_TIMEOUT(windowIsSeenAt(sampleOf(panel)), kWait);
    }

    // Clicks `action`'s toolbar button in the binary's editor.
    void clickEditorButton(WId editor, const QPoint& offset) {
        click(screenGeometry(editor).topLeft() + offset);
    }

private Q_SLOTS:
    void initTestCase() {
        if (!m_hasDisplay)
            QSKIP(kNoDisplay);
        const QString missing = missingTool({QStringLiteral("xdotool"), QStringLiteral("wmctrl")});
        QVERIFY2(missing.isEmpty(), qPrintable(missing));
        const QString expected = qEnvironmentVariable("CORKWHEEL_E2E_WINDOW_MANAGER");
        QTRY_VERIFY2_WITH_TIMEOUT(!windowManagerName().isEmpty(),
                                  "no EWMH window manager runs on this display", kWait);
        if (!expected.isEmpty())
            QCOMPARE(windowManagerName(), expected);
        // An icons program draws the bare desktop in a window of its own (which the window
        // manager may have put in a frame).
        if (qEnvironmentVariableIsSet("CORKWHEEL_E2E_DESKTOP_ICONS"))
            QTRY_VERIFY_WITH_TIMEOUT(isDesktopWindow(windowUnderPointer(kEmptyDesktop)), kWait);
        run(QStringLiteral("wmctrl"), {QStringLiteral("-n"), QStringLiteral("2")});
        QVERIFY(m_configHome.use());
    }

    void cleanup() {
        // Whatever a test left behind, the next one starts on the first workspace with the
        // windows shown.
        if (isShowingDesktop())
            showDesktop(false);
        QTRY_VERIFY_WITH_TIMEOUT(!isShowingDesktop(), kWait);
        QVERIFY(switchToWorkspace(0));
        m_ordinary.reset();
        m_corkwheel.reset();
        m_manager.reset();
        m_fixture.reset();
    }

    void eachEnabledPanelIsShownAtItsFrame() {
        const WId alpha = startCorkwheel({m_alpha, m_beta, m_off}, m_alpha);
        const WId beta = shownWindowNamed(m_beta.name);
        QVERIFY(alpha && beta);
        QCOMPARE(screenGeometry(alpha), rectOf(m_alpha.frame));
        QCOMPARE(screenGeometry(beta), rectOf(m_beta.frame));
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(rectOf(m_alpha.frame))), kWait);
        QVERIFY(panelIsSeenAt(sampleOf(rectOf(m_beta.frame))));
        for (WId window : windowsNamed(m_off.name))
            QVERIFY(!isViewable(window));
        QVERIFY(!panelIsSeenAt(sampleOf(rectOf(m_off.frame))));
    }

    // The page is composed apart from the panel's own painting; the compositor fades it
    // with the rest of the panel, over whatever the desktop shows there.
    void webpagePanelIsSeenAtItsOpacity() {
        const WhitePage white;
        QVERIFY(white.isValid());
        Panel panel = white.panel({500, 100, 300, 200});
        panel.name = QStringLiteral("E2E Web");
        panel.style.opacity = 0.5;
        const QPoint centre = rectOf(panel.frame).center();
        const QColor desktop = screenPixel(centre);
        const QColor halfway((desktop.red() + 255) / 2, (desktop.green() + 255) / 2,
                             (desktop.blue() + 255) / 2);

        QVERIFY(startCorkwheel({panel}, panel));
        QTRY_VERIFY2_WITH_TIMEOUT(isColor(screenPixel(centre), halfway),
                                  qPrintable(screenPixel(centre).name()), kWait * 2);
    }

    void ordinaryWindowOpenedOverPanelCoversIt() {
        QVERIFY(startCorkwheel({m_alpha}, m_alpha));
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(rectOf(m_alpha.frame))), kWait);
        openWindowOver(rectOf(m_alpha.frame));
    }

    void pointerOverPanelIsOverTheDesktopBeneath() {
        const WId window = startCorkwheel({m_alpha}, m_alpha);
        QVERIFY(window);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(rectOf(m_alpha.frame))), kWait);
        verifyPointerPassesThrough(rectOf(m_alpha.frame), window);
    }

    void panelStaysShownOnAnotherWorkspace() {
        const WId window = startCorkwheel({m_alpha}, m_alpha);
        QVERIFY(window);
        // An ordinary window stays on the first workspace, and is seen to go with it.
        const QRect leftBehind(900, 500, 300, 200);
        OrdinaryWindow left(QStringLiteral("E2E Left Behind"), leftBehind);
        QTRY_VERIFY_WITH_TIMEOUT(windowIsSeenAt(leftBehind.center()), kWait);
        QVERIFY(switchToWorkspace(1));
        QTRY_VERIFY_WITH_TIMEOUT(!windowIsSeenAt(leftBehind.center()), kWait);
        QVERIFY(isViewable(window));
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(rectOf(m_alpha.frame))), kWait);
        QCOMPARE(screenGeometry(window), rectOf(m_alpha.frame));
    }

    void panelStaysShownWhileTheDesktopIsShownAndAfter() {
        const auto desktop = standInForTheDesktop();
        QVERIFY(!desktop || QTest::qWaitForWindowExposed(desktop.get()));
        const WId window = startCorkwheel({m_alpha}, m_alpha);
        QVERIFY(window);
        const QRect panel = rectOf(m_alpha.frame);
        openWindowOver(panel);

        showDesktop(true);
        QTRY_VERIFY_WITH_TIMEOUT(isShowingDesktop(), kWait);
        // Under KWin 6 the panel goes with the windows; it comes back with them all the same.
        if (!kwinHidesPanelsWithTheWindows()) {
            QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(panel)), kWait);
            // Still seen once the window manager is done: the window gone from around the
            // panel as well, or, under KWin 5, which lifts the desktop and what is kept below
            // over the windows instead, the panel seen over the window as it is now.
            if (windowManagerName() != QStringLiteral("KWin"))
                QTRY_VERIFY_WITH_TIMEOUT(!windowIsSeenAt(panel.topLeft() - QPoint(20, 20)), kWait);
            QVERIFY(panelIsSeenAt(sampleOf(panel)));
        }

        // The window comes back over the panel, which is still there below it.
        showDesktop(false);
        QTRY_VERIFY_WITH_TIMEOUT(!isShowingDesktop(), kWait);
        QTRY_VERIFY_WITH_TIMEOUT(windowIsSeenAt(sampleOf(panel)), kWait);
        QVERIFY(isViewable(window));
        m_ordinary->hide();
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(panel)), kWait);
    }

    void clickOnTheDesktopLeavesPanelShownAndBelow() {
        const auto desktop = standInForTheDesktop();
        QVERIFY(!desktop || QTest::qWaitForWindowExposed(desktop.get()));
        QVERIFY(startCorkwheel({m_alpha}, m_alpha));
        const QRect panel = rectOf(m_alpha.frame);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(panel)), kWait);
        click(kEmptyDesktop);
        // The click has reached the desktop, which the window manager gives the focus.
        if (desktop)
            QTRY_COMPARE_WITH_TIMEOUT(desktop->presses.size(), 1, kWait);
        QTRY_VERIFY_WITH_TIMEOUT(atoms(activeWindow(), QStringLiteral("_NET_WM_WINDOW_TYPE"))
                                     .contains(QStringLiteral("_NET_WM_WINDOW_TYPE_DESKTOP")),
                                 kWait);
        QVERIFY(panelIsSeenAt(sampleOf(panel)));
        openWindowOver(panel);
    }

    void panelIsLeftOutOfTaskbarPagerAndSwitcher() {
        const WId window = startCorkwheel({m_alpha}, m_alpha);
        QVERIFY(window);
        // As the window manager keeps the state once it has taken the window in.
        const auto state = [window] { return atoms(window, QStringLiteral("_NET_WM_STATE")); };
        QTRY_VERIFY2_WITH_TIMEOUT(state().contains(QStringLiteral("_NET_WM_STATE_SKIP_TASKBAR")),
                                  qPrintable(state().join(u' ')), kWait);
        QVERIFY2(state().contains(QStringLiteral("_NET_WM_STATE_SKIP_PAGER")),
                 qPrintable(state().join(u' ')));

        // Alt+Tab goes back and forth between the two ordinary windows, every press seen to
        // switch, and never to the panel.
        OrdinaryWindow first(QStringLiteral("E2E First"), {700, 100, 300, 200});
        OrdinaryWindow second(QStringLiteral("E2E Second"), {1100, 100, 300, 200});
        QVERIFY(QTest::qWaitForWindowExposed(&first) && QTest::qWaitForWindowExposed(&second));
        const QList<WId> ordinary{first.winId(), second.winId()};
        QTRY_VERIFY_WITH_TIMEOUT(ordinary.contains(activeWindow()), kWait);
        // KWin 6's window switcher does not answer a synthetic Alt+Tab on this virtual
        // desktop: there the presses can only be seen not to reach the panel, once KWin has
        // handled a request sent after each of them (keeping a window above, which shows in
        // that window's state).
        if (isKWin6()) {
            const auto secondState = [&second] {
                return atoms(second.winId(), QStringLiteral("_NET_WM_STATE"));
            };
            for (int press = 0; press < 3; ++press) {
                xdotool({QStringLiteral("key"), QStringLiteral("--clearmodifiers"),
                         QStringLiteral("alt+Tab")});
                const bool above = !secondState().contains(QStringLiteral("_NET_WM_STATE_ABOVE"));
                run(QStringLiteral("wmctrl"),
                    {QStringLiteral("-i"), QStringLiteral("-r"), hex(second.winId()),
                     QStringLiteral("-b"), QStringLiteral("toggle,above")});
                QTRY_COMPARE_WITH_TIMEOUT(
                    secondState().contains(QStringLiteral("_NET_WM_STATE_ABOVE")), above, kWait);
                QVERIFY(activeWindow() != window);
            }
            return;
        }
        for (int press = 0; press < 3; ++press) {
            const WId before = activeWindow();
            // A window manager busy with the last switch may miss a press; a user presses
            // again then.
            for (int attempt = 0; attempt < 3 && activeWindow() == before; ++attempt) {
                xdotool({QStringLiteral("key"), QStringLiteral("--clearmodifiers"),
                         QStringLiteral("alt+Tab")});
                [[maybe_unused]] const bool switched =
                    QTest::qWaitFor([&] { return activeWindow() != before; }, 2000);
            }
            QVERIFY2(activeWindow() != before, qPrintable(QStringLiteral("press %1").arg(press)));
            QVERIFY2(ordinary.contains(activeWindow()), qPrintable(hex(activeWindow())));
            QVERIFY(activeWindow() != window);
        }
    }

    void editModeFromTheEditorLiftsDragsAndPinsAgain() {
        const QPoint editModeButton =
            controlOffset({m_alpha}, [](EditorWindow& editor) -> QWidget* {
                return editor.buttonFor(editor.editModeAction());
            });
        QVERIFY(editModeButton.x() >= 0);
        const WId window = startCorkwheel({m_alpha}, m_alpha);
        QVERIFY(window);
        QCOMPARE(m_corkwheel->startAgain(), 0);
        const WId editor = shownEditor();
        QVERIFY(editor);
        // Out of the way of the panel and of where it is dragged to.
        xdotool({QStringLiteral("windowmove"), QStringLiteral("--sync"), hex(editor),
                 QStringLiteral("900"), QStringLiteral("300")});
        QTRY_VERIFY_WITH_TIMEOUT(screenGeometry(editor).left() >= 880, kWait);
        const QRect start = rectOf(m_alpha.frame);
        openWindowOver(start);

        clickEditorButton(editor, editModeButton);
        // Above ordinary windows, taking the mouse.
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(start)), kWait);
        QVERIFY(windowUnderPointer(sampleOf(start)) != windowUnderPointer(kEmptyDesktop));
        const QPoint titleBar =
            start.topLeft() + QPoint(60, DesktopPanelHostView::kTitleBarHeight / 2);
        drag(titleBar, titleBar + QPoint(40, 500));
        const QRect moved = start.translated(40, 500);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(window), moved, kWait);
        QTRY_COMPARE_WITH_TIMEOUT(rectOf(m_corkwheel->savedPanels().value(0).frame), moved, kWait);

        clickEditorButton(editor, editModeButton);
        // Pinned again: the pointer over the panel is over the desktop.
        QTRY_COMPARE_WITH_TIMEOUT(windowUnderPointer(sampleOf(moved)),
                                  windowUnderPointer(kEmptyDesktop), kWait);
        QCOMPARE(screenGeometry(window), moved);
        QVERIFY(isViewable(window));
        verifyPointerPassesThrough(moved, window);
        openWindowOver(moved);
    }

    // The stores and windows managers below live in this process.

    // Shown again, the panel is drawn where no window covers it and stays below the window
    // that covers its other half, both seen at the same moment.
    void panelShownAgainStaysBelowOpenWindows() {
        startInProcess({m_alpha});
        const QRect panel = rectOf(m_alpha.frame);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(panel)), kWait);
        const QRect rightHalf(panel.center().x(), panel.top() - 40, panel.width(),
                              panel.height() + 80);
        m_ordinary = std::make_unique<OrdinaryWindow>(kOrdinaryTitle, rightHalf);
        QVERIFY(QTest::qWaitForWindowExposed(m_ordinary.get()));
        const QPoint covered = sampleOf(panel);
        const QPoint uncovered(panel.left() + panel.width() / 4, covered.y());
        QTRY_VERIFY_WITH_TIMEOUT(windowIsSeenAt(covered), kWait);
        QVERIFY(panelIsSeenAt(uncovered));

        store().setPanelsHidden(true);
        QTRY_VERIFY_WITH_TIMEOUT(!isViewable(windowOf(m_alpha)), kWait);
        QTRY_VERIFY_WITH_TIMEOUT(!panelIsSeenAt(uncovered), kWait);
        store().setPanelsHidden(false);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(uncovered), kWait);
        QVERIFY(windowIsSeenAt(covered));

        store().setEditMode(true);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(panel)), kWait);
        store().setEditMode(false);
        QTRY_VERIFY_WITH_TIMEOUT(windowIsSeenAt(sampleOf(panel)), kWait);
    }

    void resizeDragStopsAtMinimumSize() {
        const Panel wide = filledPanel(QStringLiteral("E2E Wide"), {600, 300, 360, 200});
        startInProcess({wide});
        store().setEditMode(true);
        const WId window = windowOf(wide);
        QTRY_VERIFY_WITH_TIMEOUT(isViewable(window), kWait);
        const int handle = PanelResizeHandle::kSize / 2;
        const QPoint corner(960 - handle, 500 - handle);
        // In edit mode, taking the mouse.
        QTRY_VERIFY_WITH_TIMEOUT(windowUnderPointer(corner) != windowUnderPointer(kEmptyDesktop),
                                 kWait);
        drag(corner, {20, 20});
        const PanelFrame smallest{600, 300, 120, 50};
        QTRY_COMPARE_WITH_TIMEOUT(store().panels().first().frame, smallest, kWait);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(window), QRect(600, 300, 120, 50), kWait);
        QTRY_COMPARE_WITH_TIMEOUT(savedFrame(wide), smallest, kWait);
    }

    void moveDragEndingNearAnotherPanelSavesItLinedUp() {
        const Panel still = filledPanel(QStringLiteral("E2E Still"), {600, 300, 300, 80});
        const Panel mover = filledPanel(QStringLiteral("E2E Mover"), {100, 600, 300, 80});
        startInProcess({still, mover});
        store().setEditMode(true);
        const WId window = windowOf(mover);
        QTRY_VERIFY_WITH_TIMEOUT(isViewable(window), kWait);
        // Lets go 5 points right of the still panel's left edge.
        const QPoint titleBar(160, 613);
        QTRY_VERIFY_WITH_TIMEOUT(windowUnderPointer(titleBar) != windowUnderPointer(kEmptyDesktop),
                                 kWait);
        drag(titleBar, titleBar + QPoint(505, 0));
        const PanelFrame linedUp{600, 600, 300, 80};
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(window), QRect(600, 600, 300, 80), kWait);
        QTRY_COMPARE_WITH_TIMEOUT(savedFrame(mover), linedUp, kWait);
        // The title bar's glass is dark enough for its white name over the red panel.
        QTRY_VERIFY_WITH_TIMEOUT(!isColor(screenPixel({850, 613}), kPanelColor), kWait);
        const QColor bar = screenPixel({850, 613});
        QVERIFY2(whiteContrast(bar) >= 4.5, qPrintable(bar.name()));
    }

    // Over a clear panel the edit-mode title bar hides the desktop's detail: where the
    // compositor blurs behind windows (KWin), the desktop shows through it blurred, brighter
    // over white than over black; elsewhere the bar is opaque. Its white name reads on it
    // either way.
    void titleBarOverAClearPanelShowsTheDesktopOnlyBlurred() {
        std::optional<KWinBlur> blur;
        if (windowManagerName() == QStringLiteral("KWin")) {
            blur.emplace();
            QVERIFY(blur->loaded());
            QTRY_VERIFY_WITH_TIMEOUT(
                !xprop(QStringLiteral("root"), QStringLiteral("_KDE_NET_WM_BLUR_BEHIND_REGION"))
                     .contains(QStringLiteral("not found")),
                kWait);
        }
        StripedWindow stripes({100, 150, 800, 400});
        QVERIFY(QTest::qWaitForWindowExposed(&stripes));
        Panel clear = textPanel(QStringLiteral("E2E Clear"), {200, 250, 600, 120});
        clear.textTemplate.clear();
        clear.style.backgroundColor = CodableColor{1, 1, 1, 0};
        startInProcess({clear});
        store().setEditMode(true);
        const WId window = windowOf(clear);
        QTRY_VERIFY_WITH_TIMEOUT(isViewable(window), kWait);
        // The desktop shows sharp through the clear panel below its title bar.
        QTRY_VERIFY_WITH_TIMEOUT(spread(screenGreys({310, 320}, 80)) > 150, kWait);
        // Right of the bar's name to its right end, the stripes at the start.
        const QPoint barFrom(310, 263);
        QTRY_VERIFY_WITH_TIMEOUT(spread(screenGreys(barFrom, 80)) < 30, kWait);
        const QList<int> bar = onceSettled([&barFrom] { return screenGreys(barFrom, 470); });
        QVERIFY2(spread(bar.first(80)) < 30, qPrintable(QString::number(spread(bar.first(80)))));
        // The middles of the white and of the black, far from where the blur mixes them.
        const int lighter =
            mean(bar.mid(537 - 20 - barFrom.x(), 40)) - mean(bar.mid(712 - 20 - barFrom.x(), 40));
        if (blur) {
            QVERIFY(!xprop(hex(window), QStringLiteral("_KDE_NET_WM_BLUR_BEHIND_REGION"))
                         .contains(QStringLiteral("not found")));
            QVERIFY2(lighter > 15, qPrintable(QString::number(lighter)));
        } else {
            QVERIFY2(std::abs(lighter) <= 6, qPrintable(QString::number(lighter)));
        }
        const int brightest = *std::max_element(bar.cbegin(), bar.cend());
        QVERIFY2(whiteContrast(QColor(brightest, brightest, brightest)) >= 4.5,
                 qPrintable(QString::number(brightest)));
    }

    // Opacity 0 draws nothing of the panel, yet its window stays on the desktop, at its
    // frame: the same window shows the panel again once it is opaque.
    void clearPanelKeepsItsWindowWithNothingDrawn() {
        const QPoint sample = sampleOf(rectOf(m_alpha.frame));
        // Read once no window of an earlier test is fading out there any more.
        const QColor desktop = onceSettled([&sample] { return screenPixel(sample); });
        QVERIFY(!isColor(desktop, kPanelColor));
        startInProcess({m_alpha});
        const WId alpha = windowOf(m_alpha);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sample), kWait);

        Panel clear = m_alpha;
        clear.style.opacity = 0;
        store().update(clear);
        QTRY_VERIFY2_WITH_TIMEOUT(isColor(screenPixel(sample), desktop),
                                  qPrintable(QStringLiteral("%1 is not the desktop's %2")
                                                 .arg(screenPixel(sample).name(), desktop.name())),
                                  kWait);
        QVERIFY(isViewable(alpha));
        QCOMPARE(screenGeometry(alpha), rectOf(m_alpha.frame));

        store().update(m_alpha);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sample), kWait);
        QCOMPARE(windowOf(m_alpha), alpha);
    }

    void disabledAndHiddenPanelsAreUnmapped() {
        startInProcess({m_alpha, m_beta, m_off});
        const WId alpha = windowOf(m_alpha);
        const WId beta = windowOf(m_beta);
        const WId off = windowOf(m_off);
        QTRY_VERIFY_WITH_TIMEOUT(isViewable(alpha), kWait);
        QTRY_VERIFY_WITH_TIMEOUT(isViewable(beta), kWait);
        QVERIFY(!isViewable(off));

        Panel disabled = m_beta;
        disabled.isEnabled = false;
        store().update(disabled);
        QTRY_VERIFY_WITH_TIMEOUT(!isViewable(beta), kWait);

        store().setPanelsHidden(true);
        QTRY_VERIFY_WITH_TIMEOUT(!isViewable(alpha), kWait);

        // Shown again, in one pass over all panels: once alpha is drawn, the others have been
        // dealt with too.
        store().setPanelsHidden(false);
        QTRY_VERIFY_WITH_TIMEOUT(isViewable(alpha), kWait);
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(rectOf(m_alpha.frame))), kWait);
        QVERIFY(!isViewable(beta));
        QVERIFY(!isViewable(off));

        store().update(m_beta);
        QTRY_VERIFY_WITH_TIMEOUT(isViewable(beta), kWait);
        QCOMPARE(windowOf(m_beta), beta);
        QCOMPARE(screenGeometry(beta), rectOf(m_beta.frame));
        QTRY_VERIFY_WITH_TIMEOUT(panelIsSeenAt(sampleOf(rectOf(m_beta.frame))), kWait);
    }
};

CORKWHEEL_DISPLAY_TEST_MAIN(DesktopEndToEndTest)

#include "tst_desktop_e2e.moc"
