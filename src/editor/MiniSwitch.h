// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAbstractButton>

namespace corkwheel {

// A small on/off switch without a label: a rounded track, filled with the accent colour
// while on, and a white knob that sits at the trailing end while on.
class MiniSwitch : public QAbstractButton {
    Q_OBJECT

public:
    explicit MiniSwitch(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

    static constexpr int kWidth = 26;
    static constexpr int kHeight = 15;
    static constexpr double kKnobInset = 1.5;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor trackColor() const;
    QRectF knobRect(const QRectF& track) const;
};

} // namespace corkwheel
