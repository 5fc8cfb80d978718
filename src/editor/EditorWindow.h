// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/RunnerServices.h"

#include <QMainWindow>
#include <QSize>

class QAction;
class QToolButton;

namespace corkwheel {

class AppOptionsPopover;
class AppSettings;
class EditorView;
class PanelStore;

// Corkwheel's settings window: the editor's two columns under a toolbar with the app
// options, the edit mode switch and the switch that hides every panel.
class EditorWindow : public QMainWindow {
    Q_OBJECT

public:
    EditorWindow(PanelStore& store, AppSettings& settings,
                 RunnerServices services = RunnerServices::shared(), QWidget* parent = nullptr);

    EditorView& view() const { return *m_view; }
    QAction* appOptionsAction() const { return m_appOptions; }
    QAction* editModeAction() const { return m_editMode; }
    QAction* hideAllAction() const { return m_hideAll; }
    QToolButton* buttonFor(QAction* action) const;
    AppOptionsPopover& appOptions() const { return *m_appOptionsPopover; }
    bool showingAppOptions() const;

    static constexpr QSize kDefaultSize{900, 560};

private:
    void addToolbar();
    void toggleAppOptions();
    void showEditMode(bool on);
    void showPanelsHidden(bool hidden);

    PanelStore& m_store;
    EditorView* m_view = nullptr;
    AppOptionsPopover* m_appOptionsPopover = nullptr;
    QAction* m_appOptions = nullptr;
    QAction* m_editMode = nullptr;
    QAction* m_hideAll = nullptr;
};

} // namespace corkwheel
