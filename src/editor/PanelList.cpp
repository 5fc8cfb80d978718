// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/PanelList.h"

#include "editor/EditorAccessibility.h"
#include "editor/PanelRow.h"

#include <QAccessible>

namespace corkwheel {

PanelList::PanelList(QWidget* parent) : QListWidget(parent) {
    EditorAccessibility::install();
}

PanelRow* PanelList::panelRow(int index) const {
    QListWidgetItem* found = item(index);
    return found ? qobject_cast<PanelRow*>(itemWidget(found)) : nullptr;
}

int PanelList::indexOfPanelRow(const QWidget* row) const {
    for (int index = 0; index < count(); ++index) {
        if (row && itemWidget(item(index)) == row)
            return index;
    }
    return -1;
}

} // namespace corkwheel

namespace corkwheel {

// Qt tells a screen reader that the list has the keyboard, after this event, but names its
// current row only when the row changes; arriving by Tab, the user is told of the row too,
// as after an arrow key, once Qt has told of the list.
void PanelList::focusInEvent(QFocusEvent* event) {
    QListWidget::focusInEvent(event);
    if (QAccessible::isActive())
        QMetaObject::invokeMethod(this, &PanelList::announceCurrentRow, Qt::QueuedConnection);
}

void PanelList::announceCurrentRow() {
    if (!hasFocus() || currentRow() < 0)
        return;
    QAccessibleEvent focus(this, QAccessible::Focus);
    focus.setChild(currentRow());
    QAccessible::updateAccessibility(&focus);
}

} // namespace corkwheel
