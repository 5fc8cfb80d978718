// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace corkwheel {

// Position and size of a panel in points. The origin is the top-left corner of the
// primary screen and y grows downwards. No range is enforced here: the minimum size is
// the resize gesture's business.
struct PanelFrame {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    bool operator==(const PanelFrame&) const = default;
};

} // namespace corkwheel
