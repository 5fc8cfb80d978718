// SPDX-License-Identifier: GPL-3.0-or-later

// The corkwheel binary on an X display of the test's own, where the desktop changes under
// the shown panels: a compositor starts and quits, as when a session starts its programs in
// any order or the user restarts it.

#include "support/PanelFixtures.h"
#include "support/PrivateXServer.h"
#include "support/XDisplayTools.h"
#include "support/XWindowImage.h"

#include <QColor>
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

} // namespace

class DesktopChangesEndToEndTest : public QObject {
    Q_OBJECT

private:
    PrivateXServer m_server;
    QProcess m_compositor;

private Q_SLOTS:
    void initTestCase() {
        const QString missing = missingTool({QStringLiteral("picom")});
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
};

QTEST_MAIN(DesktopChangesEndToEndTest)
#include "tst_desktopchanges_e2e.moc"
