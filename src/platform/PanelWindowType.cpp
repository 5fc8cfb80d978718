// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/PanelWindowType.h"

namespace corkwheel {

namespace {

// Qt's xcb plugin's own values of the two types (QXcbWindow::NetWmType).
constexpr int kQtNormalType = 0x1;
constexpr int kQtDockType = 0x4;
constexpr int kQtSplashType = 0x40;

} // namespace

// Mutter hides every window but desktop and dock windows while the desktop is shown; KWin
// centres splash windows on one workspace and, while the desktop is shown, lifts Plasma's
// desktop window over every window but docks; xfwm4 puts a splash window shown again above
// the others. All of them keep a dock that asks to be kept below under the normal windows
// (KWin among them, so pinning also lowers the window). Openbox alone puts such a dock among
// the normal windows, above them when it is shown again, but leaves kept-below splash
// windows under them and in place through "show desktop". The desktop type is no choice
// anywhere: desktop environments raise their own desktop window over it as soon as the
// desktop is clicked.
//
// KWin 6 keeps a dock above the normal windows even when it asks to be kept below, so there a
// panel is a normal window kept below them. KWin hides such a window while the desktop is
// shown, as it does every window but docks and the desktop's; that is the lesser evil.
//
// GNOME on Wayland runs Corkwheel through Xwayland under the same mutter: the dock kept below
// is in mutter's bottom layer there, under every application window, X11 or Wayland. Its
// desktop icons extension (Desktop Icons NG, which Ubuntu has on) draws the desktop in an
// ordinary, transparent, screen-sized Wayland window that lowers itself to the bottom of the
// normal layer, above the bottom one: its icons are drawn over the panels, and a press on a
// panel reaches it, as it would the bare desktop. Mutter gives an X11 window no place between
// that window and the others. A window's layer follows only its type and states; within a
// layer an X11 client can only ask to be raised or lowered as a whole (mutter ignores the
// sibling of a restacking request and does not handle _NET_RESTACK_WINDOW), and mutter refuses
// even that to a window that never takes the focus while another application has it. A panel
// in the normal layer would stay where mutter first put it, above the windows already open.
PanelWindowType panelWindowTypeFor(const WindowManager& windowManager) {
    if (windowManager.name == QStringLiteral("KWin") && !windowManager.announcesTemporaryRules) {
        // What Qt's xcb plugin writes for a frameless normal window of that type.
        return {{"_NET_WM_WINDOW_TYPE_NORMAL", "_KDE_NET_WM_WINDOW_TYPE_OVERRIDE",
                 "_NET_WM_WINDOW_TYPE_NORMAL"},
                kQtNormalType};
    }
    if (windowManager.name == QStringLiteral("Openbox")) {
        return {{"_NET_WM_WINDOW_TYPE_SPLASH", "_KDE_NET_WM_WINDOW_TYPE_OVERRIDE",
                 "_NET_WM_WINDOW_TYPE_NORMAL"},
                kQtSplashType};
    }
    return {{"_NET_WM_WINDOW_TYPE_DOCK", "_KDE_NET_WM_WINDOW_TYPE_OVERRIDE",
             "_NET_WM_WINDOW_TYPE_NORMAL"},
            kQtDockType};
}

} // namespace corkwheel
