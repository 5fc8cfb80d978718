// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace corkwheel {

// What the command line, the launcher's actions and the session bus can ask of the running
// Corkwheel. Their names are the same everywhere: on the command line (as --name), in the
// desktop entry's actions, over the local socket and in ActivateAction.
enum class AppAction { Settings, EditMode, HideAll, Quit };

QString appActionName(AppAction action);
std::optional<AppAction> appActionNamed(QStringView name);

} // namespace corkwheel
