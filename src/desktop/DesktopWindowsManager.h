// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/RunnerServices.h"
#include "model/Panel.h"

#include <QList>
#include <QObject>
#include <QPointer>
#include <QRectF>
#include <QUuid>

#include <map>
#include <memory>

namespace corkwheel {

class DesktopPanelController;
class DesktopPlatform;
class PanelStore;

// Keeps exactly one panel window controller per panel in the store, disabled panels
// included (their windows are only ordered out), and hands each one its panel, the edit
// mode and the hidden state that applies to it. Every change of the panels or of either
// flag is reconciled at once, in full.
class DesktopWindowsManager : public QObject {
    Q_OBJECT

public:
    DesktopWindowsManager(PanelStore& store, DesktopPlatform& platform, RunnerServices services,
                          QObject* parent = nullptr);
    ~DesktopWindowsManager() override;

    DesktopPanelController* controller(const QUuid& id) const;
    qsizetype controllerCount() const { return static_cast<qsizetype>(m_controllers.size()); }

Q_SIGNALS:
    // After every pass over the panels, once each controller has its panel and flags.
    void reconciled();

private:
    void subscribe();
    void panelsChanged();
    void editModeChanged(bool on);
    void panelsHiddenChanged(bool hidden);
    void compositorChanged();
    void screensChanged();
    void reconcile(const QList<Panel>& panels, bool editMode, bool hidden);
    void removeControllersNotIn(const QList<Panel>& panels);
    void tearDown(DesktopPanelController& controller);
    QList<QRectF> framesShownBesides(const QUuid& id) const;

    DesktopPlatform& m_platform;
    RunnerServices m_services;
    QPointer<PanelStore> m_store;
    std::map<QUuid, std::unique_ptr<DesktopPanelController>> m_controllers;
    // The latest values of the store's three changing values.
    QList<Panel> m_panels;
    bool m_editMode = false;
    bool m_hidden = false;
};

} // namespace corkwheel
