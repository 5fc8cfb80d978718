#pragma once

#include "model/PanelStore.h"

#include <QObject>

#include <memory>

namespace corkwheel {

class AppSettings;
class DesktopWindowsManager;

// Owns what lives for the whole run and starts it in order: the store when the delegate
// is made, the desktop windows when launching has finished.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    explicit AppDelegate(AppSettings& settings, QObject* parent = nullptr);
    ~AppDelegate() override;

    PanelStore& store() { return m_store; }
    // None until launching has finished.
    DesktopWindowsManager* windowsManager() const { return m_windowsManager.get(); }

    void applicationDidFinishLaunching();

    // Brings the editor, the application's settings window, forward.
    void openSettingsWindow();

Q_SIGNALS:
    void settingsWindowRequested();

private:
    AppSettings& m_settings;
    PanelStore m_store;
    std::unique_ptr<DesktopWindowsManager> m_windowsManager;
};

} // namespace corkwheel
