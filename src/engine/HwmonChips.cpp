// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/HwmonChips.h"

#include "engine/SysfsValue.h"

#include <algorithm>

namespace corkwheel {

namespace {

const QString kHwmon = QStringLiteral("/sys/class/hwmon");

// The number after `prefix` in a name such as "hwmon12" or "temp3_input"'s "3"; -1 when
// the text there is not plain digits.
int numberAfter(QStringView name, QStringView prefix, QStringView suffix) {
    if (!name.startsWith(prefix) || !name.endsWith(suffix) ||
        name.size() <= prefix.size() + suffix.size())
        return -1;
    const QStringView digits =
        name.sliced(prefix.size(), name.size() - prefix.size() - suffix.size());
    if (digits.size() > 6 || !std::all_of(digits.begin(), digits.end(),
                                          [](QChar c) { return c.isDigit() && c.unicode() < 128; }))
        return -1;
    return digits.toInt();
}

// A label, maximum or critical file that the chip does not list is not asked for: most
// inputs lack some, and each read of a missing file is a failed open.
std::optional<QByteArray> readListed(const KernelFiles& files, const QString& chip,
                                     const QStringList& fileNames, const QString& fileName) {
    if (!fileNames.contains(fileName))
        return std::nullopt;
    return files.readFile(chip + u'/' + fileName);
}

std::optional<qint64> readListedInteger(const KernelFiles& files, const QString& chip,
                                        const QStringList& fileNames, const QString& fileName) {
    const auto text = readListed(files, chip, fileNames, fileName);
    return text ? parseSysfsInteger(*text) : std::nullopt;
}

QList<HwmonChannel> readChannels(const KernelFiles& files, const QString& chip,
                                 const QStringList& fileNames, const QString& prefix) {
    QList<HwmonChannel> channels;
    for (const int number : hwmonInputNumbers(fileNames, prefix)) {
        const QString stem = prefix + QString::number(number);
        HwmonChannel channel;
        channel.index = number;
        channel.input = readListedInteger(files, chip, fileNames, stem + QStringLiteral("_input"));
        if (const auto label = readListed(files, chip, fileNames, stem + QStringLiteral("_label")))
            channel.label = parseSysfsText(*label);
        channel.max = readListedInteger(files, chip, fileNames, stem + QStringLiteral("_max"));
        channel.critical =
            readListedInteger(files, chip, fileNames, stem + QStringLiteral("_crit"));
        channels.append(channel);
    }
    return channels;
}

// Older drivers keep their name beside the device's other attributes instead.
QString chipName(const KernelFiles& files, const QString& chip, const QStringList& fileNames) {
    const QString path = fileNames.contains(QStringLiteral("name"))
                             ? chip + QStringLiteral("/name")
                             : chip + QStringLiteral("/device/name");
    const auto text = files.readFile(path);
    return text ? parseSysfsText(*text) : QString();
}

} // namespace

QList<int> hwmonInputNumbers(const QStringList& fileNames, QStringView prefix) {
    QList<int> numbers;
    for (const QString& name : fileNames) {
        const int number = numberAfter(name, prefix, u"_input");
        if (number >= 0)
            numbers.append(number);
    }
    std::sort(numbers.begin(), numbers.end());
    return numbers;
}

QList<HwmonChip> readHwmonChips(const KernelFiles& files, HwmonParts parts) {
    QList<std::pair<int, QString>> numbered;
    for (const QString& entry : files.entryNames(kHwmon)) {
        const int number = numberAfter(entry, u"hwmon", u"");
        if (number >= 0)
            numbered.append({number, entry});
    }
    std::sort(numbered.begin(), numbered.end());
    QList<HwmonChip> chips;
    for (const auto& [number, entry] : std::as_const(numbered)) {
        const QString chip = kHwmon + u'/' + entry;
        const QStringList fileNames = files.entryNames(chip);
        HwmonChip read;
        read.name = chipName(files, chip, fileNames);
        if (parts.temperatures)
            read.temperatures = readChannels(files, chip, fileNames, QStringLiteral("temp"));
        if (parts.fans)
            read.fans = readChannels(files, chip, fileNames, QStringLiteral("fan"));
        chips.append(read);
    }
    return chips;
}

} // namespace corkwheel
