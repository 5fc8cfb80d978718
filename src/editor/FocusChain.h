// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>

class QWidget;

namespace corkwheel {

// The order in which Tab moves the keyboard through a window. Qt appends a widget to the end
// of its window's chain whenever it joins the window, so controls made after the window was
// put together (the rows of a new panel, the fields of the selected panel's type, the
// inspector of the next selection) would otherwise come last, wherever they are shown.
class FocusChain {
public:
    // The widgets inside `container` that Tab stops at, in the order Tab reaches them now.
    static QList<QWidget*> stopsIn(const QWidget* container);

    // Makes Tab go through `widgets` one after the other, in the order given. Widgets that
    // Tab does not stop at are left out.
    static void link(const QList<QWidget*>& widgets);
};

} // namespace corkwheel
