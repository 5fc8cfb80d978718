// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QUuid>
#include <QWidget>

#include <memory>

class QLabel;
class QMenu;

namespace corkwheel {

class AddPanelButton;
class PanelList;
class PanelRow;
class PanelStore;
struct Panel;

// The editor's left column: every panel of the store in document order, one selectable row
// each, and the "Add Panel" button pinned below the list. It changes the document only
// through the store's add, remove and update operations. The editor owns the selection:
// the sidebar reports the rows the user picks and shows what it is told to show.
class SidebarView : public QWidget {
    Q_OBJECT

public:
    explicit SidebarView(PanelStore& store, QWidget* parent = nullptr);

    // The row shown selected; a null id when none (also when the id is no longer in the list).
    QUuid selection() const;
    // Shows `id` selected (null: none) without emitting selectionChanged. Used by the editor,
    // which owns the selection.
    void setSelection(const QUuid& id);

    // The context menu of the row at `row`: a single "Delete" that removes that row's panel.
    std::unique_ptr<QMenu> contextMenuFor(int row);

    // Gives the list the keyboard, where Up and Down pick the panel.
    void focusList();

    QSize sizeHint() const override;

    static constexpr int kMinimumWidth = 220;
    static constexpr int kIdealWidth = 240;
    static constexpr int kAddButtonPadding = 10;

Q_SIGNALS:
    // The user picked a row (click or keyboard).
    void selectionChanged(const QUuid& id);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showPanels();
    void insertRow(int row, const Panel& panel);
    PanelRow* rowWidget(int row) const;
    QUuid idAt(int row) const;
    void listSelectionChanged();
    void showRowHighlights();
    void showContextMenu(const QPoint& position);
    void deleteOffsets(QList<int> offsets);
    void orderTabStops();

    PanelStore& m_store;
    QLabel* m_header;
    PanelList* m_list;
    AddPanelButton* m_addButton;
    // Set while the sidebar itself changes the list's selection, which the user did not pick.
    bool m_quiet = false;
};

} // namespace corkwheel
