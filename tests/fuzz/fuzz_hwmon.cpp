// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzInput.h"
#include "engine/Fans.h"
#include "engine/Temperatures.h"
#include "support/FakeSystemSource.h"

using namespace corkwheel;

namespace {

// The value of a sysfs number, worked out here byte by byte: an optional minus sign and
// decimal digits, white space around them, within 64 bits.
std::optional<qint64> sysfsNumber(QByteArrayView text) {
    QByteArrayView digits = fuzz::withoutBlankEnds(text);
    const bool negative = digits.startsWith('-');
    if (negative)
        digits = digits.sliced(1);
    const auto magnitude = fuzz::plainDecimal(digits);
    constexpr quint64 kLimit = quint64(std::numeric_limits<qint64>::max());
    if (!magnitude || *magnitude > kLimit + (negative ? 1 : 0))
        return std::nullopt;
    if (negative)
        return *magnitude == kLimit + 1 ? std::numeric_limits<qint64>::min() : -qint64(*magnitude);
    return qint64(*magnitude);
}

} // namespace

// Any text as every file of a processor's monitoring chip (its temperature and fan inputs,
// their labels and limits) beside a graphics card's that reads 50 °C. The processor has a
// row exactly when the text is a number, at a thousandth of it; the card's row always
// follows. The fan is shown exactly when the text is a number that is not negative and, at
// 0, only with its label, which is then the text without the white space at its ends.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArray text = fuzz::inputText(data, size).toByteArray();
    test::FakeSystemSource source;
    source.setDirectory(QStringLiteral("/sys/class/hwmon/hwmon0"));
    source.setFile(QStringLiteral("/sys/class/hwmon/hwmon0/name"), "k10temp\n");
    for (const char* file :
         {"temp1_input", "temp1_label", "temp1_max", "temp1_crit", "fan1_input", "fan1_label"})
        source.setFile(QStringLiteral("/sys/class/hwmon/hwmon0/") + QLatin1String(file), text);
    source.setDirectory(QStringLiteral("/sys/class/hwmon/hwmon1"));
    source.setFile(QStringLiteral("/sys/class/hwmon/hwmon1/name"), "amdgpu\n");
    source.setFile(QStringLiteral("/sys/class/hwmon/hwmon1/temp1_input"), "50000\n");

    const auto number = sysfsNumber(text);
    const QList<TemperatureReading> temperatures = Temperatures::read(source);
    fuzz::require(temperatures.size() == (number ? 2 : 1));
    fuzz::require(temperatures.last().label == u"GPU" && temperatures.last().celsius == 50);
    if (number) {
        const TemperatureReading& cpu = temperatures.first();
        fuzz::require(cpu.label == u"CPU" && cpu.celsius == double(*number) / 1000);
        fuzz::require(cpu.maxCelsius == cpu.celsius && cpu.criticalCelsius == cpu.celsius);
    }

    const QString label = QString::fromUtf8(fuzz::withoutBlankEnds(text));
    const bool fanShown = number && *number >= 0 && (*number > 0 || !label.isEmpty());
    const QList<FanReading> fans = Fans::read(source);
    fuzz::require(fans.size() == (fanShown ? 1 : 0));
    if (fanShown)
        fuzz::require(fans.first().rpm == double(*number) &&
                      fans.first().label == (label.isEmpty() ? QStringLiteral("Fan 1") : label));
    return 0;
}
