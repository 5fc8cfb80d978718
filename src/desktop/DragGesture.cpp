// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/DragGesture.h"

namespace corkwheel {

void DragGesture::begin(QPointF globalPosition) {
    m_start = globalPosition;
}

std::optional<QPointF> DragGesture::translation(QPointF globalPosition) const {
    if (!m_start)
        return std::nullopt;
    return globalPosition - *m_start;
}

bool DragGesture::end() {
    const bool wasActive = m_start.has_value();
    m_start.reset();
    return wasActive;
}

} // namespace corkwheel
