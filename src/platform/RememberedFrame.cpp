// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/RememberedFrame.h"

#include <QVariant>
#include <QWidget>

namespace corkwheel {

namespace {

constexpr char kFrameProperty[] = "corkwheelFrame";

} // namespace

void rememberFrame(QWidget* window, const QRect& frame) {
    window->setProperty(kFrameProperty, frame);
}

std::optional<QRect> rememberedFrame(const QWidget* window) {
    const QVariant frame = window->property(kFrameProperty);
    return frame.isValid() ? std::optional(frame.toRect()) : std::nullopt;
}

} // namespace corkwheel
