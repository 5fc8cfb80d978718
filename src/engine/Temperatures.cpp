// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/Temperatures.h"

#include "engine/HwmonChips.h"
#include "engine/SysfsValue.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace corkwheel::Temperatures {

namespace {

enum class Kind { Cpu, Gpu, Disk, Other };

Kind kindOf(const QString& driver) {
    if (driver == u"coretemp" || driver == u"k10temp" || driver == u"zenpower")
        return Kind::Cpu;
    if (driver == u"amdgpu" || driver == u"nouveau" || driver == u"i915")
        return Kind::Gpu;
    if (driver == u"nvme")
        return Kind::Disk;
    return Kind::Other;
}

// The labels that name the whole package or die, best first, by driver: coretemp's package
// sensor, k10temp's and zenpower's die temperature (Tctl carries an offset on some models,
// so Tdie goes first where both exist), amdgpu's edge sensor (the junction one is the
// hottest spot, not the GPU), the NVMe controller's composite figure.
QStringList preferredLabels(const QString& driver) {
    if (driver == u"coretemp")
        return {QStringLiteral("Package id 0")};
    if (driver == u"k10temp" || driver == u"zenpower")
        return {QStringLiteral("Tdie"), QStringLiteral("Tctl")};
    if (driver == u"amdgpu")
        return {QStringLiteral("edge")};
    if (driver == u"nvme")
        return {QStringLiteral("Composite")};
    return {};
}

double celsius(qint64 millidegrees) {
    return double(millidegrees) / 1000.0;
}

std::optional<double> celsius(const std::optional<qint64>& millidegrees) {
    return millidegrees ? std::optional(celsius(*millidegrees)) : std::nullopt;
}

// The chip's one figure: the first input with a preferred label; a coretemp chip with no
// package sensor (older processors) shows its hottest core; any other its first input.
const HwmonChannel* chosenChannel(const HwmonChip& chip) {
    QList<const HwmonChannel*> readable;
    for (const HwmonChannel& channel : chip.temperatures) {
        if (channel.input)
            readable.append(&channel);
    }
    if (readable.isEmpty())
        return nullptr;
    for (const QString& label : preferredLabels(chip.name)) {
        for (const HwmonChannel* channel : std::as_const(readable)) {
            if (channel->label == label ||
                (chip.name == u"coretemp" && channel->label.startsWith(u"Package id")))
                return channel;
        }
    }
    if (chip.name == u"coretemp")
        return *std::max_element(
            readable.cbegin(), readable.cend(),
            [](const HwmonChannel* a, const HwmonChannel* b) { return *a->input < *b->input; });
    return readable.first();
}

TemperatureReading readingOf(const QString& label, const HwmonChannel& channel) {
    return TemperatureReading{label, celsius(*channel.input), celsius(channel.max),
                              celsius(channel.critical)};
}

// "GPU" for one, "GPU 1" and "GPU 2" for two.
void appendNumbered(QList<TemperatureReading>& out, QList<TemperatureReading> kind) {
    for (qsizetype i = 0; i < kind.size(); ++i) {
        if (kind.size() > 1)
            kind[i].label += u' ' + QString::number(i + 1);
        out.append(kind[i]);
    }
}

bool measuresProcessor(const QString& zoneType) {
    return zoneType == u"x86_pkg_temp" || zoneType == u"cpu-thermal" ||
           zoneType == u"cpu_thermal" || zoneType == u"soc_thermal" || zoneType == u"k10temp";
}

std::optional<qint64> readInteger(const KernelFiles& files, const QString& path) {
    const auto text = files.readFile(path);
    return text ? parseSysfsInteger(*text) : std::nullopt;
}

// The temperatures of a zone's trip points of `tripType`, the lowest of them.
std::optional<double> tripPoint(const KernelFiles& files, const QString& zone,
                                const QStringList& fileNames, QStringView tripType) {
    std::optional<double> lowest;
    for (const QString& name : fileNames) {
        if (!name.startsWith(u"trip_point_") || !name.endsWith(u"_type"))
            continue;
        const auto type = files.readFile(zone + u'/' + name);
        if (!type || parseSysfsText(*type) != tripType)
            continue;
        // trip_point_N_type beside trip_point_N_temp.
        const QString tempFile = name.chopped(4) + QStringLiteral("temp");
        const auto millidegrees = readInteger(files, zone + u'/' + tempFile);
        if (millidegrees && (!lowest || celsius(*millidegrees) < *lowest))
            lowest = celsius(*millidegrees);
    }
    return lowest;
}

} // namespace

