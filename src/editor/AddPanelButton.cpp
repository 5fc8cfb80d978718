// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/AddPanelButton.h"

#include "editor/ReturnClicks.h"
#include "model/PanelStore.h"
#include "model/PanelType.h"
#include "render/Symbols.h"

#include <QMenu>

namespace corkwheel {

namespace {

QMenu* typeMenu(PanelStore& store, QWidget* parent) {
    auto* menu = new QMenu(parent);
    menu->setObjectName(QStringLiteral("addPanelMenu"));
    for (const PanelType type : allPanelTypes()) {
        QAction* action = menu->addAction(Symbols::icon(symbolName(type)), displayName(type));
        action->setData(rawValue(type));
        QObject::connect(action, &QAction::triggered, menu,
                         [&store, type] { store.addPanel(type); });
    }
    return menu;
}

} // namespace

AddPanelButton::AddPanelButton(PanelStore& store, QWidget* parent)
    : QPushButton(Symbols::icon(QStringLiteral("plus")), tr("Add Panel"), parent) {
    setObjectName(QStringLiteral("addPanelButton"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setMenu(typeMenu(store, this));
    ReturnClicks::install(this);
}

} // namespace corkwheel
