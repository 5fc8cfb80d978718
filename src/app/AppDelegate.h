// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "app/AppAction.h"
#include "editor/EditorWindow.h"
#include "model/PanelStore.h"

#include <QObject>
#include <QPointer>

#include <memory>

namespace corkwheel {

class AppSettings;
class DesktopPlatform;
class DesktopWindowsManager;
class MenuBarItem;
class MenuBarView;
class TaskbarDockPolicy;

// Owns what lives for the whole run and starts it in order: the store and the tray menu
// when the delegate is made, the desktop windows when launching has finished. The editor
// exists only while it is open, so an idle Corkwheel carries no editor and no preview.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    explicit AppDelegate(AppSettings& settings, QObject* parent = nullptr);
    ~AppDelegate() override;

    PanelStore& store() { return m_store; }
    // None until launching has finished.
    DesktopWindowsManager* windowsManager() const { return m_windowsManager.get(); }
    // None while the editor is closed.
    EditorWindow* editorWindow() const { return m_editor; }
    MenuBarView& menuBarView() const { return *m_menuBarView; }
    MenuBarItem& menuBarItem() const { return *m_menuBarItem; }
    TaskbarDockPolicy& dockPolicy() const { return *m_dockPolicy; }

    void applicationDidFinishLaunching();

    // Opens the editor, the application's settings window, and brings it forward.
    void openSettingsWindow();

    // What the tray's items do, asked from outside: the command line, the launcher's
    // actions and the session bus. Edit mode and hiding switch, as the tray's items do.
    void perform(AppAction action);

private:
    AppSettings& m_settings;
    PanelStore m_store;
    std::unique_ptr<DesktopPlatform> m_platform;
    std::unique_ptr<TaskbarDockPolicy> m_dockPolicy;
    std::unique_ptr<MenuBarView> m_menuBarView;
    std::unique_ptr<MenuBarItem> m_menuBarItem;
    std::unique_ptr<DesktopWindowsManager> m_windowsManager;
    QPointer<EditorWindow> m_editor;
};

} // namespace corkwheel