QList<TemperatureReading> fromChips(const QList<HwmonChip>& chips) {
    std::optional<TemperatureReading> cpu;
    QList<TemperatureReading> gpus;
    QList<TemperatureReading> disks;
    for (const HwmonChip& chip : chips) {
        const Kind kind = kindOf(chip.name);
        const HwmonChannel* channel = kind == Kind::Other ? nullptr : chosenChannel(chip);
        if (channel == nullptr)
            continue;
        switch (kind) {
        case Kind::Cpu:
            // One row for the processor: with several sockets, the hottest.
            if (!cpu || celsius(*channel->input) > cpu->celsius)
                cpu = readingOf(QCoreApplication::translate("corkwheel::Temperatures", "CPU"),
                                *channel);
            break;
        case Kind::Gpu:
            gpus.append(
                readingOf(QCoreApplication::translate("corkwheel::Temperatures", "GPU"), *channel));
            break;
        case Kind::Disk:
            disks.append(readingOf(QCoreApplication::translate("corkwheel::Temperatures", "NVMe"),
                                   *channel));
            break;
        case Kind::Other:
            break;
        }
    }
    QList<TemperatureReading> readings;
    if (cpu)
        readings.append(*cpu);
    appendNumbered(readings, gpus);
    appendNumbered(readings, disks);
    return readings;
}

QList<TemperatureReading> readThermalZones(const KernelFiles& files) {
    const QString thermal = QStringLiteral("/sys/class/thermal");
    QList<std::pair<int, QString>> zones;
    for (const QString& entry : files.entryNames(thermal)) {
        bool ok = false;
        const int number =
            entry.startsWith(u"thermal_zone") ? QStringView(entry).sliced(12).toInt(&ok) : -1;
        if (ok && number >= 0)
            zones.append({number, entry});
    }
    std::sort(zones.begin(), zones.end());
    std::optional<TemperatureReading> cpu;
    QList<TemperatureReading> others;
    for (const auto& [number, entry] : std::as_const(zones)) {
        const QString zone = thermal + u'/' + entry;
        const auto type = files.readFile(zone + QStringLiteral("/type"));
        const auto millidegrees = readInteger(files, zone + QStringLiteral("/temp"));
        if (!type || !millidegrees)
            continue;
        const QStringList fileNames = files.entryNames(zone);
        const QString zoneType = parseSysfsText(*type);
        TemperatureReading reading{zoneType, celsius(*millidegrees),
                                   tripPoint(files, zone, fileNames, u"hot"),
                                   tripPoint(files, zone, fileNames, u"critical")};
        if (measuresProcessor(zoneType)) {
            reading.label = QCoreApplication::translate("corkwheel::Temperatures", "CPU");
            if (!cpu || reading.celsius > cpu->celsius)
                cpu = reading;
        } else {
            others.append(reading);
        }
    }
    if (cpu)
        others.prepend(*cpu);
    return others;
}

QList<TemperatureReading> read(const KernelFiles& files) {
    const QList<TemperatureReading> fromHardware =
        fromChips(readHwmonChips(files, HwmonParts{true, false}));
    return fromHardware.isEmpty() ? readThermalZones(files) : fromHardware;
}

} // namespace corkwheel::Temperatures
