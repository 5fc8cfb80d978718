// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/LoadAverage.h"

#include <array>
#include <cmath>

namespace corkwheel {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n';
}

// Digits with at most one point among them. The number conversion alone would also take
// signs, exponents, "inf" and "nan", none of which the kernel writes.
std::optional<double> loadFigure(QByteArrayView text) {
    int points = 0;
    int digits = 0;
    for (const char c : text) {
        if (c == '.')
            ++points;
        else if (c >= '0' && c <= '9')
            ++digits;
        else
            return std::nullopt;
    }
    if (digits == 0 || points > 1)
        return std::nullopt;
    bool ok = false;
    const double value = text.toDouble(&ok);
    // Hundreds of digits overflow, or underflow past the smallest double, and the conversion
    // refuses them: no load either.
    return ok && std::isfinite(value) ? std::optional(value) : std::nullopt;
}

} // namespace

std::optional<LoadAverage> parseLoadAverage(QByteArrayView loadavg) {
    std::array<double, 3> figures{};
    qsizetype at = 0;
    for (double& figure : figures) {
        while (at < loadavg.size() && isBlank(loadavg[at]))
            ++at;
        const qsizetype start = at;
        while (at < loadavg.size() && !isBlank(loadavg[at]))
            ++at;
        const auto value = loadFigure(loadavg.sliced(start, at - start));
        if (!value)
            return std::nullopt;
        figure = *value;
    }
    return LoadAverage{figures[0], figures[1], figures[2]};
}

} // namespace corkwheel
