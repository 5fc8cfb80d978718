// SPDX-License-Identifier: GPL-3.0-or-later

// The corkwheel binary under a window manager while the screen is split into two monitors
// side by side, as when a monitor is plugged in beside a laptop's: the main one moves, a
// monitor is unplugged and plugged in again, and a panel is dragged from one to the other.
// A saved position is measured from the main monitor's corner throughout.

#include "support/PanelFixtures.h"
#include "support/XDisplayTools.h"

#include "desktop/DesktopPanelHostView.h"

#include <QFile>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// The width and height of the X screen, which the two monitors share.
QSize displaySize() {
    const QStringList size = xdotool({QStringLiteral("getdisplaygeometry")}).split(u' ');
    return size.size() == 2 ? QSize(size[0].toInt(), size[1].toInt()) : QSize();
}

// The name Xvfb gives its one output.
const QString kXvfbOutput = QStringLiteral("screen");

void deleteMonitor(const QString& name) {
    run(QStringLiteral("xrandr"), {QStringLiteral("--delmonitor"), name});
}

// A RandR monitor over part of the screen, as a second monitor appears to Qt and to the
// window manager, in place of one of the same name. A name starting with "*" makes it the
// primary one; it lists the server's one output, as a real primary monitor would: Mutter
// takes the primary output, not the monitor's flag, for the primary monitor. While no
// monitor lists the output, the server adds one of its own over the whole screen.
void setMonitor(const QString& name, const QRect& area) {
    const bool primary = name.startsWith(u'*');
    // The server replaces no monitor, nor takes an output from one.
    deleteMonitor(primary ? name.mid(1) : name);
    const QString output = primary ? kXvfbOutput : QStringLiteral("none");
    // About 96 dots an inch: the millimetres matter only to the scale Qt would pick.
    const QString geometry = QStringLiteral("%1/%2x%3/%4+%5+%6")
                                 .arg(area.width())
                                 .arg(area.width() * 254 / 960)
                                 .arg(area.height())
                                 .arg(area.height() * 254 / 960)
                                 .arg(area.x())
                                 .arg(area.y());
    run(QStringLiteral("xrandr"), {QStringLiteral("--setmonitor"), name, geometry, output});
}

// Where the document of `corkwheel` has `panel`; a frame of nothing when it has none.
PanelFrame savedFrame(const CorkwheelProcess& corkwheel, const Panel& panel) {
    for (const Panel& saved : corkwheel.savedPanels()) {
        if (saved.id == panel.id)
            return saved.frame;
    }
    return {};
}

QByteArray documentBytes(const CorkwheelProcess& corkwheel) {
    QFile document(corkwheel.documentPath());
    return document.open(QIODevice::ReadOnly) ? document.readAll() : QByteArray();
}

// Halfway down a panel's title bar, in edit mode.
constexpr int kBarMiddle = DesktopPanelHostView::kTitleBarHeight / 2;

} // namespace

class MonitorsEndToEndTest : public QObject {
    Q_OBJECT

private:
    QSize m_display;
    // The left and the right half of the screen, each a monitor of its own.
    QRect m_left;
    QRect m_right;

    // Starts `corkwheel` again in edit mode and waits until the panel whose title bar holds
    // `titleBar` can be grabbed there.
    bool enterEditMode(const CorkwheelProcess& corkwheel, QPoint titleBar) const {
        if (corkwheel.startAgain({QStringLiteral("--edit-mode")}) != 0)
            return false;
        const QPoint bareDesktop = m_right.bottomRight() - QPoint(20, 20);
        return QTest::qWaitFor(
            [&] { return windowUnderPointer(titleBar) != windowUnderPointer(bareDesktop); }, kWait);
    }

