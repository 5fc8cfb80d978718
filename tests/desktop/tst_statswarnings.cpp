// SPDX-License-Identifier: GPL-3.0-or-later

// A system-stats panel on the desktop whose figures cross their warnings' thresholds, on the
// laptop of tests/data/machines: the rows' bars and figures are drawn in the warning's
// colour, and only then.

#include "support/MachineTree.h"
#include "support/ViewTesting.h"

#include "desktop/DesktopPanelHostView.h"
#include "engine/PanelRunner.h"
#include "render/PanelContentView.h"
#include "render/StatsLayout.h"

#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

const QSize kSize(280, 520);
// A colour nothing else of the panel is drawn in.
const QColor kMagenta(255, 0, 255);

Panel statsPanel(const SystemStatsOptions& options) {
    Panel panel = Panel::makeDefault(PanelType::SystemStats);
    panel.frame = PanelFrame{0, 0, double(kSize.width()), double(kSize.height())};
    panel.style.showShadow = false;
    panel.style.textColor = CodableColor{1, 1, 1, 1};
    panel.style.backgroundColor = CodableColor{0, 0, 0, 1};
    panel.systemStats = options;
    return panel;
}

StatsWarning magentaAt(double threshold) {
    return StatsWarning{true, threshold, CodableColor{1, 0, 1, 1}};
}

bool isMagenta(QColor color) {
    return std::abs(color.red() - 255) < 40 && color.green() < 60 &&
           std::abs(color.blue() - 255) < 40;
}

} // namespace

class StatsWarningsTest : public QObject {
    Q_OBJECT

    std::unique_ptr<FakeMachine> m_machine;
    std::unique_ptr<PanelRunner> m_runner;
    std::unique_ptr<DesktopPanelHostView> m_host;

    DesktopPanelHostView& host(const Panel& panel) {
        m_runner = std::make_unique<PanelRunner>(panel, m_machine->services());
        refreshStatsAndWait(*m_runner, &PanelRunner::start);
        m_host = std::make_unique<DesktopPanelHostView>(*m_runner);
        m_host->resize(kSize);
        m_host->setPanel(panel, false);
        return *m_host;
    }

    // The warning-coloured pixels inside the row labelled `label`, as the panel is drawn.
    int magentaIn(const QString& label) {
        const QImage image = render(*m_host, 1);
        for (const StatsLayout::Row& row : m_host->contentView()->statsLayout().rows) {
            if (row.row.label == label)
                return countPixels(image, row.rect, isMagenta);
        }
        return -1;
    }

    int magentaAnywhere() {
        return countPixels(render(*m_host, 1), QRectF(QPointF(), QSizeF(kSize)), isMagenta);
    }

private Q_SLOTS:
    void init() {
        m_machine = std::make_unique<FakeMachine>();
        loadMachineTree(m_machine->system(), QStringLiteral("intel-laptop"));
    }

    void cleanup() {
        m_host.reset();
        m_runner.reset();
    }

    void lowBatteryTakesTheWarningColour() {
        SystemStatsOptions options;
        options.rows.battery = true;
        // The laptop's batteries hold 57 %: under 60 % they warn, and not under 15 %.
        options.warnings.battery = magentaAt(15);
        host(statsPanel(options));
        QTRY_VERIFY(magentaIn(QStringLiteral("Battery")) == 0);
        QTRY_COMPARE(magentaAnywhere(), 0);

        options.warnings.battery = magentaAt(60);
        m_host->setPanel(statsPanel(options), false);
        QTRY_VERIFY(magentaIn(QStringLiteral("Battery")) > 20);
    }

    void hotProcessorTakesTheWarningColour() {
        SystemStatsOptions options;
        options.rows.temperatures = true;
        options.warnings.temperatures = magentaAt(85);
        host(statsPanel(options));
        // 71 °C, under the package sensor's maximum of 100 °C.
        QTRY_VERIFY(magentaIn(QStringLiteral("CPU")) == 0);
        QCOMPARE(magentaAnywhere(), 0);

        m_machine->system().setFile(QStringLiteral("/sys/class/hwmon/hwmon3/temp1_input"),
                                    "101000\n");
        m_machine->advanceClock(2);
        m_runner->refreshNow();
        // The temperature row is the third; the first "CPU" row is the processor's load.
        QTRY_VERIFY(countPixels(render(*m_host, 1),
                                m_host->contentView()->statsLayout().rows.value(2).rect,
                                isMagenta) > 20);
    }

    void busyCpuTakesTheWarningColour() {
        SystemStatsOptions options;
        options.warnings.cpu = magentaAt(90);
        m_machine->setNextCpuUsage(500);
        host(statsPanel(options));
        QTRY_COMPARE(magentaAnywhere(), 0);

        m_machine->setNextCpuUsage(950);
        m_runner->refreshNow();
        QTRY_VERIFY(magentaIn(QStringLiteral("CPU")) > 20);
        // Only the CPU row warns.
        QCOMPARE(magentaIn(QStringLiteral("Memory")), 0);
    }

    void panelWithoutWarningsDrawsNone() {
        SystemStatsOptions options;
        options.rows = StatsRows{true, true, true, true, true, true};
        options.warnings.battery.color = CodableColor{1, 0, 1, 1};
        options.warnings.cpu.color = CodableColor{1, 0, 1, 1};
        m_machine->setNextCpuUsage(999);
        host(statsPanel(options));
        QTRY_VERIFY(m_host->contentView()->statsLayout().rows.size() > 8);
        QCOMPARE(magentaAnywhere(), 0);
    }
};

QTEST_MAIN(StatsWarningsTest)
#include "tst_statswarnings.moc"
