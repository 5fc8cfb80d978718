// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QListWidget>

namespace corkwheel {

class PanelRow;

// The sidebar's list: one item per panel, each covered by the panel's row.
class PanelList : public QListWidget {
    Q_OBJECT

public:
    explicit PanelList(QWidget* parent = nullptr);

    // The row over the item at `index`; null when there is none.
    PanelRow* panelRow(int index) const;
    // Where `row` is in the list; -1 when it is not one of its rows.
    int indexOfPanelRow(const QWidget* row) const;

protected:
    void focusInEvent(QFocusEvent* event) override;

private:
    void announceCurrentRow();
};

} // namespace corkwheel
