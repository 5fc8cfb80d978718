// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/FakeMachine.h"
#include "support/RecordingWebPage.h"

#include "engine/RunnerServices.h"
#include "model/Panel.h"

#include <QList>

#include <memory>

namespace corkwheel::test {

// What a test of panel runners starts each test function with: a fresh fake machine, and
// the web pages that runners made on it, so that a test can see what they were asked to
// load. A base of the test class, beside QObject; init() calls resetMachine().
class RunnerFixture {
protected:
    void resetMachine() {
        m_machine = std::make_unique<FakeMachine>();
        m_pages.clear();
    }

    RunnerServices services() {
        return m_machine->services([this](QObject* parent) {
            auto* page = new RecordingWebPage(parent);
            m_pages.append(page);
            return page;
        });
    }

    static Panel panelOf(PanelType type) { return Panel::makeDefault(type); }

    std::unique_ptr<FakeMachine> m_machine;
    QList<RecordingWebPage*> m_pages;
};

} // namespace corkwheel::test
