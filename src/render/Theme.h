// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QColor>

namespace corkwheel::Theme {

// The one accent colour of Corkwheel's chrome and editor: the desktop's own, which Qt
// gives as the palette's highlight.
QColor accent();

} // namespace corkwheel::Theme
