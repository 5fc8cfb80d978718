// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "desktop/DragArea.h"

#include <QRectF>

namespace corkwheel {

// The round handle in a panel's bottom-right corner in edit mode: diagonal arrows on an
// accent-coloured circle. Dragging it resizes the panel. The clear margin around the
// circle belongs to the handle too, so it is easy to hit.
class PanelResizeHandle : public DragArea {
    Q_OBJECT

public:
    explicit PanelResizeHandle(QWidget* parent = nullptr);

    static constexpr double kSymbolSize = 11;
    static constexpr double kCirclePadding = 6;
    static constexpr double kMargin = 6;
    static constexpr int kSize = static_cast<int>(2 * kMargin + 2 * kCirclePadding + kSymbolSize);

    // The circle, in the handle's coordinates.
    static QRectF circleRect();

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace corkwheel
