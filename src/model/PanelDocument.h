// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/Panel.h"

#include <QByteArray>
#include <QList>

#include <optional>

namespace corkwheel {

// The on-disk form of the panel list: a compact JSON array of panel objects with keys in
// a fixed order, "/" escaped as "\/" and UUIDs in upper case.
namespace PanelDocument {

// Fails (no value) when any number in any panel is not finite.
std::optional<QByteArray> encode(const QList<Panel>& panels);

// Strict: every key is required at every level and a single invalid panel makes the whole
// document invalid (no value). Unknown keys are ignored. UTF-8 or UTF-16.
std::optional<QList<Panel>> decode(const QByteArray& document);

} // namespace PanelDocument

} // namespace corkwheel
