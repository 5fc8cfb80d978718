// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/Panel.h"

#include <QSize>
#include <QWidget>

namespace corkwheel {

class PanelContentView;
class PanelRunner;

// The inspector's preview: the panel drawn by its own content view, at most 340 × 180
// points, centred on a dark rounded stage at most 360 × 200 points, so that the white text
// of most panels shows against it.
class PreviewStage : public QWidget {
    Q_OBJECT

public:
    explicit PreviewStage(PanelRunner& runner, QWidget* parent = nullptr);

    // Draws `panel`, cut down to the preview's size.
    void setPanel(const Panel& panel);
    PanelContentView& content() const { return *m_content; }

    // A copy of `panel` whose frame is no larger than the preview's cap; smaller panels
    // keep their size.
    static Panel previewPanel(const Panel& panel);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    static constexpr double kMaxPanelWidth = 340;
    static constexpr double kMaxPanelHeight = 180;
    static constexpr int kMaxWidth = 360;
    static constexpr int kMaxHeight = 200;
    static constexpr double kCornerRadius = 12;
    static constexpr double kTopOpacity = 0.85;
    static constexpr double kBottomOpacity = 0.6;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QSize contentSize() const;
    void placeContent();

    PanelContentView* m_content;
};

} // namespace corkwheel
