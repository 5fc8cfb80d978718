// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "desktop/DragArea.h"
#include "desktop/TitleBarFrost.h"

#include <QFont>
#include <QRect>
#include <QString>

namespace corkwheel {

// The bar along the top of a panel in edit mode: the panel type's symbol and the panel's
// name on frosted glass: what the panel draws under the bar, blurred, which its host hands
// it. Until it has that, a dark tint. Dragging it moves the panel.
//
// With its frost it paints every pixel it covers, what the panel draws outside its rounded
// corners included, so that neither its own repaints nor the panel's changes beneath it
// paint the panel there again.
class PanelTitleBar : public DragArea {
    Q_OBJECT

public:
    explicit PanelTitleBar(QWidget* parent = nullptr);

    // `panelHeight` lets the bar's top corners follow the panel's rounded outline.
    void setContent(const QString& name, const QString& symbolName, double cornerRadius,
                    double panelHeight);

    // What the panel draws in `area` of the bar is `part` now, at the bar's device pixel
    // ratio; see TitleBarFrost::areaFor(). Until the bar has a frost of its size, `area`
    // must be the whole bar.
    void frostUnder(const QImage& part, const QRect& area);
    bool hasFrost() const;
    // See-through glass, for where the compositor blurs what lies behind the bar; see
    // TitleBarFrost. The bar needs to be given the whole area under it again.
    void setSeeThrough(bool seeThrough);
    bool seeThrough() const { return m_frost.seeThrough(); }

    // The name as it fits on the bar's one line, cut with "…" when too long.
    QString shownName() const;

    static constexpr double kSidePadding = 10;
    static constexpr double kSpacing = 6;
    static constexpr double kSymbolSize = 11;
    static constexpr double kNameSize = 12;
    static constexpr double kHairlineOpacity = 0.15;

Q_SIGNALS:
    // Painted without a frost that fits, as after a move to a screen of another scale: the
    // bar needs to be given the whole area under it.
    void frostMissing();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QFont nameFont() const;
    void paintGlass(QPainter& painter, const QRect& exposed) const;
    double nameLeft() const;
    void updateShownName();

    QString m_name;
    QString m_shownName;
    // Where the shown name is drawn, in the bar's coordinates.
    QRect m_nameArea;
    QString m_symbolName;
    double m_cornerRadius = 0;
    double m_panelHeight = 0;
    TitleBarFrost m_frost;
};

} // namespace corkwheel
