// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/WindowPlace.h"

#include <QList>
#include <QRect>

#include <functional>
#include <memory>
#include <optional>

class QWidget;
class QPainterPath;

namespace corkwheel {

// Everything a panel window needs from the window system, in one place, so the rest of
// the desktop code never mentions X11 or Wayland's layer shell. Every window
// operation of the panel controllers goes through here, which lets tests count them.
class DesktopPlatform {
public:
    virtual ~DesktopPlatform() = default;

    // Turns a new top-level widget into a panel window before it is first shown:
    // frameless, translucent, never focused, no shadow, on every workspace, left out of
    // the taskbar, the pager and the window switcher.
    virtual void preparePanelWindow(QWidget* window) = 0;

    // Pinned: below every ordinary window, mouse events pass through to what lies under
    // it. Not pinned (edit mode): above ordinary windows, receiving the mouse. The same
    // window stays at the same place either way.
    virtual void setPinned(QWidget* window, bool pinned) = 0;

    // Places the window at `place`: its frame in Qt's global coordinates
    // (device-independent), on the screen given there.
    virtual void setFrame(QWidget* window, const WindowPlace& place) = 0;
    virtual QRect frame(const QWidget* window) const = 0;

    // Shows the window without taking the focus or activating Corkwheel.
    virtual void orderFront(QWidget* window) = 0;
    virtual void orderOut(QWidget* window) = 0;
    virtual void close(QWidget* window) = 0;

    // The main screen's geometry in Qt's global coordinates; panel frames are measured
    // from its top-left corner. None without a screen.
    virtual std::optional<QRect> mainScreenGeometry() const = 0;
    // Every screen's geometry in Qt's global coordinates, the main screen's first; empty
    // without a screen.
    virtual QList<QRect> screens() const = 0;
    // Calls `changed` whenever the screens may have changed: one was added or taken away,
    // moved or changed size, or another became the main one, as when a monitor is plugged in
    // or unplugged or the screens are arranged anew. One watcher at a time; an empty
    // function ends the calls.
    virtual void watchScreens(std::function<void()> changed) = 0;
    // The part of the screen at `point` (Qt's global coordinates) that ordinary windows may
    // take: without the desktop's docks and panels, where the window system tells. The main
    // screen's when the point is on none; none without a screen.
    virtual std::optional<QRect> workAreaAt(QPoint point) const = 0;

    // Whether a compositing manager runs, so translucent windows really are translucent.
    virtual bool hasCompositor() const = 0;
    // Calls `changed` whenever hasCompositor() changes, as when a compositing manager starts
    // after Corkwheel or quits; one watcher at a time, an empty function ends the calls.
    virtual void watchCompositor(std::function<void()> changed) = 0;

    // Asks the compositor to blur what lies behind `shape` (window coordinates), where it
    // offers that; does nothing elsewhere.
    virtual void requestBlurBehind(QWidget* window, const QPainterPath& shape) = 0;
    // Whether the compositor blurs behind what requestBlurBehind() names right now, so that
    // a see-through pane shows a blur rather than the desktop's sharp detail.
    virtual bool offersBlurBehind() const = 0;

    // Lists an ordinary top-level window (the editor) in the taskbar and the pager, or
    // leaves it out of both, whether it is shown yet or not.
    virtual void setListedInTaskbar(QWidget* window, bool listed) = 0;

    // The platform of this session: X11 (also through XWayland), layer surfaces on a
    // Wayland compositor that offers them (where built), or else plain Qt.
    static std::unique_ptr<DesktopPlatform> create();
};

} // namespace corkwheel
