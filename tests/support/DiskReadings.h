// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/DiskSampler.h"
#include "engine/SystemStatsSampler.h"

#include <QTest>

#include <optional>

namespace corkwheel::test {

// What `request(receiver, ready)` hands over, waited for in the event loop; nothing when it
// did not come within `timeoutMs`.
template <typename Request>
std::optional<QList<DiskInfo>> waitForDisks(Request request, int timeoutMs) {
    std::optional<QList<DiskInfo>> disks;
    QObject receiver;
    request(&receiver, [&disks](const QList<DiskInfo>& ready) { disks = ready; });
    static_cast<void>(QTest::qWaitFor([&] { return disks.has_value(); }, timeoutMs));
    return disks;
}

inline std::optional<QList<DiskInfo>> disksFrom(DiskSampler& sampler, int timeoutMs = 5000) {
    return waitForDisks(
        [&](QObject* receiver, DiskSampler::Ready ready) { sampler.sample(receiver, ready); },
        timeoutMs);
}

// The disks the sampler hands over for one request; never an empty list when nothing came,
// so that no comparison passes by silence.
inline QList<DiskInfo> disksOf(SystemStatsSampler& sampler) {
    const auto disks = waitForDisks(
        [&](QObject* receiver, DiskSampler::Ready ready) { sampler.sampleDisks(receiver, ready); },
        5000);
    DiskInfo noAnswer;
    noAnswer.id = QStringLiteral("(no answer)");
    return disks.value_or(QList<DiskInfo>{noAnswer});
}

} // namespace corkwheel::test
