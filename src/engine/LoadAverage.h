// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArrayView>

#include <optional>

namespace corkwheel {

// The kernel's load averages over 1, 5 and 15 minutes: how many tasks were running or
// waiting to run, on average.
struct LoadAverage {
    double one = 0;
    double five = 0;
    double fifteen = 0;

    bool operator==(const LoadAverage&) const = default;
};

// The first three fields of /proc/loadavg ("0.52 1.03 0.98 2/1234 5678"), each digits with
// at most one decimal point. Nothing when one of them is missing or reads otherwise.
std::optional<LoadAverage> parseLoadAverage(QByteArrayView loadavg);

} // namespace corkwheel
