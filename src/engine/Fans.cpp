// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/Fans.h"

#include "engine/HwmonChips.h"

#include <QCoreApplication>

namespace corkwheel::Fans {

namespace {

bool isGraphicsDriver(const QString& driver) {
    return driver == u"amdgpu" || driver == u"nouveau" || driver == u"i915" || driver == u"radeon";
}

} // namespace

QList<FanReading> fromChips(const QList<HwmonChip>& chips) {
    QList<FanReading> fans;
    int unnamed = 0;
    for (const HwmonChip& chip : chips) {
        for (const HwmonChannel& channel : chip.fans) {
            // A negative speed is a driver's error code that came through as a number.
            if (!channel.input || *channel.input < 0 ||
                (*channel.input == 0 && channel.label.isEmpty()))
                continue;
            QString label = channel.label;
            if (label.isEmpty() && isGraphicsDriver(chip.name))
                label = QCoreApplication::translate("corkwheel::Fans", "GPU Fan");
            else if (label.isEmpty())
                label = QCoreApplication::translate("corkwheel::Fans", "Fan %1").arg(++unnamed);
            const auto max = channel.max && *channel.max > 0 ? std::optional(double(*channel.max))
                                                             : std::nullopt;
            fans.append(FanReading{label, double(*channel.input), max});
        }
    }
    return fans;
}

QList<FanReading> read(const KernelFiles& files) {
    return fromChips(readHwmonChips(files, HwmonParts{false, true}));
}

} // namespace corkwheel::Fans
