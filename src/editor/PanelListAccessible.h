// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAccessibleWidget>

namespace corkwheel {

class PanelList;

// The panel list as a list of its rows, in the order shown; the row under the keyboard is
// its focused part while the list has the focus.
class PanelListAccessible : public QAccessibleWidget {
public:
    explicit PanelListAccessible(PanelList* list);

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;

private:
    PanelList* list() const;
};

} // namespace corkwheel
