// SPDX-License-Identifier: GPL-3.0-or-later

#include "tray/MenuBarView.h"

#include "model/PanelStore.h"
#include "render/Symbols.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>

#include <algorithm>
#include <limits>

namespace corkwheel {

MenuBarView::MenuBarView(PanelStore& store, QObject* parent)
    : QObject(parent), m_store(store), m_menu(std::make_unique<QMenu>()) {
    buildMenu();
    connectStore();
}

MenuBarView::~MenuBarView() = default;

QMenu* MenuBarView::menu() const {
    return m_menu.get();
}

void MenuBarView::buildMenu() {
    QAction* settings =
        m_menu->addAction(Symbols::icon(QStringLiteral("gearshape")), tr("Settings…"));
    connect(settings, &QAction::triggered, this, &MenuBarView::settingsRequested);
    m_menu->addSeparator();

    m_hideAllPanels =
        m_menu->addAction(Symbols::icon(QStringLiteral("eye.slash")), tr("Hide All Panels"));
    m_hideAllPanels->setCheckable(true);
    m_hideAllPanels->setChecked(m_store.panelsHidden());
    connect(m_hideAllPanels, &QAction::triggered, &m_store, &PanelStore::setPanelsHidden);

    m_editMode = m_menu->addAction(Symbols::icon(QStringLiteral("hand.draw")), tr("Edit Mode"));
    m_editMode->setCheckable(true);
    m_editMode->setChecked(m_store.isEditMode());
    connect(m_editMode, &QAction::triggered, &m_store, &PanelStore::setEditMode);
    m_menu->addSeparator();

    // The count is information, not something to choose. A disabled action is how a menu
    // shows dimmed secondary text, and unlike a widget action it survives the trip to a
    // StatusNotifierItem host, which draws the exported menu itself.
    m_panelCount = m_menu->addAction(QString());
    m_panelCount->setEnabled(false);
    showPanelCount();
    m_menu->addSeparator();

    QAction* quit = m_menu->addAction(tr("Quit Corkwheel"));
    // Spelled out: the platform's standard Quit binding is empty under some platform themes.
    quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
    connect(quit, &QAction::triggered, this, &MenuBarView::quitRequested);
}

void MenuBarView::connectStore() {
    // setChecked() does not emit triggered(), so following the store never writes it back.
    connect(&m_store, &PanelStore::panelsHiddenChanged, m_hideAllPanels, &QAction::setChecked);
    connect(&m_store, &PanelStore::isEditModeChanged, m_editMode, &QAction::setChecked);
    connect(&m_store, &PanelStore::panelsChanged, this, &MenuBarView::showPanelCount);
}

void MenuBarView::showPanelCount() {
    // %Ln writes the count as the user's locale writes numbers. No document holds anywhere
    // near the most an int holds, the most a translated count can carry.
    const auto count = static_cast<int>(
        std::min<qsizetype>(m_store.panels().size(), std::numeric_limits<int>::max()));
    m_panelCount->setText(tr("%Ln panel(s)", nullptr, count));
}

} // namespace corkwheel
