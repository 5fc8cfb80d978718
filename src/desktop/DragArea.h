// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "desktop/DragGesture.h"

#include <QPointF>
#include <QWidget>

namespace corkwheel {

// A widget that reports left-button drags on it: every movement as the translation from
// the press, in global coordinates, with the keys held at that moment, and the release,
// also after a press without movement.
class DragArea : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

Q_SIGNALS:
    void dragged(QPointF translation, Qt::KeyboardModifiers modifiers);
    void dragEnded();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    DragGesture m_drag;
};

} // namespace corkwheel
