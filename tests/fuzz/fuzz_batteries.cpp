// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzInput.h"
#include "engine/Batteries.h"
#include "support/FakeSystemSource.h"

#include <cmath>

using namespace corkwheel;

// Any text as every file of a battery but its type, beside a second battery of 30 of
// 60 Wh, discharging at 15 W. Together they are never less than empty or more than full,
// and a time to empty or to full is a time: finite and not negative. The second battery's
// own reading (half full, two hours left) stays whatever the first one's files say when
// the first says it is absent.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray text = fuzz::inputText(data, size).toByteArray();
    test::FakeSystemSource source;
    const QString first = QStringLiteral("/sys/class/power_supply/BAT0/");
    source.setDirectory(first.chopped(1));
    source.setFile(first + QStringLiteral("type"), "Battery\n");
    for (const char* file : {"scope", "present", "status", "capacity", "energy_now", "energy_full",
                             "power_now", "charge_now", "charge_full", "current_now"})
        source.setFile(first + QLatin1String(file), text);
    const QString second = QStringLiteral("/sys/class/power_supply/BAT1/");
    source.setDirectory(second.chopped(1));
    for (const auto& [file, contents] :
         {std::pair{"type", "Battery"}, std::pair{"status", "Discharging"},
          std::pair{"energy_now", "30000000"}, std::pair{"energy_full", "60000000"},
          std::pair{"power_now", "15000000"}})
        source.setFile(second + QLatin1String(file), QByteArray(contents) + '\n');

    const auto battery = Batteries::read(source);
    fuzz::require(battery.has_value());
    fuzz::require(battery->fraction >= 0 && battery->fraction <= 1);
    for (const auto& time : {battery->secondsToEmpty, battery->secondsToFull}) {
        if (time)
            fuzz::require(std::isfinite(*time) && *time >= 0);
    }
    if (fuzz::withoutBlankEnds(text) == "0") {
        fuzz::require(battery->fraction == 0.5);
        fuzz::require(battery->secondsToEmpty == 2 * 3600.0);
    }
    return 0;
}
