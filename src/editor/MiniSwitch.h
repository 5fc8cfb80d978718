// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAbstractButton>

namespace corkwheel {

// A small on/off switch without a label: a rounded track, filled with the accent colour
// while on, and a white knob that sits at the trailing end while on. With the keyboard on it,
// a ring runs round the track, in the margin kept free for it.
class MiniSwitch : public QAbstractButton {
    Q_OBJECT

public:
    explicit MiniSwitch(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    // On a selection highlight the ring takes the highlighted text's colour, as the accent
    // colour of the ring would vanish into a highlight of that colour.
    void setOnHighlight(bool onHighlight);

    // The track's size; the switch is larger by the ring's margin on every side.
    static constexpr int kWidth = 26;
    static constexpr int kHeight = 15;
    static constexpr int kRingMargin = 3;
    static constexpr double kRingWidth = 1.5;
    static constexpr double kKnobInset = 1.5;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor trackColor() const;
    QRectF knobRect(const QRectF& track) const;

    bool m_onHighlight = false;
};

} // namespace corkwheel
