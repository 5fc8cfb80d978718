// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/DesktopWindowsManager.h"

#include "desktop/DesktopPanelController.h"
#include "desktop/DesktopPanelWindow.h"
#include "engine/PanelRunner.h"
#include "model/PanelStore.h"
#include "platform/DesktopPlatform.h"

#include <QSet>
#include <QThread>

namespace corkwheel {

DesktopWindowsManager::DesktopWindowsManager(PanelStore& store, DesktopPlatform& platform,
                                             RunnerServices services, QObject* parent)
    : QObject(parent), m_platform(platform), m_services(std::move(services)), m_store(&store) {
    subscribe();
}

// The platform may outlive the manager, so its watches must not call back. The
// controllers go with the map, without ordering out or closing their windows: the manager
// only ends with the process.
DesktopWindowsManager::~DesktopWindowsManager() {
    m_platform.watchCompositor({});
    m_platform.watchScreens({});
}

DesktopPanelController* DesktopWindowsManager::controller(const QUuid& id) const {
    const auto found = m_controllers.find(id);
    return found == m_controllers.end() ? nullptr : found->second.get();
}

// The three values travel together: each change carries its own new value and the latest
// of the other two, and the current values are reconciled once before construction ends.
void DesktopWindowsManager::subscribe() {
    m_panels = m_store->panels();
    m_editMode = m_store->isEditMode();
    m_hidden = m_store->panelsHidden();
    connect(m_store, &PanelStore::panelsChanged, this, &DesktopWindowsManager::panelsChanged);
    connect(m_store, &PanelStore::isEditModeChanged, this, &DesktopWindowsManager::editModeChanged);
    connect(m_store, &PanelStore::panelsHiddenChanged, this,
            &DesktopWindowsManager::panelsHiddenChanged);
    m_platform.watchCompositor([this] { compositorChanged(); });
    m_platform.watchScreens([this] { screensChanged(); });
    reconcile(m_panels, m_editMode, m_hidden);
}

void DesktopWindowsManager::panelsChanged() {
    m_panels = m_store->panels();
    reconcile(m_panels, m_editMode, m_hidden);
}

void DesktopWindowsManager::editModeChanged(bool on) {
    m_editMode = on;
    reconcile(m_panels, m_editMode, m_hidden);
}

void DesktopWindowsManager::compositorChanged() {
    for (const auto& [id, controller] : m_controllers)
        controller->updateBackdrop();
}

void DesktopWindowsManager::screensChanged() {
    for (const auto& [id, controller] : m_controllers)
        controller->followScreens();
}

void DesktopWindowsManager::panelsHiddenChanged(bool hidden) {
    m_hidden = hidden;
    reconcile(m_panels, m_editMode, m_hidden);
}

void DesktopWindowsManager::reconcile(const QList<Panel>& panels, bool editMode, bool hidden) {
    Q_ASSERT(thread() == QThread::currentThread());
    removeControllersNotIn(panels);
    for (const Panel& panel : panels) {
        const bool panelHidden = hidden || !panel.isEnabled;
        auto found = m_controllers.find(panel.id);
        if (found == m_controllers.end()) {
            if (!m_store)
                continue;
            auto controller = std::make_unique<DesktopPanelController>(panel, m_store.data(),
                                                                       m_platform, m_services);
            const QUuid id = panel.id;
            controller->setSnapTargets([this, id] { return framesShownBesides(id); });
            found = m_controllers.insert_or_assign(panel.id, std::move(controller)).first;
        }
        found->second->apply(panel, editMode, panelHidden);
    }
    Q_EMIT reconciled();
}

void DesktopWindowsManager::removeControllersNotIn(const QList<Panel>& panels) {
    QSet<QUuid> ids;
    ids.reserve(panels.size());
    for (const Panel& panel : panels)
        ids.insert(panel.id);
    for (auto it = m_controllers.begin(); it != m_controllers.end();) {
        if (ids.contains(it->first)) {
            ++it;
            continue;
        }
        tearDown(*it->second);
        it = m_controllers.erase(it);
    }
}

// A drag lines a panel up with the enabled panels only: the others are not on the desktop.
QList<QRectF> DesktopWindowsManager::framesShownBesides(const QUuid& id) const {
    QList<QRectF> frames;
    for (const auto& [otherId, controller] : m_controllers) {
        if (otherId != id && controller->panel().isEnabled)
            frames.append(controller->placedFrame());
    }
    return frames;
}

// The refresh timer stops first, so no refresh fires for a panel that is already gone.
void DesktopWindowsManager::tearDown(DesktopPanelController& controller) {
    controller.runner().stop();
    m_platform.orderOut(controller.window());
    m_platform.close(controller.window());
}

} // namespace corkwheel
