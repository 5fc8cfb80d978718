// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace corkwheel {

// Whether Corkwheel shows itself in the taskbar or dock (regular) or runs as a background
// accessory. The editor window provides the real one; tests provide a recording one.
class DockPolicy {
public:
    virtual ~DockPolicy() = default;

    virtual bool isRegular() const = 0;
    virtual void setRegular(bool regular) = 0;
    // Brings the application forward after the policy changed.
    virtual void activate() = 0;
};

} // namespace corkwheel
