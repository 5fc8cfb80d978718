// Panel windows on a real X display with a window manager and a compositor, as
// scripts/test.sh starts them (Xvfb, openbox, picom). The first tests run the corkwheel
// binary; the others run the store and the windows manager inside this process, so they
// can switch edit mode directly. Everything is checked from outside, the way the window
// system sees it: xwininfo, xprop and xdotool.

#include "PanelFixtures.h"
#include "XDisplayTools.h"

#include "desktop/DesktopPanelController.h"
#include "desktop/DesktopPanelWindow.h"
#include "desktop/DesktopWindowsManager.h"
#include "desktop/PanelResizeHandle.h"

#include <QApplication>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

class DesktopE2ETest : public QObject {
    Q_OBJECT

public:
    explicit DesktopE2ETest(bool hasDisplay) : m_hasDisplay(hasDisplay) {}

private:
    bool m_hasDisplay;
    std::unique_ptr<CorkwheelProcess> m_corkwheel;
    std::unique_ptr<StoreFixture> m_fixture;
    std::unique_ptr<DesktopWindowsManager> m_manager;

    Panel m_alpha = textPanel(QStringLiteral("E2E Alpha"), {100, 120, 300, 80});
    Panel m_beta = textPanel(QStringLiteral("E2E Beta"), {600, 300, 360, 200});
    Panel m_off = textPanel(QStringLiteral("E2E Off"), {100, 500, 240, 60}, false);

    void startCorkwheel(const QList<Panel>& panels) {
        m_corkwheel = std::make_unique<CorkwheelProcess>(panels);
        QVERIFY(m_corkwheel->process().waitForStarted());
    }

    // The X window of a panel shown by the binary, once it is mapped; 0 when none comes.
    static WId shownWindow(const Panel& panel) { return shownWindowNamed(panel.name); }

    // The store and the windows manager in this process, as the application has them.
    void startInProcess(const QList<Panel>& panels) {
        m_fixture = std::make_unique<StoreFixture>(panels);
        m_manager = std::make_unique<DesktopWindowsManager>(*m_fixture->store);
    }

    PanelStore& store() { return *m_fixture->store; }

    WId windowOf(const Panel& panel) const {
        return m_manager->controller(panel.id)->window()->winId();
    }

    void waitUntilViewable(WId window, bool viewable) {
        QTRY_COMPARE_WITH_TIMEOUT(isViewable(window), viewable, kWait);
    }

    PanelFrame savedFrame(const Panel& panel) const {
        for (const Panel& saved : m_fixture->savedPanels()) {
            if (saved.id == panel.id)
                return saved.frame;
        }
        return {};
    }

private Q_SLOTS:
    void initTestCase() {
        if (!m_hasDisplay)
            QSKIP(kNoDisplay);
        const QString missing = missingTool({QStringLiteral("xdotool"), QStringLiteral("wmctrl")});
        QVERIFY2(missing.isEmpty(), qPrintable(missing));
        QVERIFY2(!xprop(QStringLiteral("root"), QStringLiteral("_NET_SUPPORTING_WM_CHECK"))
                      .contains(QStringLiteral("not found")),
                 "no EWMH window manager runs on this display");
    }

    void cleanup() {
        // Whatever a test left behind, the next one starts with the windows shown.
        if (isShowingDesktop())
            showDesktop(false);
        QTRY_VERIFY_WITH_TIMEOUT(!isShowingDesktop(), kWait);
        m_corkwheel.reset();
        m_manager.reset();
        m_fixture.reset();
    }

    void corkwheelShowsEachEnabledPanelAtItsFrame() {
        startCorkwheel({m_alpha, m_beta, m_off});
        const WId alpha = shownWindow(m_alpha);
        const WId beta = shownWindow(m_beta);
        QVERIFY(alpha && beta);
        QCOMPARE(screenGeometry(alpha), QRect(100, 120, 300, 80));
        QCOMPARE(screenGeometry(beta), QRect(600, 300, 360, 200));
        const QList<WId> off = windowsNamed(m_off.name);
        for (WId window : off)
            QTRY_VERIFY_WITH_TIMEOUT(!isViewable(window), kWait);
    }

