// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/CodableColor.h"

#include <QAbstractButton>
#include <QColor>

namespace corkwheel {

// A swatch of a colour, opacity included, that opens the colour dialog when clicked or when
// Space or Return is pressed on it. A colour chosen there is announced as picked.
class ColorWell : public QAbstractButton {
    Q_OBJECT

public:
    explicit ColorWell(QWidget* parent = nullptr);

    // Shows `color` without announcing it: the colour comes from the stored panel.
    void display(const CodableColor& color);
    QColor color() const { return m_color; }

    // Takes `color` as the user's pick: shows it and announces it.
    void setColor(const QColor& color);

    // The sRGB components and opacity of `color`, as a record stores them.
    static CodableColor toCodable(const QColor& color);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void colorPicked(const QColor& color);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void openDialog();
    void describeColor();

    QColor m_color;
};

} // namespace corkwheel
