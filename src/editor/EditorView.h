// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/RunnerServices.h"

#include <QList>
#include <QUuid>
#include <QWidget>

class QSplitter;
class QStackedWidget;

namespace corkwheel {

class EmptyStatePlacard;
class InspectorView;
class PanelStore;
class SidebarView;

// The editor's two columns: the panel list on the left and, on the right, the inspector of
// the selected panel or, when no existing panel is selected, a placard. It owns the
// selection, and selects the first panel whenever nothing is selected.
class EditorView : public QWidget {
    Q_OBJECT

public:
    explicit EditorView(PanelStore& store, RunnerServices services = RunnerServices::shared(),
                        QWidget* parent = nullptr);

    // Null when nothing is selected. It may name a panel that has since been deleted.
    QUuid selection() const { return m_selection; }
    void select(const QUuid& id);

    SidebarView& sidebar() const { return *m_sidebar; }
    // The inspector of the selected panel; null while the placard is shown.
    InspectorView* inspector() const { return m_inspector; }
    bool showsPlacard() const;

    static constexpr int kMinimumWidth = 760;
    static constexpr int kMinimumHeight = 480;
    static constexpr int kSidebarMinimumWidth = 220;
    static constexpr int kSidebarIdealWidth = 240;

protected:
    void showEvent(QShowEvent* event) override;

private:
    void panelsChanged();
    void selectFirstIfNothingSelected();
    void showDetail();

    PanelStore& m_store;
    RunnerServices m_services;
    QUuid m_selection;
    QList<QUuid> m_panelIDs;
    bool m_appeared = false;
    SidebarView* m_sidebar = nullptr;
    QStackedWidget* m_detail = nullptr;
    EmptyStatePlacard* m_placard = nullptr;
    InspectorView* m_inspector = nullptr;
};

} // namespace corkwheel
