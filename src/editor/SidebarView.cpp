// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/SidebarView.h"

#include "editor/AddPanelButton.h"
#include "editor/FocusChain.h"
#include "editor/MiniSwitch.h"
#include "editor/PanelList.h"
#include "editor/PanelRow.h"
#include "editor/SecondaryText.h"
#include "model/PanelStore.h"
#include "render/PanelFonts.h"

#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMouseEvent>
#include <QVBoxLayout>

#include <algorithm>
#include <cstdlib>

namespace corkwheel {

namespace {

constexpr int kIdRole = Qt::UserRole;
constexpr int kHeaderLeading = 12;
constexpr int kHeaderTop = 10;
constexpr int kHeaderBottom = 4;

QLabel* makeHeader(QWidget* parent) {
    auto* header = new QLabel(SidebarView::tr("Panels"), parent);
    header->setObjectName(QStringLiteral("panelsHeader"));
    header->setFont(
        PanelFonts::systemFont(PanelFonts::sizeOf(PanelFonts::caption()), QFont::DemiBold));
    header->setContentsMargins(kHeaderLeading, kHeaderTop, kHeaderLeading, kHeaderBottom);
    SecondaryText::apply(*header);
    return header;
}

PanelList* makeList(QWidget* parent) {
    auto* list = new PanelList(parent);
    list->setObjectName(QStringLiteral("panelList"));
    list->setAccessibleName(SidebarView::tr("Panels"));
    list->setSelectionMode(QAbstractItemView::SingleSelection);
    list->setDragEnabled(false);
    list->setFrameShape(QFrame::NoFrame);
    // The rows sit on the column's own background, like the header and the button.
    list->viewport()->setBackgroundRole(QPalette::Window);
    // Rows are as wide as the column; a long name is cut in its row instead.
    list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list->setContextMenuPolicy(Qt::CustomContextMenu);
    return list;
}

bool isDeleteKey(const QKeyEvent& event) {
    return (event.key() == Qt::Key_Delete || event.key() == Qt::Key_Backspace) &&
           (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
}

bool isRightPress(const QEvent& event) {
    if (event.type() != QEvent::MouseButtonPress && event.type() != QEvent::MouseButtonDblClick)
        return false;
    return static_cast<const QMouseEvent&>(event).button() == Qt::RightButton;
}

} // namespace

SidebarView::SidebarView(PanelStore& store, QWidget* parent)
    : QWidget(parent), m_store(store), m_header(makeHeader(this)), m_list(makeList(this)),
      m_addButton(new AddPanelButton(store, this)) {
    setWindowTitle(tr("Corkwheel"));
    setMinimumWidth(kMinimumWidth);

    // The button sits outside the list's scrolling area, so it stays put however long the
    // list grows.
    auto* footer = new QVBoxLayout;
    footer->setContentsMargins(kAddButtonPadding, kAddButtonPadding, kAddButtonPadding,
                               kAddButtonPadding);
    footer->addWidget(m_addButton);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_header);
    column->addWidget(m_list, 1);
    column->addLayout(footer);

