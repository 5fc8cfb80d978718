#include "app/AppDelegate.h"

#include "app/AppSettings.h"

namespace corkwheel {

AppDelegate::AppDelegate(AppSettings& settings, QObject* parent)
    : QObject(parent), m_settings(settings) {}

void AppDelegate::applicationDidFinishLaunching() {
    m_settings.applyDockPolicy();
}

void AppDelegate::openSettingsWindow() {
    Q_EMIT settingsWindowRequested();
}

} // namespace corkwheel
