// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QString>
#include <QStringView>

#include <optional>

namespace corkwheel {

// What a panel shows. The order of the cases is the order of the editor's add menu.
enum class PanelType { Shell, File, Text, Clock, Image, SystemStats, Webpage };

const QList<PanelType>& allPanelTypes();

// The raw string stored in the document ("shell", "systemStats", ...).
QString rawValue(PanelType type);
std::optional<PanelType> panelTypeFromRaw(QStringView raw);

// The type's label in menus and lists, translated like the rest of the interface.
QString displayName(PanelType type);
QString symbolName(PanelType type);

} // namespace corkwheel
