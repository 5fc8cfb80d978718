// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/EditorView.h"

#include "editor/EmptyStatePlacard.h"
#include "editor/FocusChain.h"
#include "editor/InspectorView.h"
#include "editor/SidebarView.h"
#include "model/PanelStore.h"

#include <QHBoxLayout>
#include <QSplitter>
#include <QStackedWidget>
#include <QTimer>

namespace corkwheel {

namespace {

QList<QUuid> idsOf(const QList<Panel>& panels) {
    QList<QUuid> ids;
    ids.reserve(panels.size());
    for (const Panel& panel : panels)
        ids.append(panel.id);
    return ids;
}

} // namespace

EditorView::EditorView(PanelStore& store, RunnerServices services, QWidget* parent)
    : QWidget(parent), m_store(store), m_services(std::move(services)),
      m_panelIDs(idsOf(store.panels())) {
    setMinimumSize(kMinimumWidth, kMinimumHeight);

    m_sidebar = new SidebarView(store);
    m_sidebar->setMinimumWidth(kSidebarMinimumWidth);
    m_detail = new QStackedWidget;
    m_placard = new EmptyStatePlacard;
    m_detail->addWidget(m_placard);

    auto* split = new QSplitter(Qt::Horizontal);
    split->setObjectName(QStringLiteral("editorSplit"));
    split->setChildrenCollapsible(false);
    split->addWidget(m_sidebar);
    split->addWidget(m_detail);
    split->setStretchFactor(0, 0);
    split->setStretchFactor(1, 1);
    split->setSizes({kSidebarIdealWidth, kMinimumWidth - kSidebarIdealWidth});

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(split);

    connect(m_sidebar, &SidebarView::selectionChanged, this, &EditorView::select);
    connect(&m_store, &PanelStore::panelsChanged, this, &EditorView::panelsChanged);
}

void EditorView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (m_appeared)
        return;
    m_appeared = true;
    // The keyboard starts in the list, where the arrows pick the panel to edit.
    m_sidebar->focusList();
    // As the window first appears, after it has been laid out.
    QTimer::singleShot(0, this, &EditorView::selectFirstIfNothingSelected);
}

void EditorView::select(const QUuid& id) {
    if (id == m_selection)
        return;
    m_selection = id;
    m_sidebar->setSelection(id);
    showDetail();
}

bool EditorView::showsPlacard() const {
    return m_detail->currentWidget() == m_placard;
}

// Only a changed list of ids can call for a first selection; a selection naming a panel
// that is gone stays as it is, so deleting the selected panel shows the placard rather
// than jumping to a neighbour.
void EditorView::panelsChanged() {
    QList<QUuid> ids = idsOf(m_store.panels());
    if (ids != m_panelIDs) {
        m_panelIDs = std::move(ids);
        selectFirstIfNothingSelected();
    }
    showDetail();
}

void EditorView::selectFirstIfNothingSelected() {
    if (m_selection.isNull() && !m_panelIDs.isEmpty())
        select(m_panelIDs.first());
}

void EditorView::showDetail() {
    const bool exists = !m_selection.isNull() && m_panelIDs.contains(m_selection);
    if (exists && m_inspector && m_inspector->panelID() == m_selection)
        return;
    if (m_inspector) {
        m_detail->removeWidget(m_inspector);
        delete m_inspector;
        m_inspector = nullptr;
    }
    if (!exists) {
        m_detail->setCurrentWidget(m_placard);
        return;
    }
    m_inspector = new InspectorView(m_store, m_selection, m_services);
    m_detail->addWidget(m_inspector);
    m_detail->setCurrentWidget(m_inspector);
    // The new inspector's controls joined the window last; Tab reaches them after the
    // sidebar, beside which they are shown.
    FocusChain::link(FocusChain::stopsIn(m_sidebar) + FocusChain::stopsIn(m_inspector));
}

} // namespace corkwheel
