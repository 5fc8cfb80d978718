// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

#include <optional>

namespace corkwheel {

// One numbered input of a hardware monitoring chip (temp3_*, fan1_*), in the kernel's own
// units: millidegrees Celsius for temperatures, revolutions per minute for fans. Only what
// could be read is there.
struct HwmonChannel {
    int index = 0;
    std::optional<qint64> input;
    // Empty when the driver gives no label.
    QString label;
    std::optional<qint64> max;
    std::optional<qint64> critical;

    bool operator==(const HwmonChannel&) const = default;
};

} // namespace corkwheel
