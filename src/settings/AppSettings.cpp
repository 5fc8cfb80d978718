// SPDX-License-Identifier: GPL-3.0-or-later

#include "settings/AppSettings.h"

#include "settings/DockPolicy.h"

namespace corkwheel {

AppSettings::AppSettings(QObject* parent)
    : QObject(parent),
      m_settings(QSettings::NativeFormat, QSettings::UserScope, QStringLiteral(CORKWHEEL_APP_NAME),
                 QStringLiteral(CORKWHEEL_APP_NAME)) {
    const bool dock = m_settings.value(kShowDockIconKey, true).toBool();
    const bool menu = m_settings.value(kShowMenuBarItemKey, true).toBool();
    // Both stored off (edited by hand) would leave nothing to reach the settings with:
    // start with both on, without writing that back.
    m_showDockIcon = dock || !menu;
    m_showMenuBarItem = menu || !dock;
}

void AppSettings::setShowDockIcon(bool show) {
    if (show == m_showDockIcon)
        return;
    m_showDockIcon = show;
    m_settings.setValue(kShowDockIconKey, show);
    m_settings.sync();
    Q_EMIT showDockIconChanged(show);
    if (!m_showDockIcon && !m_showMenuBarItem)
        setShowMenuBarItem(true);
    applyDockPolicy();
}

void AppSettings::setShowMenuBarItem(bool show) {
    if (show == m_showMenuBarItem)
        return;
    m_showMenuBarItem = show;
    m_settings.setValue(kShowMenuBarItemKey, show);
    m_settings.sync();
    Q_EMIT showMenuBarItemChanged(show);
    if (!m_showDockIcon && !m_showMenuBarItem)
        setShowDockIcon(true);
}

void AppSettings::applyDockPolicy() {
    if (!m_dockPolicy || m_dockPolicy->isRegular() == m_showDockIcon)
        return;
    m_dockPolicy->setRegular(m_showDockIcon);
    m_dockPolicy->activate();
}

} // namespace corkwheel
