#pragma once

#include "model/PanelStore.h"

#include <QObject>

namespace corkwheel {

class AppSettings;

// Owns what lives for the whole run and starts it in order: the store when the delegate
// is made, the desktop windows when launching has finished.
class AppDelegate : public QObject {
    Q_OBJECT

public:
    explicit AppDelegate(AppSettings& settings, QObject* parent = nullptr);

    PanelStore& store() { return m_store; }

    void applicationDidFinishLaunching();

    // Brings the editor, the application's settings window, forward.
    void openSettingsWindow();

Q_SIGNALS:
    void settingsWindowRequested();

private:
    AppSettings& m_settings;
    PanelStore m_store;
};

} // namespace corkwheel
