// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QRect>

#include <optional>

class QWidget;

namespace corkwheel {

// Where Corkwheel last placed a panel window, kept on the window itself: a window manager
// may move the window as it takes it in, and a Wayland client is never told where its
// surfaces are, so the frame asked for is the one to go by.
void rememberFrame(QWidget* window, const QRect& frame);

// The frame last remembered for the window; nothing when none was.
std::optional<QRect> rememberedFrame(const QWidget* window);

} // namespace corkwheel
