// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/X11CompositorWatch.h"

#include "platform/XcbReply.h"

#include <QByteArray>

#include <xcb/xfixes.h>

namespace corkwheel {

namespace {

// Leaves out the flag the server sets on events that another client sent.
constexpr std::uint8_t kEventTypeMask = 0x7f;

xcb_window_t rootWindow(xcb_connection_t* connection, int screenNumber) {
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection));
    for (int skip = screenNumber; skip > 0 && screens.rem > 0; --skip)
        xcb_screen_next(&screens);
    return screens.rem > 0 ? screens.data->root : xcb_window_t(XCB_WINDOW_NONE);
}

bool hasOwner(xcb_connection_t* connection, xcb_atom_t selection) {
    const XcbReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, selection), nullptr));
    return reply && reply->owner != XCB_WINDOW_NONE;
}

} // namespace

X11CompositorWatch::X11CompositorWatch(xcb_connection_t* connection, int screenNumber)
    : m_selection(internAtom(connection, "_NET_WM_CM_S" + QByteArray::number(screenNumber))) {
    // Events first, then the owner, so a compositor starting in between is not missed.
    selectSelectionEvents(connection, screenNumber);
    m_active = hasOwner(connection, m_selection);
}

void X11CompositorWatch::selectSelectionEvents(xcb_connection_t* connection, int screenNumber) {
    const xcb_query_extension_reply_t* xfixes = xcb_get_extension_data(connection, &xcb_xfixes_id);
    const xcb_window_t root = rootWindow(connection, screenNumber);
    if (!xfixes || !xfixes->present || root == XCB_WINDOW_NONE)
        return;
    // The server answers an XFixes request only after the client said which version it
    // speaks; version 1 brought the selection events.
    const XcbReply<xcb_xfixes_query_version_reply_t> version(xcb_xfixes_query_version_reply(
        connection, xcb_xfixes_query_version(connection, 1, 0), nullptr));
    if (!version)
        return;
    xcb_xfixes_select_selection_input(connection, root, m_selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    m_notifyType = xfixes->first_event + XCB_XFIXES_SELECTION_NOTIFY;
}

// Qt asks for the events of other selections (the clipboard's) on the same connection, and
// may ask for this one too, so only a change of this selection's state counts.
void X11CompositorWatch::handle(const xcb_generic_event_t* event) {
    if (m_notifyType == 0 || (event->response_type & kEventTypeMask) != m_notifyType)
        return;
    const auto* notify = reinterpret_cast<const xcb_xfixes_selection_notify_event_t*>(event);
    if (notify->selection != m_selection)
        return;
    const bool active = notify->owner != XCB_WINDOW_NONE;
    if (active == m_active)
        return;
    m_active = active;
    if (m_changed)
        m_changed();
}

bool X11CompositorWatch::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
    if (eventType == "xcb_generic_event_t")
        handle(static_cast<const xcb_generic_event_t*>(message));
    return false;
}

} // namespace corkwheel
