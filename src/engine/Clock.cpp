// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/Clock.h"

#include <chrono>

namespace corkwheel {

namespace {

class SystemClock final : public Clock {
public:
    QDateTime now() const override { return QDateTime::currentDateTime(); }
    // Without the local time zone, which Qt looks up on the disk at every conversion.
    qint64 nowMSecsSinceEpoch() const override { return QDateTime::currentMSecsSinceEpoch(); }
    double monotonicSeconds() const override {
        using namespace std::chrono;
        return duration<double>(steady_clock::now().time_since_epoch()).count();
    }
};

} // namespace

const Clock& Clock::system() {
    static const SystemClock clock;
    return clock;
}

} // namespace corkwheel