    void pinnedPanelIsBelowOthersOnEveryWorkspaceAndOutOfTaskbar() {
        startCorkwheel({m_alpha});
        const WId window = shownWindow(m_alpha);
        QVERIFY(window);
        const QStringList state = atoms(window, QStringLiteral("_NET_WM_STATE"));
        QVERIFY2(state.contains(QStringLiteral("_NET_WM_STATE_BELOW")),
                 qPrintable(state.join(u' ')));
        QVERIFY(state.contains(QStringLiteral("_NET_WM_STATE_SKIP_TASKBAR")));
        QVERIFY(state.contains(QStringLiteral("_NET_WM_STATE_SKIP_PAGER")));
        QVERIFY(!state.contains(QStringLiteral("_NET_WM_STATE_ABOVE")));
        // Openbox does without the sticky state: a window on desktop 0xFFFFFFFF is on all.
        if (windowManagerSupports(QStringLiteral("_NET_WM_STATE_STICKY")))
            QVERIFY(state.contains(QStringLiteral("_NET_WM_STATE_STICKY")));
        QVERIFY(xprop(hex(window), QStringLiteral("_NET_WM_DESKTOP"))
                    .contains(QStringLiteral("= 4294967295")));
        QCOMPARE(atoms(window, QStringLiteral("_NET_WM_WINDOW_TYPE")).first(),
                 QStringLiteral("_NET_WM_WINDOW_TYPE_SPLASH"));
    }

    void ordinaryWindowOpenedLaterStaysAbovePinnedPanel() {
        startCorkwheel({m_alpha});
        const WId panel = shownWindow(m_alpha);
        QVERIFY(panel);
        QWidget ordinary;
        ordinary.setWindowTitle(QStringLiteral("E2E Ordinary"));
        ordinary.setGeometry(50, 50, 600, 400);
        ordinary.show();
        QVERIFY(QTest::qWaitForWindowExposed(&ordinary));
        QTRY_VERIFY_WITH_TIMEOUT(
            [&] {
                const QString stacking =
                    xprop(QStringLiteral("root"), QStringLiteral("_NET_CLIENT_LIST_STACKING"));
                const qsizetype panelAt = stacking.indexOf(hex(panel));
                const qsizetype ordinaryAt = stacking.indexOf(hex(ordinary.winId()));
                return panelAt >= 0 && ordinaryAt > panelAt;
            }(),
            kWait);
    }

    void clickOnPinnedPanelReachesWindowUnderneath() {
        DesktopStandIn desktop;
        QVERIFY(QTest::qWaitForWindowExposed(&desktop));
        startCorkwheel({m_alpha});
        QVERIFY(shownWindow(m_alpha));
        click({250, 160});
        QTRY_COMPARE_WITH_TIMEOUT(desktop.presses, QList<QPoint>{QPoint(250, 160)}, kWait);
    }

    void showDesktopLeavesPanelsVisible() {
        startCorkwheel({m_alpha});
        const WId window = shownWindow(m_alpha);
        QVERIFY(window);
        showDesktop(true);
        QTRY_VERIFY_WITH_TIMEOUT(isShowingDesktop(), kWait);
        QTest::qWait(300);
        QVERIFY(isViewable(window));
    }

    void editModeKeepsTheSameWindowAndLiftsIt() {
        startInProcess({m_alpha});
        const WId window = windowOf(m_alpha);
        waitUntilViewable(window, true);
        store().setEditMode(true);
        QCOMPARE(windowOf(m_alpha), window);
        QTRY_VERIFY_WITH_TIMEOUT(atoms(window, QStringLiteral("_NET_WM_STATE"))
                                     .contains(QStringLiteral("_NET_WM_STATE_ABOVE")),
                                 kWait);
        QVERIFY(!atoms(window, QStringLiteral("_NET_WM_STATE"))
                     .contains(QStringLiteral("_NET_WM_STATE_BELOW")));
        QVERIFY(isViewable(window));

        store().setEditMode(false);
        QCOMPARE(windowOf(m_alpha), window);
        QTRY_VERIFY_WITH_TIMEOUT(atoms(window, QStringLiteral("_NET_WM_STATE"))
                                     .contains(QStringLiteral("_NET_WM_STATE_BELOW")),
                                 kWait);
        QVERIFY(isViewable(window));
        QCOMPARE(screenGeometry(window), QRect(100, 120, 300, 80));
        QCOMPARE(atoms(window, QStringLiteral("_NET_WM_WINDOW_TYPE")).first(),
                 QStringLiteral("_NET_WM_WINDOW_TYPE_SPLASH"));
    }

