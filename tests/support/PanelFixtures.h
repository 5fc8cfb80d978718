// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Kept for the tests that take their store from here.
#include "support/StoreFixture.h"

#include "support/MockClock.h"

#include "engine/PanelRunner.h"
#include "engine/RunnerServices.h"
#include "model/Clock.h"
#include "model/Panel.h"
#include "model/PanelType.h"

#include <QSignalSpy>
#include <QTest>

namespace corkwheel {

inline char* toString(const PanelFrame& frame) {
    return QTest::toString(QStringLiteral("PanelFrame(%1, %2, %3 x %4)")
                               .arg(frame.x)
                               .arg(frame.y)
                               .arg(frame.width)
                               .arg(frame.height));
}

} // namespace corkwheel

namespace corkwheel::test {

// One row of a data-driven test per panel type, in a column named "type".
inline void addRowPerPanelType() {
    QTest::addColumn<PanelType>("type");
    for (PanelType type : allPanelTypes())
        QTest::newRow(qPrintable(rawValue(type))) << type;
}

// Text panels read nothing but the clock, so the runners of these tests touch neither the
// machine's statistics nor a shell.
inline RunnerServices clockOnlyServices(const Clock& clock = Clock::system()) {
    RunnerServices services;
    services.clock = &clock;
    return services;
}

// Whether the runner of a text panel refreshes while its refresh interval passes on
// `clock`: a started runner does, one not yet started or stopped does not.
inline bool refreshesOnTime(const PanelRunner& runner, MockClock& clock) {
    QSignalSpy refreshes(&runner, &PanelRunner::textOutputChanged);
    // A second more, for an interval kept in step with the wall clock's seconds.
    clock.runFor(PanelRunner::timerInterval(runner.panel().refreshInterval) + 1);
    return !refreshes.isEmpty();
}

inline Panel namedPanel(PanelType type, const QString& name, bool enabled = true) {
    Panel panel = Panel::makeDefault(type);
    panel.name = name;
    panel.isEnabled = enabled;
    return panel;
}

inline Panel placedPanel(PanelType type, const QString& name, const PanelFrame& frame,
                         bool enabled = true) {
    Panel panel = namedPanel(type, name, enabled);
    panel.frame = frame;
    return panel;
}

// A text panel that shows its own name.
inline Panel textPanel(const QString& name, const PanelFrame& frame, bool enabled = true) {
    Panel panel = placedPanel(PanelType::Text, name, frame, enabled);
    panel.textTemplate = name;
    return panel;
}

} // namespace corkwheel::test
