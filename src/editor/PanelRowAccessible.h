// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAccessibleWidget>

namespace corkwheel {

class PanelList;
class PanelRow;

// One row of the panel list as an item of that list: named by its panel, described by the
// panel's type, selected as the list shows it, and holding the panel's on/off switch.
class PanelRowAccessible : public QAccessibleWidget {
public:
    explicit PanelRowAccessible(PanelRow* row);

    QString text(QAccessible::Text text) const override;
    QAccessible::State state() const override;
    QAccessibleInterface* parent() const override;
    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;

private:
    PanelRow* row() const;
    // The list the row is shown in; null before it is in one.
    PanelList* list() const;
};

} // namespace corkwheel
