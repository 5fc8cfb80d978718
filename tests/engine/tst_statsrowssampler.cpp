// SPDX-License-Identifier: GPL-3.0-or-later

// The readings of a system-stats panel's optional rows, as the shared sampler takes them on
// the machines of tests/data/machines.

#include "engine/SystemStatsSampler.h"
#include "support/FakeSystemSource.h"
#include "support/MachineTree.h"
#include "support/MockClock.h"

#include <QSignalSpy>
#include <QTest>

using namespace corkwheel;
using corkwheel::test::FakeSystemSource;
using corkwheel::test::loadMachineTree;
using corkwheel::test::MockClock;

namespace {

// The reading `ask` hands over, once it came; nothing when it never did.
template <typename Reading>
std::optional<Reading>
waitFor(const std::function<void(QObject*, std::function<void(const Reading&)>)>& ask) {
    QObject receiver;
    std::optional<Reading> answer;
    ask(&receiver, [&answer](const Reading& reading) { answer = reading; });
    static_cast<void>(QTest::qWaitFor([&answer] { return answer.has_value(); }, 10000));
    return answer;
}

} // namespace

class StatsRowsSamplerTest : public QObject {
    Q_OBJECT

    MockClock m_clock;

private Q_SLOTS:
    void coresReadZeroFirstThenTheirShares() {
        FakeSystemSource source;
        loadMachineTree(source, QStringLiteral("intel-laptop"));
        SystemStatsSampler sampler(source, m_clock);
        QCOMPARE(sampler.sampleCores(), (QList<double>{0, 0, 0, 0}));
        m_clock.advance(1);
        source.setFile(QStringLiteral("/proc/stat"),
                       "cpu  0 0 0 0\ncpu0 2100 10 1000 8000 5 0 2 0 0 0\n"
                       "cpu1 2010 10 1000 8100 5 0 2 0 0 0\ncpu2 2070 10 1000 8050 5 0 2 0 0 0\n"
                       "cpu3 2030 10 1000 8000 5 0 2 0 0 0\n");
        QCOMPARE(sampler.sampleCores(), (QList<double>{1.0, 0.0, 0.5, 0.0}));
    }

    void coresWithoutProcStatAreNone() {
        FakeSystemSource source;
        SystemStatsSampler sampler(source, m_clock);
        QVERIFY(sampler.sampleCores().isEmpty());
    }

    void swapAndLoadOfTheDesktop() {
        FakeSystemSource source;
        loadMachineTree(source, QStringLiteral("amd-desktop"));
        SystemStatsSampler sampler(source, m_clock);
        const auto swap = sampler.sampleSwap();
        QVERIFY(swap);
        QCOMPARE(swap->usedFraction, (8388604.0 - 6291452.0) / 8388604.0);
        QCOMPARE(sampler.sampleLoad(), std::optional(LoadAverage{1.5, 1.25, 0.75}));
    }

    void swapAndLoadThatCantBeReadAreNone() {
        FakeSystemSource source;
        SystemStatsSampler sampler(source, m_clock);
        QVERIFY(!sampler.sampleSwap());
        QVERIFY(!sampler.sampleLoad());
    }

    void sensorsAndBatteryOfTheLaptop() {
        FakeSystemSource source;
        loadMachineTree(source, QStringLiteral("intel-laptop"));
        SystemStatsSampler sampler(source, m_clock);
        using Temperatures = SystemStatsSampler::Temperatures;
        using Fans = SystemStatsSampler::Fans;
        using Battery = SystemStatsSampler::Battery;
        const auto temperatures = waitFor<Temperatures>(
            [&sampler](QObject* r, auto ready) { sampler.sampleTemperatures(r, ready); });
        QVERIFY(temperatures);
        QCOMPARE(temperatures->size(), 2);
        QCOMPARE(temperatures->at(0).celsius, 71.0);
        const auto fans =
            waitFor<Fans>([&sampler](QObject* r, auto ready) { sampler.sampleFans(r, ready); });
        QVERIFY(fans);
        QCOMPARE(fans->size(), 2);
        const auto battery = waitFor<Battery>(
            [&sampler](QObject* r, auto ready) { sampler.sampleBattery(r, ready); });
        QVERIFY(battery && *battery);
        QCOMPARE((*battery)->state, BatteryReading::State::Discharging);
    }

    void bareMachineHasNoBattery() {
        FakeSystemSource source;
        loadMachineTree(source, QStringLiteral("bare"));
        SystemStatsSampler sampler(source, m_clock);
        using Battery = SystemStatsSampler::Battery;
        const auto battery = waitFor<Battery>(
            [&sampler](QObject* r, auto ready) { sampler.sampleBattery(r, ready); });
        QVERIFY(battery);
        QVERIFY(!*battery);
    }
};

QTEST_GUILESS_MAIN(StatsRowsSamplerTest)
#include "tst_statsrowssampler.moc"
