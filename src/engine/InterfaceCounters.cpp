// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/InterfaceCounters.h"

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
    bool ok = false;
    const quint64 value = text.toByteArray().trimmed().toULongLong(&ok);
    if (!ok)
        return std::nullopt;
    return value;
}

} // namespace corkwheel
