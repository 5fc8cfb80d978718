// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace corkwheel {

// Horizontal alignment of a panel's text content.
enum class TextAlignmentOption { Leading, Center, Trailing };

QString rawValue(TextAlignmentOption alignment);
std::optional<TextAlignmentOption> textAlignmentFromRaw(QStringView raw);

} // namespace corkwheel
