// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/Theme.h"

#include <QGuiApplication>
#include <QPalette>

namespace corkwheel::Theme {

QColor accent() {
    return QGuiApplication::palette().color(QPalette::Highlight);
}

} // namespace corkwheel::Theme