    m_list->installEventFilter(this);
    m_list->viewport()->installEventFilter(this);
    connect(m_list->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &SidebarView::listSelectionChanged);
    connect(m_list->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &SidebarView::showRowHighlights);
    connect(m_list, &QWidget::customContextMenuRequested, this, &SidebarView::showContextMenu);
    connect(&m_store, &PanelStore::panelsChanged, this, &SidebarView::showPanels);
    showPanels();
}

QSize SidebarView::sizeHint() const {
    return {kIdealWidth, QWidget::sizeHint().height()};
}

QUuid SidebarView::selection() const {
    const QList<QListWidgetItem*> selected = m_list->selectedItems();
    return selected.isEmpty() ? QUuid() : selected.first()->data(kIdRole).toUuid();
}

PanelRow* SidebarView::rowWidget(int row) const {
    return m_list->panelRow(row);
}

void SidebarView::focusList() {
    m_list->setFocus(Qt::OtherFocusReason);
}

QUuid SidebarView::idAt(int row) const {
    return m_list->item(row)->data(kIdRole).toUuid();
}

void SidebarView::insertRow(int row, const Panel& panel) {
    auto* item = new QListWidgetItem;
    item->setData(kIdRole, panel.id);
    item->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    m_list->insertItem(row, item);
    auto* widget = new PanelRow(m_store, panel);
    // No width of its own: the row spans the list, however long the name.
    item->setSizeHint(QSize(0, widget->sizeHint().height()));
    m_list->setItemWidget(item, widget);
}

// Brings the rows in line with the store, keeping the rows (and the switch being clicked)
// of panels that are still there.
void SidebarView::showPanels() {
    const QUuid shown = selection();
    m_quiet = true;
    const QList<Panel>& panels = m_store.panels();
    bool inserted = false;
    for (int row = 0; row < panels.size(); ++row) {
        if (row < m_list->count() && idAt(row) == panels.at(row).id) {
            rowWidget(row)->setPanel(panels.at(row));
        } else {
            insertRow(row, panels.at(row));
            inserted = true;
        }
    }
    while (m_list->count() > panels.size())
        delete m_list->takeItem(m_list->count() - 1);
    m_quiet = false;
    setSelection(shown);
    if (inserted)
        orderTabStops();
}

// Tab goes from the list to each row's switch, top to bottom, and on to "Add Panel", as
// they are shown; a new row's switch would otherwise come after everything else.
void SidebarView::orderTabStops() {
    QList<QWidget*> stops{m_list};
    for (int row = 0; row < m_list->count(); ++row) {
        if (PanelRow* widget = rowWidget(row))
            stops.append(widget->enabledSwitch());
    }
    stops.append(m_addButton);
    FocusChain::link(stops);
}

void SidebarView::setSelection(const QUuid& id) {
    m_quiet = true;
    QListWidgetItem* match = nullptr;
    for (int row = 0; row < m_list->count() && !id.isNull(); ++row) {
        if (idAt(row) == id) {
            match = m_list->item(row);
            break;
        }
    }
    if (match) {
        m_list->setCurrentItem(match, QItemSelectionModel::ClearAndSelect);
        m_list->scrollToItem(match);
    } else {
        m_list->clearSelection();
    }
    showRowHighlights();
    m_quiet = false;
}

void SidebarView::listSelectionChanged() {
    showRowHighlights();
    if (!m_quiet)
        Q_EMIT selectionChanged(selection());
}

void SidebarView::showRowHighlights() {
    const int current = m_list->hasFocus() ? m_list->currentRow() : -1;
    for (int row = 0; row < m_list->count(); ++row) {
        if (PanelRow* widget = rowWidget(row)) {
            widget->setSelected(m_list->item(row)->isSelected());
            widget->setKeyboardCurrent(row == current);
        }
    }
}

std::unique_ptr<QMenu> SidebarView::contextMenuFor(int row) {
    auto menu = std::make_unique<QMenu>(this);
    if (row < 0 || row >= m_list->count())
        return menu;
    const QUuid id = idAt(row);
    QAction* remove = menu->addAction(tr("Delete"));
    connect(remove, &QAction::triggered, this, [this, id] { m_store.removePanel(id); });
    return menu;
}

void SidebarView::showContextMenu(const QPoint& position) {
    QListWidgetItem* item = m_list->itemAt(position);
    if (!item)
        return;
    const std::unique_ptr<QMenu> menu = contextMenuFor(m_list->row(item));
    menu->exec(m_list->viewport()->mapToGlobal(position));
}

// Each offset is read against the list as it stands after the previous removal.
void SidebarView::deleteOffsets(QList<int> offsets) {
    std::sort(offsets.begin(), offsets.end());
    for (const int offset : offsets) {
        const QList<Panel>& panels = m_store.panels();
        // The rows mirror the store, so an offset past its end means the two have come apart.
        if (offset < 0 || offset >= panels.size())
            std::abort();
        const QUuid id = panels.at(offset).id;
        m_store.removePanel(id);
    }
}

bool SidebarView::eventFilter(QObject* watched, QEvent* event) {
    if (watched == m_list &&
        (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut))
        showRowHighlights();
    // A right click opens the row's context menu without picking the row.
    if (watched == m_list->viewport() && isRightPress(*event))
        return true;
    if (watched == m_list && event->type() == QEvent::KeyPress &&
        isDeleteKey(*static_cast<QKeyEvent*>(event))) {
        QList<int> offsets;
        for (const QListWidgetItem* item : m_list->selectedItems())
            offsets.append(m_list->row(item));
        if (!offsets.isEmpty()) {
            deleteOffsets(offsets);
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace corkwheel
