// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/TextAlignmentOption.h"

namespace corkwheel {

QString rawValue(TextAlignmentOption alignment) {
    switch (alignment) {
    case TextAlignmentOption::Leading:
        return QStringLiteral("leading");
    case TextAlignmentOption::Center:
        return QStringLiteral("center");
    case TextAlignmentOption::Trailing:
        return QStringLiteral("trailing");
    }
    return {};
}

std::optional<TextAlignmentOption> textAlignmentFromRaw(QStringView raw) {
    for (auto option : {TextAlignmentOption::Leading, TextAlignmentOption::Center,
                        TextAlignmentOption::Trailing}) {
        if (raw == rawValue(option))
            return option;
    }
    return std::nullopt;
}

} // namespace corkwheel
