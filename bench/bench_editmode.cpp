// SPDX-License-Identifier: GPL-3.0-or-later

// What a ticking clock panel costs on the CPU in edit mode, next to the same panel pinned:
// edit mode adds the outline, the resize handle and the frosted title bar, which is made
// again whenever the clock's new text is drawn under it. A clock that moves a second at
// every tick drives the panel; each tick is drawn before the next one. Two panels: the
// starter clock, whose seconds change below the bar, and a wide flat one whose seconds change
// right under it, so the bar is frosted again at every tick.
//
//   QT_QPA_PLATFORM=offscreen build/bench/bench_editmode
//   scripts/in-virtual-desktop.sh openbox env QT_QPA_PLATFORM=xcb build/bench/bench_editmode

#include "desktop/DesktopPanelController.h"
#include "engine/PanelRunner.h"
#include "model/Clock.h"
#include "platform/DesktopPlatform.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTimeZone>

#include <cstdio>
#include <ctime>
#include <memory>

using namespace corkwheel;

namespace {

constexpr int kTicks = 300;
constexpr int kRounds = 3;

// A clock that moves only when the bench moves it.
class TickingClock final : public Clock {
public:
    QDateTime now() const override { return m_now; }
    double monotonicSeconds() const override { return m_seconds; }
    void tick() {
        m_now = m_now.addSecs(1);
        m_seconds += 1;
    }

private:
    QDateTime m_now = QDateTime(QDate(2026, 11, 22), QTime(4, 0), QTimeZone::utc());
    double m_seconds = 1000;
};

double cpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) / 1e9;
}

// Lets every paint and queued call of the tick run.
void drain() {
    for (int i = 0; i < 3; ++i)
        QApplication::processEvents();
}

// As the starter clock panel is, at another size.
Panel clockPanel(double width, double height) {
    Panel panel = Panel::makeDefault(PanelType::Clock);
    panel.name = QStringLiteral("Clock");
    panel.style.fontSize = 28;
    panel.frame = {100, 100, width, height};
    return panel;
}

// CPU time of one tick, in microseconds, over kTicks ticks.
double microsPerTick(DesktopPanelController& controller, TickingClock& clock) {
    const double start = cpuSeconds();
    for (int i = 0; i < kTicks; ++i) {
        clock.tick();
        controller.runner().refreshNow();
        drain();
    }
    return (cpuSeconds() - start) * 1e6 / kTicks;
}

} // namespace

void compare(const char* label, const Panel& panel, DesktopPlatform& platform) {
    TickingClock clock;
    RunnerServices services;
    services.clock = &clock;
    DesktopPanelController controller(panel, nullptr, platform, services);
    controller.runner().stop();

    double pinned = 0;
    double editing = 0;
    for (int round = 0; round < kRounds; ++round) {
        controller.apply(panel, false, false);
        drain();
        pinned += microsPerTick(controller, clock);
        controller.apply(panel, true, false);
        drain();
        editing += microsPerTick(controller, clock);
    }
    pinned /= kRounds;
    editing /= kRounds;
    std::printf("%s: pinned %8.1f us, edit mode %8.1f us CPU per tick (%.2f x pinned)\n", label,
                pinned, editing, editing / pinned);
    controller.apply(panel, false, true);
}

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    auto platform = DesktopPlatform::create();
    std::printf("%d ticks x %d rounds, platform %s\n", kTicks, kRounds,
                qPrintable(QGuiApplication::platformName()));
    compare("clock 360 x 80, text below the bar", clockPanel(360, 80), *platform);
    compare("clock 700 x 50, text under the bar", clockPanel(700, 50), *platform);
    return 0;
}
