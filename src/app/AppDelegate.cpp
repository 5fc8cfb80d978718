// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/AppDelegate.h"

#include "app/TaskbarDockPolicy.h"
#include "desktop/DesktopWindowsManager.h"
#include "editor/EditorWindow.h"
#include "platform/DesktopPlatform.h"
#include "settings/AppSettings.h"
#include "tray/MenuBarItem.h"
#include "tray/MenuBarView.h"

#include <QCoreApplication>

namespace corkwheel {

AppDelegate::AppDelegate(AppSettings& settings, QObject* parent)
    : QObject(parent), m_settings(settings), m_platform(DesktopPlatform::create()),
      m_dockPolicy(std::make_unique<TaskbarDockPolicy>(*m_platform)),
      m_menuBarView(std::make_unique<MenuBarView>(m_store)),
      m_menuBarItem(std::make_unique<MenuBarItem>(settings, *m_menuBarView)) {
    connect(m_menuBarView.get(), &MenuBarView::settingsRequested, this,
            &AppDelegate::openSettingsWindow);
    connect(m_menuBarView.get(), &MenuBarView::quitRequested, qApp, &QCoreApplication::quit,
            Qt::QueuedConnection);
    // However the application ends (the tray's Quit, --quit, a signal at logout), a panel
    // moved or edited within the save delay before is written, not lost.
    connect(qApp, &QCoreApplication::aboutToQuit, &m_store, &PanelStore::savePendingChanges);
}

AppDelegate::~AppDelegate() {
    delete m_editor;
}

// From here on one desktop window is shown per enabled panel.
void AppDelegate::applicationDidFinishLaunching() {
    // The panel windows and the editor go through the one platform layer.
    m_windowsManager =
        std::make_unique<DesktopWindowsManager>(m_store, *m_platform, RunnerServices::shared());
    m_settings.setDockPolicy(m_dockPolicy.get());
    m_settings.applyDockPolicy();
}

void AppDelegate::openSettingsWindow() {
    if (!m_editor) {
        m_editor = new EditorWindow(m_store, m_settings);
        // Closing the editor ends it, its selection and its preview with it.
        m_editor->setAttribute(Qt::WA_DeleteOnClose);
        m_editor->setAttribute(Qt::WA_QuitOnClose, false);
        m_dockPolicy->setWindow(m_editor);
    }
    m_editor->show();
    m_editor->raise();
    m_editor->activateWindow();
}

void AppDelegate::perform(AppAction action) {
    switch (action) {
    case AppAction::Settings:
        openSettingsWindow();
        return;
    case AppAction::EditMode:
        m_store.setEditMode(!m_store.isEditMode());
        return;
    case AppAction::HideAll:
        m_store.setPanelsHidden(!m_store.panelsHidden());
        return;
    case AppAction::Quit:
        // Queued, as from the tray, so that whoever asked gets an answer first.
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
        return;
    }
}

} // namespace corkwheel
