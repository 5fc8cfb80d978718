// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPointF>

#include <optional>

namespace corkwheel {

// A drag that starts at once on a press and reports every movement as its translation from
// where it began. Positions are global, so the translation stays right while the window
// under the pointer is itself being moved by the drag.
class DragGesture {
public:
    void begin(QPointF globalPosition);
    bool isActive() const { return m_start.has_value(); }
    // Translation from the start (x right, y down); none when no drag is in progress.
    std::optional<QPointF> translation(QPointF globalPosition) const;
    // Ends the drag; false when none was in progress.
    bool end();

private:
    std::optional<QPointF> m_start;
};

} // namespace corkwheel
