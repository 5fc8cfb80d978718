#include "app/AppDelegate.h"

#include "app/AppSettings.h"
#include "desktop/DesktopWindowsManager.h"

namespace corkwheel {

AppDelegate::AppDelegate(AppSettings& settings, QObject* parent)
    : QObject(parent), m_settings(settings) {}

AppDelegate::~AppDelegate() = default;

// From here on one desktop window is shown per enabled panel.
void AppDelegate::applicationDidFinishLaunching() {
    m_windowsManager = std::make_unique<DesktopWindowsManager>(m_store);
    m_settings.applyDockPolicy();
}

void AppDelegate::openSettingsWindow() {
    Q_EMIT settingsWindowRequested();
}

} // namespace corkwheel
