#include "engine/MemoryReading.h"

#include <QByteArrayList>

#include <algorithm>
#include <optional>

namespace corkwheel {

namespace {

constexpr double kBytesPerGB = 1024.0 * 1024.0 * 1024.0;

// The value of a "Key:   1234 kB" line, in bytes.
std::optional<double> meminfoBytes(QByteArrayView meminfo, QByteArrayView key) {
    for (const QByteArray& line : meminfo.toByteArray().split('\n')) {
        const qsizetype colon = line.indexOf(':');
        if (colon < 0 || QByteArrayView(line).first(colon) != key)
            continue;
        const QByteArrayList parts = line.mid(colon + 1).simplified().split(' ');
        bool ok = false;
        const quint64 kilobytes = parts.first().toULongLong(&ok);
        if (!ok)
            return std::nullopt;
        return double(kilobytes) * 1024.0;
    }
    return std::nullopt;
}

} // namespace

MemoryReading memoryReadingFromMeminfo(QByteArrayView meminfo) {
    const auto total = meminfoBytes(meminfo, "MemTotal");
    if (!total)
        return {};
    const auto available = meminfoBytes(meminfo, "MemAvailable");
    if (!available)
        return MemoryReading{0, 0, *total / kBytesPerGB};
    return memoryReadingFromBytes(std::max(*total - *available, 0.0), *total);
}

MemoryReading memoryReadingFromBytes(double usedBytes, double physicalBytes) {
    const double fraction = physicalBytes > 0 ? std::min(usedBytes / physicalBytes, 1.0) : 0.0;
    return MemoryReading{fraction, usedBytes / kBytesPerGB, physicalBytes / kBytesPerGB};
}

} // namespace corkwheel
