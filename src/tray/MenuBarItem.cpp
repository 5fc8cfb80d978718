// SPDX-License-Identifier: GPL-3.0-or-later

#include "tray/MenuBarItem.h"

#include "render/Symbols.h"
#include "settings/AppSettings.h"
#include "tray/MenuBarView.h"

#include <QCursor>
#include <QGuiApplication>
#include <QMenu>

namespace corkwheel {

MenuBarItem::MenuBarItem(AppSettings& settings, MenuBarView& menu, QObject* parent)
    : QObject(parent), m_view(menu), m_trayIcon(this) {
    m_trayIcon.setIcon(Symbols::icon(QStringLiteral("square.grid.2x2.fill")));
    m_trayIcon.setToolTip(tr("Corkwheel"));
    m_trayIcon.setContextMenu(m_view.menu());
    connect(&m_trayIcon, &QSystemTrayIcon::activated, this, &MenuBarItem::respondToActivation);
    connect(&settings, &AppSettings::showMenuBarItemChanged, &m_trayIcon,
            &QSystemTrayIcon::setVisible);
    m_trayIcon.setVisible(settings.showMenuBarItem());
}

bool MenuBarItem::isShown() const {
    return m_trayIcon.isVisible();
}

// The icon stands for a pull-down menu, so a left click opens that same menu, as the right
// click does, at the pointer. Wayland tells a client neither where the pointer is nor lets
// it place a menu without a window of its own; there the click opens the settings instead,
// the other thing a click on a tray icon usually does.
void MenuBarItem::respondToActivation(QSystemTrayIcon::ActivationReason reason) {
    if (reason != QSystemTrayIcon::Trigger)
        return;
    if (QGuiApplication::platformName().startsWith(QLatin1String("wayland"))) {
        Q_EMIT m_view.settingsRequested();
        return;
    }
    QMenu* menu = m_view.menu();
    if (!menu->isVisible())
        menu->popup(QCursor::pos());
}

} // namespace corkwheel