    // The two halves as monitors, the left or the right one the main one. The main one is
    // set last, once the other has let go of the output.
    void splitScreen(bool rightIsMain) const {
        if (rightIsMain) {
            setMonitor(QStringLiteral("left"), m_left);
            setMonitor(QStringLiteral("*right"), m_right);
        } else {
            setMonitor(QStringLiteral("right"), m_right);
            setMonitor(QStringLiteral("*left"), m_left);
        }
    }

private Q_SLOTS:
    void initTestCase() {
        const QString missing = missingTool(
            {QStringLiteral("xdotool"), QStringLiteral("wmctrl"), QStringLiteral("xrandr")});
        QVERIFY2(missing.isEmpty(), qPrintable(missing));
        const QString expected = qEnvironmentVariable("CORKWHEEL_E2E_WINDOW_MANAGER");
        QVERIFY2(!expected.isEmpty(), "run under scripts/in-virtual-desktop.sh");
        QTRY_COMPARE_WITH_TIMEOUT(windowManagerName(), expected, kWait);
        m_display = displaySize();
        QVERIFY(m_display.width() >= 1200);
        m_left = QRect(0, 0, m_display.width() / 2, m_display.height());
        m_right = m_left.translated(m_left.width(), 0);
        // The command line reaches the binary over its own socket then, never a Corkwheel of
        // another test that has the name on a shared session bus.
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    }

    void cleanup() {
        deleteMonitor(QStringLiteral("right"));
        deleteMonitor(QStringLiteral("left"));
    }

    // One screen split in two monitors, the right one the main one; then one screen again.
    void panelsFollowMainScreenToItsNewCorner() {
        const Panel panel = textPanel(QStringLiteral("Screens E2E"), {40, 40, 300, 80});
        const CorkwheelProcess corkwheel({panel});
        const WId window = shownWindowNamed(panel.name);
        QVERIFY(window);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(window).topLeft(), QPoint(40, 40), kWait);

