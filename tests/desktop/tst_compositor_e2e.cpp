// The corkwheel binary on an X display of the test's own, where a compositor starts and
// quits while the panels are shown, as happens when a session starts its programs in any
// order or the user restarts the compositor.

#include "PanelFixtures.h"
#include "PrivateXServer.h"
#include "XDisplayTools.h"

#include "desktop/XcbReply.h"

#include <QColor>
#include <QStandardPaths>
#include <QTest>

#include <xcb/xcb.h>

#include <memory>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

// Under a panel's short text, halfway along its bottom edge, as the window's own pixels
// hold it: the dark backdrop, or nothing for the compositor to blend. Invalid when the
// window is gone or has no alpha channel.
QColor pixelBelowText(WId window) {
    const std::unique_ptr<xcb_connection_t, Disconnect> connection(xcb_connect(nullptr, nullptr));
    xcb_connection_t* raw = connection.get();
    const auto id = static_cast<xcb_window_t>(window);
    const XcbReply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(raw, xcb_get_geometry(raw, id), nullptr));
    if (!geometry || geometry->depth != 32)
        return {};
    const XcbReply<xcb_get_image_reply_t> image(xcb_get_image_reply(
        raw,
        xcb_get_image(raw, XCB_IMAGE_FORMAT_Z_PIXMAP, id, static_cast<int16_t>(geometry->width / 2),
                      static_cast<int16_t>(geometry->height - 4), 1, 1, ~0U),
        nullptr));
    if (!image || xcb_get_image_data_length(image.get()) < 4)
        return {};
    const uint8_t* bgra = xcb_get_image_data(image.get());
    return QColor(bgra[2], bgra[1], bgra[0], bgra[3]);
}

bool isDarkBackdrop(const QColor& color) {
    return color.isValid() && color.alpha() == 255 && color.lightness() < 40;
}

bool isClear(const QColor& color) {
    return color.isValid() && color.alpha() == 0;
}

} // namespace

class CompositorEndToEndTest : public QObject {
    Q_OBJECT

private:
    PrivateXServer m_server;
    QProcess m_compositor;

private Q_SLOTS:
    void initTestCase() {
        QVERIFY2(!QStandardPaths::findExecutable(QStringLiteral("picom")).isEmpty(),
                 "picom is missing: scripts/test.sh installs it");
        QVERIFY2(m_server.start(), "Xvfb did not start");
        // The binary, the compositor and the X tools all go to this display.
        qputenv("DISPLAY", m_server.display());
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

QTEST_MAIN(CompositorEndToEndTest)
#include "tst_compositor_e2e.moc"
