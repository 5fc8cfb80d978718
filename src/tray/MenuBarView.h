// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>

#include <memory>

class QAction;
class QMenu;

namespace corkwheel {

class PanelStore;

// The tray menu: opens the settings, switches edit mode and hiding of the desktop panels,
// tells how many panels exist and quits. Every item follows the store, so the menu is
// right whenever it opens; it only ever writes the store's two run-time flags.
class MenuBarView : public QObject {
    Q_OBJECT

public:
    explicit MenuBarView(PanelStore& store, QObject* parent = nullptr);
    ~MenuBarView() override;

    QMenu* menu() const;

Q_SIGNALS:
    void settingsRequested();
    void quitRequested();

private:
    void buildMenu();
    void connectStore();
    void showPanelCount();

    PanelStore& m_store;
    std::unique_ptr<QMenu> m_menu;
    // Owned by the menu.
    QAction* m_hideAllPanels = nullptr;
    QAction* m_editMode = nullptr;
    QAction* m_panelCount = nullptr;
};

} // namespace corkwheel
