// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/PanelRowAccessible.h"

#include "editor/MiniSwitch.h"
#include "editor/PanelList.h"
#include "editor/PanelRow.h"
#include "model/PanelType.h"

namespace corkwheel {

PanelRowAccessible::PanelRowAccessible(PanelRow* row)
    : QAccessibleWidget(row, QAccessible::ListItem) {}

PanelRow* PanelRowAccessible::row() const {
    return static_cast<PanelRow*>(widget());
}

// A row lies in the list's viewport, which a screen reader has no use for.
PanelList* PanelRowAccessible::list() const {
    QWidget* viewport = row()->parentWidget();
    return viewport ? qobject_cast<PanelList*>(viewport->parentWidget()) : nullptr;
}

QString PanelRowAccessible::text(QAccessible::Text text) const {
    switch (text) {
    case QAccessible::Name:
        return row()->title();
    case QAccessible::Description:
        return displayName(row()->panel().type);
    default:
        return QAccessibleWidget::text(text);
    }
}

QAccessible::State PanelRowAccessible::state() const {
    QAccessible::State state = QAccessibleWidget::state();
    state.selectable = true;
    state.selected = row()->isSelected();
    if (PanelList* shownIn = list()) {
        state.focusable = true;
        state.focused =
            shownIn->hasFocus() && shownIn->currentRow() == shownIn->indexOfPanelRow(row());
    }
    return state;
}

QAccessibleInterface* PanelRowAccessible::parent() const {
    if (PanelList* shownIn = list())
        return QAccessible::queryAccessibleInterface(shownIn);
    return QAccessibleWidget::parent();
}

int PanelRowAccessible::childCount() const {
    return 1;
}

QAccessibleInterface* PanelRowAccessible::child(int index) const {
    return index == 0 ? QAccessible::queryAccessibleInterface(row()->enabledSwitch()) : nullptr;
}

int PanelRowAccessible::indexOfChild(const QAccessibleInterface* child) const {
    return child && child->object() == row()->enabledSwitch() ? 0 : -1;
}

} // namespace corkwheel