    void clickReachesPanelOnlyInEditMode() {
        DesktopStandIn desktop;
        QVERIFY(QTest::qWaitForWindowExposed(&desktop));
        startInProcess({m_alpha});
        waitUntilViewable(windowOf(m_alpha), true);
        click({250, 170});
        QTRY_COMPARE_WITH_TIMEOUT(desktop.presses.size(), 1, kWait);

        store().setEditMode(true);
        QTest::qWait(300);
        click({250, 170});
        QTest::qWait(500);
        QCOMPARE(desktop.presses.size(), 1);
    }

    void titleBarDragMovesPanelAndSavesItsFrame() {
        startInProcess({m_alpha});
        store().setEditMode(true);
        const WId window = windowOf(m_alpha);
        waitUntilViewable(window, true);
        QTest::qWait(300);
        drag({160, 133}, {310, 233});
        const PanelFrame moved{250, 220, 300, 80};
        QTRY_COMPARE_WITH_TIMEOUT(store().panels().first().frame, moved, kWait);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(window), QRect(250, 220, 300, 80), kWait);
        QTRY_COMPARE_WITH_TIMEOUT(savedFrame(m_alpha), moved, kWait);
    }

    void resizeDragStopsAtMinimumSize() {
        startInProcess({m_beta});
        store().setEditMode(true);
        const WId window = windowOf(m_beta);
        waitUntilViewable(window, true);
        QTest::qWait(300);
        const int handle = PanelResizeHandle::kSize / 2;
        drag({960 - handle, 500 - handle}, {20, 20});
        const PanelFrame smallest{600, 300, 120, 50};
        QTRY_COMPARE_WITH_TIMEOUT(store().panels().first().frame, smallest, kWait);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(window), QRect(600, 300, 120, 50), kWait);
        QTRY_COMPARE_WITH_TIMEOUT(savedFrame(m_beta), smallest, kWait);
    }

    void disabledAndHiddenPanelsAreUnmapped() {
        startInProcess({m_alpha, m_beta, m_off});
        const WId alpha = windowOf(m_alpha);
        const WId beta = windowOf(m_beta);
        const WId off = windowOf(m_off);
        waitUntilViewable(alpha, true);
        waitUntilViewable(beta, true);
        waitUntilViewable(off, false);

        Panel disabled = m_beta;
        disabled.isEnabled = false;
        store().update(disabled);
        waitUntilViewable(beta, false);

        store().setPanelsHidden(true);
        waitUntilViewable(alpha, false);

        store().setPanelsHidden(false);
        waitUntilViewable(alpha, true);
        QTest::qWait(300);
        QVERIFY(!isViewable(beta));
        QVERIFY(!isViewable(off));

        store().update(m_beta);
        waitUntilViewable(beta, true);
        QCOMPARE(windowOf(m_beta), beta);
        QCOMPARE(screenGeometry(beta), QRect(600, 300, 360, 200));
        QVERIFY(atoms(beta, QStringLiteral("_NET_WM_STATE"))
                    .contains(QStringLiteral("_NET_WM_STATE_SKIP_TASKBAR")));
    }
};

int main(int argc, char* argv[]) {
    const bool hasDisplay = !qEnvironmentVariableIsEmpty("DISPLAY");
    if (!hasDisplay)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    DesktopE2ETest test(hasDisplay);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_desktop_e2e.moc"
