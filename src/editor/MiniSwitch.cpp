// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/MiniSwitch.h"

#include "render/Theme.h"

#include <QPainter>

namespace corkwheel {

namespace {

// The off track is the text colour, faint, so it reads on light and dark palettes alike.
constexpr double kOffTrackAlpha = 0.18;
constexpr double kKnobOutlineAlpha = 0.16;
constexpr double kDisabledOpacity = 0.45;
constexpr int kOnRimDarkness = 130;

} // namespace

MiniSwitch::MiniSwitch(QWidget* parent) : QAbstractButton(parent) {
    setCheckable(true);
    // Clicking the switch of a list row must not take the keyboard away from the list.
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize MiniSwitch::sizeHint() const {
    return {kWidth + 2 * kRingMargin, kHeight + 2 * kRingMargin};
}

QSize MiniSwitch::minimumSizeHint() const {
    return sizeHint();
}

void MiniSwitch::setOnHighlight(bool onHighlight) {
    if (onHighlight == m_onHighlight)
        return;
    m_onHighlight = onHighlight;
    update();
}

QColor MiniSwitch::trackColor() const {
    if (isChecked())
        return Theme::accent();
    QColor off = palette().color(QPalette::WindowText);
    off.setAlphaF(static_cast<float>(kOffTrackAlpha));
    return off;
}

QRectF MiniSwitch::knobRect(const QRectF& track) const {
    const double diameter = track.height() - 2 * kKnobInset;
    const double left =
        isChecked() ? track.right() - kKnobInset - diameter : track.left() + kKnobInset;
    return {left, track.top() + kKnobInset, diameter, diameter};
}

void MiniSwitch::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled())
        painter.setOpacity(kDisabledOpacity);

    QRectF track(0, 0, kWidth, kHeight);
    track.moveCenter(QRectF(rect()).center());
    // The darker rim keeps an "on" track visible on a selection highlight of the same accent.
    const QColor fill = trackColor();
    painter.setPen(isChecked() ? QPen(fill.darker(kOnRimDarkness), 1) : Qt::NoPen);
    painter.setBrush(fill);
    const QRectF inner = track.adjusted(0.5, 0.5, -0.5, -0.5);
    painter.drawRoundedRect(inner, inner.height() / 2, inner.height() / 2);

    QColor outline = Qt::black;
    outline.setAlphaF(static_cast<float>(kKnobOutlineAlpha));
    painter.setPen(QPen(outline, 0.5));
    painter.setBrush(Qt::white);
    painter.drawEllipse(knobRect(track));

    if (hasFocus()) {
        // Around the track, apart from it: an "on" track is of the ring's own colour.
        const QColor ring =
            m_onHighlight ? palette().color(QPalette::HighlightedText) : Theme::accent();
        painter.setPen(QPen(ring, kRingWidth));
        painter.setBrush(Qt::NoBrush);
        const double outset = kRingMargin - kRingWidth / 2;
        const QRectF around = track.adjusted(-outset, -outset, outset, outset);
        painter.drawRoundedRect(around, around.height() / 2, around.height() / 2);
    }
}

} // namespace corkwheel
