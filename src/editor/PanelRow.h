// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/Panel.h"

#include <QString>
#include <QWidget>

class QLabel;

namespace corkwheel {

class ElidedLabel;
class MiniSwitch;
class PanelStore;
class SymbolBox;

// One panel in the sidebar's list: the type's symbol, the panel's name over the type's name,
// and a switch that turns the panel on or off. The switch writes the row's own copy of the
// panel back to the store with only `isEnabled` changed.
class PanelRow : public QWidget {
    Q_OBJECT

public:
    PanelRow(PanelStore& store, const Panel& panel, QWidget* parent = nullptr);

    // Shows `panel`, which the store now holds under this row's id.
    void setPanel(const Panel& panel);
    const Panel& panel() const { return m_panel; }
    // What the row is called out loud: the panel's name, or its type's while it has none.
    QString title() const;
    MiniSwitch* enabledSwitch() const { return m_switch; }

    // A selected row is drawn over the selection highlight, in its text colours.
    void setSelected(bool selected);
    bool isSelected() const { return m_selected; }

    // The row the list's keyboard is on, while the list has the keyboard: a ring runs round
    // it, which the selection alone does not show.
    void setKeyboardCurrent(bool current);
    bool isKeyboardCurrent() const { return m_keyboardCurrent; }

    static constexpr double kSymbolBox = 20;
    static constexpr double kSymbolSize = 16;
    static constexpr int kLineSpacing = 1;
    static constexpr int kSpacing = 8;
    static constexpr int kVerticalPadding = 5;
    static constexpr int kLeadingPadding = 6;
    static constexpr int kTrailingPadding = 8;

    static constexpr double kRingWidth = 2;
    static constexpr double kRingInset = 2;
    static constexpr double kRingRadius = 5;

protected:
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void writeEnabled(bool enabled);
    void showFields();
    // The text colours and the type's symbol, for the row's selection and palette.
    void applyColors();

    PanelStore& m_store;
    Panel m_panel;
    bool m_selected = false;
    bool m_keyboardCurrent = false;
    SymbolBox* m_symbol;
    ElidedLabel* m_name;
    QLabel* m_type;
    MiniSwitch* m_switch;
};

} // namespace corkwheel
