// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "render/Symbols.h"

#include <QIcon>
#include <QImage>
#include <QSize>
#include <QString>

namespace corkwheel::test {

// Whether `icon` shows the symbol named `symbol`, compared pixel for pixel.
inline bool sameImage(const QIcon& icon, const QString& symbol) {
    const QSize size(16, 16);
    return icon.pixmap(size).toImage() == Symbols::icon(symbol).pixmap(size).toImage();
}

} // namespace corkwheel::test
