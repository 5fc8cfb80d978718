// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "support/StoreFixture.h"

#include "desktop/DesktopWindowsManager.h"
#include "engine/RunnerServices.h"
#include "platform/DesktopPlatform.h"

#include <memory>

namespace corkwheel::test {

// The store and the windows manager in this process, as the application has them, for the
// end-to-end tests that drive the desktop's windows directly.
class InProcessDesktop {
protected:
    void startInProcess(const QList<Panel>& panels) {
        m_fixture = std::make_unique<StoreFixture>(panels);
        if (!m_platform)
            m_platform = DesktopPlatform::create();
        m_manager = std::make_unique<DesktopWindowsManager>(*m_fixture->store, *m_platform,
                                                            RunnerServices::shared());
    }

    PanelStore& store() { return *m_fixture->store; }

    // Where the document on the disk has `panel`; a frame of nothing when it has none.
    PanelFrame savedFrame(const Panel& panel) const {
        for (const Panel& saved : m_fixture->savedPanels()) {
            if (saved.id == panel.id)
                return saved.frame;
        }
        return {};
    }

    std::unique_ptr<StoreFixture> m_fixture;
    std::unique_ptr<DesktopPlatform> m_platform;
    std::unique_ptr<DesktopWindowsManager> m_manager;
};

} // namespace corkwheel::test
