// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <algorithm>
#include <cmath>

namespace corkwheel::PanelLimits {

// What a panel's numbers may be, and where each bound comes from. The document keeps
// whatever the user wrote: these bound what is drawn, waited for or offered, never what is
// stored.
struct Range {
    double lowest;
    double highest;

    // `value` brought inside the range; an infinity or a value that is not a number counts
    // as `fallback`.
    double bound(double value, double fallback) const {
        return std::isfinite(value) ? std::clamp(value, lowest, highest) : fallback;
    }
};

// A panel refreshes at most once a second, whatever its interval says: faster would cost
// the desktop's idle CPU for content nobody can read at that pace.
inline constexpr double kShortestRefreshInterval = 1;

// What the inspector's steppers offer, in whole steps: refresh intervals from a second to an
// hour, font sizes a desktop panel is readable at, corner radii a panel's size can round.
inline constexpr Range kSteppedRefreshInterval{kShortestRefreshInterval, 3600};
inline constexpr Range kSteppedFontSize{8, 72};
inline constexpr Range kSteppedCornerRadius{0, 40};

// The inspector's opacity slider stops at a tenth, so a panel never vanishes by a slip of
// the mouse; a document may still hold 0, which hides the content.
inline constexpr Range kSlidOpacity{0.1, 1};

// Text is drawn between 1 and 4096 points whatever the document holds: a glyph cache of
// larger glyphs would take memory without end, and a size below one draws nothing.
inline constexpr Range kDrawnFontSize{1, 4096};

// A resize drag never makes a panel smaller than this, which leaves room for the edit-mode
// title bar with the panel's name and for the resize handle.
inline constexpr double kDraggedMinimumWidth = 120;
inline constexpr double kDraggedMinimumHeight = 50;

// Where a panel's window may be placed, in whole pixels of the desktop. The X protocol
// carries positions as 16-bit numbers, so a frame beyond them would wrap around onto the
// screen; a side is bounded as well, so one hand-edited frame cannot ask for a window whose
// pixels would not fit in memory. No screen is near either bound.
inline constexpr Range kDrawnPosition{-32767, 32767};
inline constexpr Range kDrawnSide{1, 16384};

} // namespace corkwheel::PanelLimits
