// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace corkwheel::TildePath {

// "~" or a leading "~/" becomes the user's home directory; any other path is unchanged.
QString expand(const QString& path);

} // namespace corkwheel::TildePath
