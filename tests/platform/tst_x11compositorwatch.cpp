// SPDX-License-Identifier: GPL-3.0-or-later

// Whether a compositing manager runs, followed on a private X server that has none: the
// test takes and gives up the compositor's selection itself, as a compositor starting and
// quitting would.

#include "support/PrivateXServer.h"

#include "platform/X11CompositorWatch.h"
#include "platform/XcbReply.h"

#include <QTest>

#include <xcb/xcb.h>
#include <xcb/xfixes.h>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

xcb_window_t rootOf(xcb_connection_t* connection) {
    return xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
}

// A round trip: the server has handled everything sent before it, and every event it sent
// this client before its answer has arrived.
void sync(xcb_connection_t* connection) {
    XcbReply<xcb_get_input_focus_reply_t>(
        xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

// Hands the watch every event its client has received; returns how many there were.
int deliver(xcb_connection_t* connection, X11CompositorWatch& watch) {
    sync(connection);
    int count = 0;
    while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(connection)}) {
        watch.handle(event.get());
        ++count;
    }
    return count;
}

} // namespace

class X11CompositorWatchTest : public QObject {
    Q_OBJECT

private:
    PrivateXServer m_server;
    XcbClient m_watched;

    // Another client owning `selection`, as a compositor does while it runs.
    XcbClient takeSelection(const QByteArray& selection) const {
        XcbClient owner = m_server.connect();
        xcb_connection_t* raw = owner.get();
        const xcb_window_t window = xcb_generate_id(raw);
        xcb_create_window(raw, XCB_COPY_FROM_PARENT, window, rootOf(raw), 0, 0, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_set_selection_owner(raw, window, internAtom(raw, selection), XCB_CURRENT_TIME);
        sync(raw);
        return owner;
    }

    XcbClient startCompositor() const { return takeSelection("_NET_WM_CM_S0"); }

private Q_SLOTS:
    void initTestCase() { QVERIFY2(m_server.start(), "Xvfb did not start"); }

    void init() {
        m_watched = m_server.connect();
        QVERIFY(m_watched);
    }

    void cleanup() { m_watched.reset(); }

    void withoutCompositorIsInactive() {
        const X11CompositorWatch watch(m_watched.get(), 0);
        QVERIFY(!watch.isActive());
    }

    void compositorAlreadyRunningIsActiveFromStart() {
        const XcbClient compositor = startCompositor();
        const X11CompositorWatch watch(m_watched.get(), 0);
        QVERIFY(watch.isActive());
    }

    void compositorStartingLaterIsReportedOnce() {
        X11CompositorWatch watch(m_watched.get(), 0);
        int changes = 0;
        watch.setChangedCallback([&] { ++changes; });
        const XcbClient compositor = startCompositor();
        deliver(m_watched.get(), watch);
        QVERIFY(watch.isActive());
        QCOMPARE(changes, 1);
    }

    void compositorQuittingIsReported() {
        XcbClient compositor = startCompositor();
        X11CompositorWatch watch(m_watched.get(), 0);
        int changes = 0;
        watch.setChangedCallback([&] { ++changes; });
        compositor.reset();
        QTRY_VERIFY((deliver(m_watched.get(), watch), !watch.isActive()));
        QCOMPARE(changes, 1);
    }

    // Qt asks for the clipboard's selection events on the connection the watch listens to.
    void otherSelectionChangingIsIgnored() {
        X11CompositorWatch watch(m_watched.get(), 0);
        int changes = 0;
        watch.setChangedCallback([&] { ++changes; });
        xcb_connection_t* raw = m_watched.get();
        xcb_xfixes_select_selection_input(raw, rootOf(raw), internAtom(raw, "CLIPBOARD"),
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
        sync(raw);
        const XcbClient clipboardOwner = takeSelection("CLIPBOARD");
        QCOMPARE(deliver(raw, watch), 1);
        QVERIFY(!watch.isActive());
        QCOMPARE(changes, 0);
    }

    void emptyCallbackEndsTheCalls() {
        X11CompositorWatch watch(m_watched.get(), 0);
        int changes = 0;
        watch.setChangedCallback([&] { ++changes; });
        watch.setChangedCallback({});
        const XcbClient compositor = startCompositor();
        deliver(m_watched.get(), watch);
        QVERIFY(watch.isActive());
        QCOMPARE(changes, 0);
    }
};

QTEST_GUILESS_MAIN(X11CompositorWatchTest)
#include "tst_x11compositorwatch.moc"
