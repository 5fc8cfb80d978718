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
