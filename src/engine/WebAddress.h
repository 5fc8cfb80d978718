// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QUrl>

#include <optional>

namespace corkwheel::WebAddress {

// The address a user typed, made loadable: trimmed, and sent over https when it names no
// scheme. No value when nothing is left or it does not parse.
std::optional<QUrl> normalizedURL(const QString& typed);

} // namespace corkwheel::WebAddress
