// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/TaskbarDockPolicy.h"

#include "platform/DesktopPlatform.h"

namespace corkwheel {

void TaskbarDockPolicy::setRegular(bool regular) {
    m_regular = regular;
    if (m_window)
        m_platform.setListedInTaskbar(m_window, regular);
}

void TaskbarDockPolicy::activate() {
    if (!m_window || !m_window->isVisible())
        return;
    m_window->raise();
    m_window->activateWindow();
}

void TaskbarDockPolicy::setWindow(QWidget* window) {
    m_window = window;
    if (m_window)
        m_platform.setListedInTaskbar(m_window, m_regular);
}

} // namespace corkwheel
