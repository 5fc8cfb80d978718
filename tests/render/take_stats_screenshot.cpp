// SPDX-License-Identifier: GPL-3.0-or-later

// Takes the README's picture of a system-stats panel with every optional row, drawn from the
// laptop of tests/data/machines (not from this machine): two readings a second apart, a
// battery warning past its threshold. Not a test.
//
//   QT_QPA_PLATFORM=offscreen take_stats_screenshot <output PNG>

#include "support/MachineTree.h"
#include "support/ViewTesting.h"

#include "engine/PanelRunner.h"
#include "render/PanelContentView.h"

#include <QApplication>

#include <cstdio>

using namespace corkwheel;
using namespace corkwheel::test;

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    if (argc != 2) {
        std::fputs("usage: take_stats_screenshot <output PNG>\n", stderr);
        return 2;
    }
    FakeMachine machine;
    loadMachineTree(machine.system(), QStringLiteral("intel-laptop"));
    machine.setShares(1);

    Panel panel = Panel::makeDefault(PanelType::SystemStats);
    panel.frame = PanelFrame{0, 0, 300, 470};
    panel.style.backgroundColor = CodableColor{0.11, 0.12, 0.15, 0.92};
    panel.systemStats.rows = StatsRows{true, true, true, true, true, true};
    panel.systemStats.warnings.battery = StatsWarning{true, 60, CodableColor{1, 0.27, 0.23, 1}};
    panel.systemStats.warnings.memory.isOn = true;

    PanelRunner runner(panel, machine.services());
    refreshStatsAndWait(runner, &PanelRunner::start);
    // A second reading, so that the CPU and each core show a share of their own.
    machine.advanceClock(2);
    machine.system().setFile(QStringLiteral("/proc/stat"),
                             "cpu  9300 100 4300 32700 50 0 20 0 0 0\n"
                             "cpu0 2080 10 1030 8090 5 0 2 0 0 0\n"
                             "cpu1 2110 10 1080 8010 5 0 2 0 0 0\n"
                             "cpu2 2040 10 1010 8180 5 0 2 0 0 0\n"
                             "cpu3 2125 10 1060 8025 5 0 2 0 0 0\n");
    refreshStatsAndWait(runner, &PanelRunner::refreshNow);

    PanelContentView view(runner);
    view.resize(int(panel.frame.width), int(panel.frame.height));
    view.setPanel(panel);
    render(view, 2);
    const QImage image = render(view, 2);
    return image.save(QString::fromLocal8Bit(argv[1])) ? 0 : 1;
}
