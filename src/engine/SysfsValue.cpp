// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/SysfsValue.h"

#include <limits>

namespace corkwheel {

std::optional<qint64> parseSysfsInteger(QByteArrayView text) {
    QByteArrayView digits = text.trimmed();
    const bool negative = digits.startsWith('-');
    if (negative)
        digits = digits.sliced(1);
    if (digits.isEmpty())
        return std::nullopt;
    // Counted up as a negative number, whose range reaches one further than the positive.
    constexpr qint64 kLowest = std::numeric_limits<qint64>::min();
    qint64 value = 0;
    for (const char c : digits) {
        if (c < '0' || c > '9')
            return std::nullopt;
        const qint64 digit = c - '0';
        if (value < (kLowest + digit) / 10)
            return std::nullopt;
        value = value * 10 - digit;
    }
    if (negative)
        return value;
    if (value == kLowest)
        return std::nullopt;
    return -value;
}

QString parseSysfsText(QByteArrayView text) {
    return QString::fromUtf8(text.trimmed());
}

} // namespace corkwheel