        setMonitor(QStringLiteral("left"), m_left);
        setMonitor(QStringLiteral("*right"), m_right);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(window).topLeft(),
                                  m_right.topLeft() + QPoint(40, 40), kWait);

        deleteMonitor(QStringLiteral("right"));
        deleteMonitor(QStringLiteral("left"));
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(window).topLeft(), QPoint(40, 40), kWait);
    }

    // The right monitor becomes the main one, then moves. The panels go along with the main
    // monitor's corner and the document stays as it was; a drag is what changes a saved
    // position.
    void mainScreenChangingOrMovingLeavesSavedPositionsAsTheyWere() {
        splitScreen(false);
        const Panel still = textPanel(QStringLiteral("Still E2E"), {40, 40, 200, 60});
        const Panel dragged = textPanel(QStringLiteral("Dragged E2E"), {40, 300, 200, 60});
        const CorkwheelProcess corkwheel({still, dragged});
        const WId stillWindow = shownWindowNamed(still.name);
        const WId draggedWindow = shownWindowNamed(dragged.name);
        QVERIFY(stillWindow);
        QVERIFY(draggedWindow);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(stillWindow).topLeft(), QPoint(40, 40), kWait);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(draggedWindow).topLeft(), QPoint(40, 300), kWait);
        const QByteArray written = documentBytes(corkwheel);

        splitScreen(true);
        const QPoint rightCorner = m_right.topLeft();
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(stillWindow).topLeft(),
                                  rightCorner + QPoint(40, 40), kWait);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(draggedWindow).topLeft(),
                                  rightCorner + QPoint(40, 300), kWait);
        // Narrower, its corner further right: Xvfb moves a monitor only by taking it away
        // and adding it again. Taken away with the left one, the whole screen is main again;
        // seen to be so before the right one comes back, so that the two changes cannot reach
        // Corkwheel as one.
        deleteMonitor(QStringLiteral("right"));
        deleteMonitor(QStringLiteral("left"));
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(stillWindow).topLeft(), QPoint(40, 40), kWait);
        const QRect moved = m_right.adjusted(m_right.width() / 4, 0, 0, 0);
        setMonitor(QStringLiteral("left"), m_left);
        setMonitor(QStringLiteral("*right"), moved);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(stillWindow).topLeft(),
                                  moved.topLeft() + QPoint(40, 40), kWait);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(draggedWindow).topLeft(),
                                  moved.topLeft() + QPoint(40, 300), kWait);
        QCOMPARE(documentBytes(corkwheel), written);

        // Every save writes all panels as Corkwheel holds them, so the one that the drag
        // writes also tells where the still panel is held to be after the screens changed.
        const QPoint titleBar = moved.topLeft() + QPoint(40 + 60, 300 + kBarMiddle);
        QVERIFY(enterEditMode(corkwheel, titleBar));
        drag(titleBar, titleBar + QPoint(40, 100));
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(draggedWindow),
                                  QRect(moved.topLeft() + QPoint(80, 400), QSize(200, 60)), kWait);
        QTRY_COMPARE_WITH_TIMEOUT(savedFrame(corkwheel, dragged), PanelFrame({80, 400, 200, 60}),
                                  kWait);
        QCOMPARE(savedFrame(corkwheel, still), still.frame);
        QCOMPARE(screenGeometry(stillWindow).topLeft(), moved.topLeft() + QPoint(40, 40));
    }

    // A panel on the right monitor is shown there; unplugged, it comes inside the main one
    // until the monitor is back. One across both stays where it is, as the main monitor still
    // holds part of it. The document stays as it was throughout.
    void panelsOfAnUnpluggedMonitorComeOntoTheMainOneAndGoBack() {
        splitScreen(false);
        const int edge = m_right.x();
        const Panel away = textPanel(QStringLiteral("Away E2E"), {double(edge + 40), 300, 200, 60});
        const Panel across =
            textPanel(QStringLiteral("Across E2E"), {double(edge - 100), 40, 200, 60});
        const CorkwheelProcess corkwheel({away, across});
        const WId awayWindow = shownWindowNamed(away.name);
        const WId acrossWindow = shownWindowNamed(across.name);
        QVERIFY(awayWindow);
        QVERIFY(acrossWindow);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(awayWindow).topLeft(), QPoint(edge + 40, 300),
                                  kWait);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(acrossWindow).topLeft(), QPoint(edge - 100, 40),
                                  kWait);
        const QByteArray written = documentBytes(corkwheel);

        deleteMonitor(QStringLiteral("right"));
        // As far right as it fits on the left monitor, at the same height.
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(awayWindow).topLeft(), QPoint(edge - 200, 300),
                                  kWait);
        QCOMPARE(screenGeometry(acrossWindow).topLeft(), QPoint(edge - 100, 40));

        setMonitor(QStringLiteral("right"), m_right);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(awayWindow).topLeft(), QPoint(edge + 40, 300),
                                  kWait);
        QCOMPARE(screenGeometry(acrossWindow).topLeft(), QPoint(edge - 100, 40));
        QCOMPARE(documentBytes(corkwheel), written);
    }

    // The right monitor the main one: a panel dragged from it onto the left one is saved
    // left of the main monitor's corner.
    void dragOntoTheOtherMonitorSavesTheFrameFromTheMainOnesCorner() {
        splitScreen(true);
        const Panel mover = textPanel(QStringLiteral("Mover E2E"), {40, 100, 200, 60});
        const CorkwheelProcess corkwheel({mover});
        const WId window = shownWindowNamed(mover.name);
        QVERIFY(window);
        const QPoint corner = m_right.topLeft();
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(window).topLeft(), corner + QPoint(40, 100),
                                  kWait);

        const QPoint titleBar = corner + QPoint(40 + 60, 100 + kBarMiddle);
        QVERIFY(enterEditMode(corkwheel, titleBar));
        drag(titleBar, titleBar + QPoint(-300, 250));
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(window),
                                  QRect(corner + QPoint(-260, 350), QSize(200, 60)), kWait);
        QTRY_COMPARE_WITH_TIMEOUT(savedFrame(corkwheel, mover), PanelFrame({-260, 350, 200, 60}),
                                  kWait);
    }
};

QTEST_MAIN(MonitorsEndToEndTest)
#include "tst_monitors_e2e.moc"
