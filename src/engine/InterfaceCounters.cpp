// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/InterfaceCounters.h"

#include <algorithm>

namespace corkwheel {

namespace {

std::optional<quint64> readCounter(const KernelFiles& files, const QString& interfaceName,
                                   QStringView counter) {
    const QString path =
        QStringLiteral("/sys/class/net/%1/statistics/%2").arg(interfaceName, counter);
    const auto text = files.readFile(path);
    return text ? parseByteCounter(*text) : std::nullopt;
}

} // namespace

std::optional<InterfaceCounters> readInterfaceCounters(const KernelFiles& files,
                                                       const QString& interfaceName) {
    const auto rx = readCounter(files, interfaceName, u"rx_bytes");
    const auto tx = readCounter(files, interfaceName, u"tx_bytes");
    if (!rx || !tx)
        return std::nullopt;
    return InterfaceCounters{*rx, *tx};
}

std::optional<quint64> parseByteCounter(QByteArrayView text) {
    // Digits only: the number conversion alone would also take a "+" and stop at a NUL,
    // reading a broken file as a counter.
    const QByteArrayView digits = text.trimmed();
    const bool onlyDigits =
        !digits.isEmpty() &&
        std::all_of(digits.cbegin(), digits.cend(), [](char c) { return c >= '0' && c <= '9'; });
    bool ok = false;
    const quint64 value = onlyDigits ? digits.toULongLong(&ok) : 0;
    if (!ok)
        return std::nullopt;
    return value;
}

} // namespace corkwheel
