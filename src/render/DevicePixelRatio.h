// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QPainter;

namespace corkwheel {

// The device pixel ratio that `painter` really paints at. QWidget::render() and grab()
// redirect a widget's painter to another device, and then that device's ratio counts, not
// the one of the widget's screen. Off-screen buffers are made at this ratio so they stay
// as sharp as painting straight onto the device.
double paintRatio(const QPainter& painter);

} // namespace corkwheel
