// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace corkwheel {

// How a screen reader sees the editor's own controls, for those whose widgets Qt cannot
// describe by itself: the stepper as a spin control with its value and range, the panel
// list as a list of its rows (Qt's list shows only the empty items beneath the rows), and
// each row as an item named by its panel, holding its switch.
class EditorAccessibility {
public:
    // Hands Qt the descriptions; once is enough, and more calls do nothing. Each of those
    // widgets calls it as it is made, before anything could have asked Qt about it.
    static void install();
};

} // namespace corkwheel
