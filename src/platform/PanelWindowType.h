// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace corkwheel {

// The X11 window type a panel window takes, chosen by the window manager that runs: no one
// type keeps a window below the others, in place, on every workspace and through "show
// desktop" under all of them.
struct PanelWindowType {
    // _NET_WM_WINDOW_TYPE's values, the preferred first.
    QList<QByteArray> atoms;
    // The same type in the terms of Qt's xcb plugin, which writes the property itself
    // whenever a window's flags change.
    int qtType = 0;

    bool operator==(const PanelWindowType&) const = default;
};

// The running window manager, as far as the panel's type depends on it.
struct WindowManager {
    // The _NET_WM_NAME of the window that _NET_SUPPORTING_WM_CHECK names; empty when none
    // runs.
    QString name;
    // Whether it announces KDE's temporary window rules (_KDE_NET_WM_TEMPORARY_RULES in
    // _NET_SUPPORTED), as KWin did up to version 5 and no longer does from 6 on.
    bool announcesTemporaryRules = false;
};

PanelWindowType panelWindowTypeFor(const WindowManager& windowManager);

} // namespace corkwheel
