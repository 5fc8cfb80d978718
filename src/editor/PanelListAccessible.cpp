// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/PanelListAccessible.h"

#include "editor/PanelList.h"
#include "editor/PanelRow.h"

namespace corkwheel {

PanelListAccessible::PanelListAccessible(PanelList* list)
    : QAccessibleWidget(list, QAccessible::List) {}

PanelList* PanelListAccessible::list() const {
    return static_cast<PanelList*>(widget());
}

int PanelListAccessible::childCount() const {
    return list()->count();
}

// Qt's list reports its current item by this index too (its focus and selection events).
QAccessibleInterface* PanelListAccessible::child(int index) const {
    PanelRow* row = list()->panelRow(index);
    return row ? QAccessible::queryAccessibleInterface(row) : nullptr;
}

int PanelListAccessible::indexOfChild(const QAccessibleInterface* child) const {
    return child ? list()->indexOfPanelRow(qobject_cast<QWidget*>(child->object())) : -1;
}

QAccessibleInterface* PanelListAccessible::childAt(int x, int y) const {
    for (int index = 0; index < childCount(); ++index) {
        QAccessibleInterface* row = child(index);
        if (row && row->rect().contains(x, y))
            return row;
    }
    return nullptr;
}

QAccessibleInterface* PanelListAccessible::focusChild() const {
    if (!list()->hasFocus())
        return nullptr;
    return child(list()->currentRow());
}

} // namespace corkwheel
