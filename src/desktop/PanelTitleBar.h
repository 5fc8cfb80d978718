// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "desktop/DragArea.h"

#include <QFont>
#include <QImage>
#include <QString>

namespace corkwheel {

// The bar along the top of a panel in edit mode: the panel type's symbol and the panel's
// name on frosted glass: what the panel draws under the bar, blurred, which its host hands
// it. Until it has that, a dark tint. Dragging it moves the panel.
class PanelTitleBar : public DragArea {
    Q_OBJECT

public:
    explicit PanelTitleBar(QWidget* parent = nullptr);

    // `panelHeight` lets the bar's top corners follow the panel's rounded outline.
    void setContent(const QString& name, const QString& symbolName, double cornerRadius,
                    double panelHeight);

    // What the panel draws under the bar now, frosted, at any size: it is stretched over the
    // bar. Replaces the one before.
    void setFrost(const QImage& frost);
    bool hasFrost() const { return !m_frost.isNull(); }

    // The name as it fits on the bar's one line, cut with "…" when too long.
    QString shownName() const;

    static constexpr double kSidePadding = 10;
    static constexpr double kSpacing = 6;
    static constexpr double kSymbolSize = 11;
    static constexpr double kNameSize = 12;
    static constexpr double kHairlineOpacity = 0.15;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QFont nameFont() const;
    void paintGlass(QPainter& painter, const QPainterPath& shape) const;
    double nameLeft() const;

    QString m_name;
    QString m_symbolName;
    double m_cornerRadius = 0;
    double m_panelHeight = 0;
    QImage m_frost;
    // The bar's size when it was handed the frost.
    QSize m_frostSize;
};

} // namespace corkwheel
