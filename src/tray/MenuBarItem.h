// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QSystemTrayIcon>

namespace corkwheel {

class AppSettings;
class MenuBarView;

// Corkwheel's tray icon, carrying the tray menu. It is there while the user's
// showMenuBarItem preference is on.
class MenuBarItem : public QObject {
    Q_OBJECT

public:
    MenuBarItem(AppSettings& settings, MenuBarView& menu, QObject* parent = nullptr);

    // Whether Corkwheel asks for the icon now; a desktop without a tray has nowhere to put
    // it, but the answer stays the same.
    bool isShown() const;

private:
    void respondToActivation(QSystemTrayIcon::ActivationReason reason);

    MenuBarView& m_view;
    QSystemTrayIcon m_trayIcon;
};

} // namespace corkwheel
