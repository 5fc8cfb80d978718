// SPDX-License-Identifier: GPL-3.0-or-later

// The corkwheel binary on an X display of the test's own, where the desktop changes under
// the shown panels: a compositor starts and quits, as when a session starts its programs in
// any order or the user restarts it, the main screen moves, as when a monitor is plugged in
// beside it, and a second monitor is unplugged and plugged in again.

#include "support/PanelFixtures.h"
#include "support/PrivateXServer.h"
#include "support/XDisplayTools.h"
#include "support/XWindowImage.h"

#include "desktop/DesktopPanelHostView.h"

#include <QColor>
#include <QFile>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// Under a panel's short text, halfway along its bottom edge, as the window's own pixels
// hold it: the dark backdrop, or nothing for the compositor to blend. Invalid when the
// window is gone or has no alpha channel.
QColor pixelBelowText(WId window) {
    const QImage image = windowImage(window);
    if (image.format() != QImage::Format_ARGB32)
        return {};
    return image.pixelColor(image.width() / 2, image.height() - 4);
}

bool isDarkBackdrop(const QColor& color) {
    return color.isValid() && color.alpha() == 255 && color.lightness() < 40;
}

bool isClear(const QColor& color) {
    return color.isValid() && color.alpha() == 0;
}

// A RandR monitor over part of the screen, as a second monitor appears to Qt; a name
// starting with "*" makes it the primary one. Unless a monitor lists the server's one
// output, the server adds a monitor of its own over the whole screen, which Qt sees as one
// screen more.
void setMonitor(const QString& name, const QString& geometry,
                const QString& output = QStringLiteral("none")) {
    run(QStringLiteral("xrandr"), {QStringLiteral("--setmonitor"), name, geometry, output});
}

// The name Xvfb gives its one output.
const QString kXvfbOutput = QStringLiteral("screen");

