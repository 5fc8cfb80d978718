// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAbstractNativeEventFilter>

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <utility>

namespace corkwheel {

// Follows whether a compositing manager holds the screen's _NET_WM_CM_S<n> selection, from
// the X server's XFixes selection events, and calls back when that changes. Compositors
// are often started after the session's other programs, or restarted, and the panels must
// switch between translucency and their dark backdrop with them. Without XFixes, which
// every current X server has, the answer stays the one found at construction.
class X11CompositorWatch : public QAbstractNativeEventFilter {
public:
    X11CompositorWatch(xcb_connection_t* connection, int screenNumber);

    bool isActive() const { return m_active; }
    // Called after isActive() changed; an empty function stops the calls.
    void setChangedCallback(std::function<void()> changed) { m_changed = std::move(changed); }

    // One event of the connection, of any kind.
    void handle(const xcb_generic_event_t* event);

    // Sees the events of Qt's connection before Qt does, and leaves them to it.
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;

private:
    void selectSelectionEvents(xcb_connection_t* connection, int screenNumber);

    std::uint32_t m_selection = 0;
    // The XFixes selection event's type on this connection; 0 when the server has none.
    std::uint8_t m_notifyType = 0;
    bool m_active = false;
    std::function<void()> m_changed;
};

} // namespace corkwheel
