// SPDX-License-Identifier: GPL-3.0-or-later

#include "desktop/DragArea.h"

#include <QMouseEvent>

namespace corkwheel {

void DragArea::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    m_drag.begin(event->globalPosition());
}

void DragArea::mouseMoveEvent(QMouseEvent* event) {
    if (const auto translation = m_drag.translation(event->globalPosition()))
        Q_EMIT dragged(*translation, event->modifiers());
}

void DragArea::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && m_drag.end())
        Q_EMIT dragEnded();
}

} // namespace corkwheel