void deleteMonitor(const QString& name) {
    run(QStringLiteral("xrandr"), {QStringLiteral("--delmonitor"), name});
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

class DesktopChangesEndToEndTest : public QObject {
    Q_OBJECT

private:
    PrivateXServer m_server;
    QProcess m_compositor;

private Q_SLOTS:
    void initTestCase() {
        const QString missing = missingTool({QStringLiteral("picom"), QStringLiteral("xrandr")});
        QVERIFY2(missing.isEmpty(), qPrintable(missing));
        QVERIFY2(m_server.start(), "Xvfb did not start");
        // The binary, the compositor and the X tools all go to this display.
        qputenv("DISPLAY", m_server.display());
        // The command line reaches the binary over its own socket then, never a Corkwheel of
        // another test that has the name on a shared session bus.
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    }

    void cleanup() {
        m_compositor.terminate();
        m_compositor.waitForFinished(kWait);
        deleteMonitor(QStringLiteral("right"));
        deleteMonitor(QStringLiteral("left"));
    }

    void panelBackdropFollowsCompositorStartingAndQuitting() {
        const Panel panel = textPanel(QStringLiteral("Compositor E2E"), {40, 40, 300, 80});
        const CorkwheelProcess corkwheel({panel});
        const WId window = shownWindowNamed(panel.name);
        QVERIFY(window);
        QTRY_VERIFY_WITH_TIMEOUT(isDarkBackdrop(pixelBelowText(window)), kWait);

        m_compositor.start(QStringLiteral("picom"),
                           {QStringLiteral("--backend"), QStringLiteral("xrender")});
        QVERIFY(m_compositor.waitForStarted(kWait));
        QTRY_VERIFY_WITH_TIMEOUT(isClear(pixelBelowText(window)), kWait);

        m_compositor.terminate();
        QVERIFY(m_compositor.waitForFinished(kWait));
        QTRY_VERIFY_WITH_TIMEOUT(isDarkBackdrop(pixelBelowText(window)), kWait);
    }

    // The screen split in two monitors, the right one the main one; then one screen again.
    void panelsFollowMainScreenToItsNewCorner() {
        const Panel panel = textPanel(QStringLiteral("Screens E2E"), {40, 40, 300, 80});
        const CorkwheelProcess corkwheel({panel});
        const WId window = shownWindowNamed(panel.name);
        QVERIFY(window);
        QCOMPARE(screenGeometry(window).topLeft(), QPoint(40, 40));

        setMonitor(QStringLiteral("left"), QStringLiteral("400/106x600/159+0+0"));
        setMonitor(QStringLiteral("*right"), QStringLiteral("400/106x600/159+400+0"));
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(window).topLeft(), QPoint(440, 40), kWait);

        deleteMonitor(QStringLiteral("right"));
        deleteMonitor(QStringLiteral("left"));
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(window).topLeft(), QPoint(40, 40), kWait);
    }

    // Two screens side by side; the right one becomes the main one, then moves. A saved
    // position is measured from the main screen's corner, so the panels go along with that
    // corner and the document stays as it was; a drag is what changes a saved position.
    void mainScreenChangingOrMovingLeavesSavedPositionsAsTheyWere() {
        setMonitor(QStringLiteral("*left"), QStringLiteral("400/106x600/159+0+0"));
        setMonitor(QStringLiteral("right"), QStringLiteral("400/106x600/159+400+0"));
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

        deleteMonitor(QStringLiteral("right"));
        setMonitor(QStringLiteral("*right"), QStringLiteral("400/106x600/159+400+0"));
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(stillWindow).topLeft(), QPoint(440, 40), kWait);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(draggedWindow).topLeft(), QPoint(440, 300), kWait);
        // Narrower, its corner further right: Xvfb moves a monitor only by taking it away
        // and adding it again.
        // Taken away, the left one is main again; seen to be so before the right one comes
        // back, so that the two changes cannot reach Corkwheel as one.
        deleteMonitor(QStringLiteral("right"));
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(stillWindow).topLeft(), QPoint(40, 40), kWait);
        setMonitor(QStringLiteral("*right"), QStringLiteral("300/80x600/159+500+0"));
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(stillWindow).topLeft(), QPoint(540, 40), kWait);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(draggedWindow).topLeft(), QPoint(540, 300), kWait);
        QCOMPARE(documentBytes(corkwheel), written);

        // Every save writes all panels as Corkwheel holds them, so the one that the drag
        // writes also tells where the still panel is held to be after the screens changed.
        QCOMPARE(corkwheel.startAgain({QStringLiteral("--edit-mode")}), 0);
        const QPoint titleBar(540 + 60, 300 + kBarMiddle);
        const QPoint bareDesktop(780, 580);
        QTRY_VERIFY_WITH_TIMEOUT(windowUnderPointer(titleBar) != windowUnderPointer(bareDesktop),
                                 kWait);
        drag(titleBar, titleBar + QPoint(40, 100));
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(draggedWindow), QRect(580, 400, 200, 60), kWait);
        QTRY_COMPARE_WITH_TIMEOUT(savedFrame(corkwheel, dragged), PanelFrame({80, 400, 200, 60}),
                                  kWait);
        QCOMPARE(savedFrame(corkwheel, still), still.frame);
        QCOMPARE(screenGeometry(stillWindow).topLeft(), QPoint(540, 40));
    }

    // Two monitors side by side, the left one the main one. A panel on the right monitor is
    // shown there; unplugged, it comes inside the main one until the monitor is back. One
    // across both stays where it is, as the main monitor still holds part of it. The
    // document stays as it was throughout.
    void panelsOfAnUnpluggedMonitorComeOntoTheMainOneAndGoBack() {
        setMonitor(QStringLiteral("*left"), QStringLiteral("400/106x600/159+0+0"), kXvfbOutput);
        setMonitor(QStringLiteral("right"), QStringLiteral("400/106x600/159+400+0"));
        const Panel away = textPanel(QStringLiteral("Away E2E"), {440, 300, 200, 60});
        const Panel across = textPanel(QStringLiteral("Across E2E"), {300, 40, 200, 60});
        const CorkwheelProcess corkwheel({away, across});
        const WId awayWindow = shownWindowNamed(away.name);
        const WId acrossWindow = shownWindowNamed(across.name);
        QVERIFY(awayWindow);
        QVERIFY(acrossWindow);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(awayWindow).topLeft(), QPoint(440, 300), kWait);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(acrossWindow).topLeft(), QPoint(300, 40), kWait);
        const QByteArray written = documentBytes(corkwheel);

        deleteMonitor(QStringLiteral("right"));
        // As far right as it fits on the left monitor, at the same height.
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(awayWindow).topLeft(), QPoint(200, 300), kWait);
        QCOMPARE(screenGeometry(acrossWindow).topLeft(), QPoint(300, 40));

        setMonitor(QStringLiteral("right"), QStringLiteral("400/106x600/159+400+0"));
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(awayWindow).topLeft(), QPoint(440, 300), kWait);
        QCOMPARE(screenGeometry(acrossWindow).topLeft(), QPoint(300, 40));
        QCOMPARE(documentBytes(corkwheel), written);
    }

    // The right monitor the main one: a panel dragged from it onto the left one is saved
    // left of the main monitor's corner.
    void dragOntoTheOtherMonitorSavesTheFrameFromTheMainOnesCorner() {
        setMonitor(QStringLiteral("left"), QStringLiteral("400/106x600/159+0+0"));
        setMonitor(QStringLiteral("*right"), QStringLiteral("400/106x600/159+400+0"), kXvfbOutput);
        const Panel mover = textPanel(QStringLiteral("Mover E2E"), {40, 100, 200, 60});
        const CorkwheelProcess corkwheel({mover});
        const WId window = shownWindowNamed(mover.name);
        QVERIFY(window);
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(window).topLeft(), QPoint(440, 100), kWait);

        QCOMPARE(corkwheel.startAgain({QStringLiteral("--edit-mode")}), 0);
        const QPoint titleBar(440 + 60, 100 + kBarMiddle);
        const QPoint bareDesktop(780, 580);
        QTRY_VERIFY_WITH_TIMEOUT(windowUnderPointer(titleBar) != windowUnderPointer(bareDesktop),
                                 kWait);
        drag(titleBar, titleBar + QPoint(-300, 250));
        QTRY_COMPARE_WITH_TIMEOUT(screenGeometry(window), QRect(140, 350, 200, 60), kWait);
        QTRY_COMPARE_WITH_TIMEOUT(savedFrame(corkwheel, mover), PanelFrame({-260, 350, 200, 60}),
                                  kWait);
    }
};

QTEST_MAIN(DesktopChangesEndToEndTest)
#include "tst_desktopchanges_e2e.moc"
