// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "settings/DockPolicy.h"

#include <QPointer>
#include <QWidget>

namespace corkwheel {

class DesktopPlatform;

// Corkwheel's presence in the taskbar or dock. Linux has no application-wide switch for
// that, so it is carried by the one ordinary window Corkwheel has, the editor: regular
// lists it in the taskbar and the pager, accessory leaves it out of both. The policy holds
// while the editor is closed and applies to it whenever it opens.
class TaskbarDockPolicy : public DockPolicy {
public:
    explicit TaskbarDockPolicy(DesktopPlatform& platform) : m_platform(platform) {}

    bool isRegular() const override { return m_regular; }
    void setRegular(bool regular) override;
    // Raises and focuses the editor when it is open.
    void activate() override;

    // The editor window that carries the policy; null while it is closed.
    void setWindow(QWidget* window);

private:
    DesktopPlatform& m_platform;
    bool m_regular = true;
    QPointer<QWidget> m_window;
};

} // namespace corkwheel
