// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/AppAction.h"

#include <array>
#include <utility>

namespace corkwheel {

namespace {

constexpr std::array<std::pair<AppAction, const char16_t*>, 4> kNames = {{
    {AppAction::Settings, u"settings"},
    {AppAction::EditMode, u"edit-mode"},
    {AppAction::HideAll, u"hide-all"},
    {AppAction::Quit, u"quit"},
}};

} // namespace

QString appActionName(AppAction action) {
    for (const auto& [known, name] : kNames) {
        if (known == action)
            return QString::fromUtf16(name);
    }
    return {};
}

std::optional<AppAction> appActionNamed(QStringView name) {
    for (const auto& [action, known] : kNames) {
        if (name == QStringView(known))
            return action;
    }
    return std::nullopt;
}

} // namespace corkwheel
