// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Shared by the inspector tests: an inspector over a store of its own, and ways to reach the
// controls of its form as a user sees them.

#include "support/PanelFixtures.h"
#include "support/ViewTesting.h"

#include "editor/InspectorView.h"

#include <QFormLayout>
#include <QLabel>
#include <QPalette>
#include <QToolButton>

#include <memory>

namespace corkwheel::test {

inline const PanelFrame kInspectorFrame{40, 40, 360, 80};

// A panel of `type` whose source names nothing, so its runner touches neither a shell nor
// a file nor the network.
inline Panel quietPanel(PanelType type) {
    Panel panel = Panel::makeDefault(type);
    panel.shellCommand.clear();
    panel.filePath.clear();
    panel.imageSource.clear();
    panel.webpageURL.clear();
    return panel;
}

// The text of the row label that a form gives `field`; the form may be the layout of the
// field's parent or one inside it.
inline QString rowLabel(QWidget* field) {
    QLayout* layout = field->parentWidget()->layout();
    if (!layout)
        return {};
    QList<QFormLayout*> forms = layout->findChildren<QFormLayout*>();
    if (auto* form = qobject_cast<QFormLayout*>(layout))
        forms.prepend(form);
    for (QFormLayout* form : forms) {
        if (auto* label = qobject_cast<QLabel*>(form->labelForField(field)))
            return label->text();
    }
    return {};
}

inline QToolButton* button(QWidget* stepper, const char* name) {
    return stepper->findChild<QToolButton*>(QLatin1String(name));
}

inline bool isDimmed(const QWidget& widget) {
    return widget.palette().color(QPalette::WindowText).alpha() < 255;
}

// The inspector under test, its store and the made-up machine its preview's runner reads.
// A test class derives from it and calls `close()` from its `cleanup()`.
class InspectorFixture {
protected:
    FakeMachine m_machine;
    std::unique_ptr<StoreFixture> m_fixture;
    std::unique_ptr<InspectorView> m_inspector;

    PanelStore& store() { return *m_fixture->store; }

    Panel stored(const QUuid& id) {
        for (const Panel& panel : store().panels()) {
            if (panel.id == id)
                return panel;
        }
        return {};
    }

    // An inspector for the first of `panels`, not yet shown: its runner has not started.
    InspectorView& make(const QList<Panel>& panels) {
        m_inspector.reset();
        m_fixture = std::make_unique<StoreFixture>(panels);
        return makeFor(panels.first().id);
    }

    InspectorView& makeFor(const QUuid& id) {
        m_inspector = std::make_unique<InspectorView>(store(), id, m_machine.services());
        m_inspector->resize(640, 1200);
        return *m_inspector;
    }

    // An inspector for the first of `panels`, on screen.
    InspectorView& open(const QList<Panel>& panels) {
        InspectorView& inspector = make(panels);
        inspector.show();
        return inspector;
    }

    template <typename T> T* control(const char* name) {
        return m_inspector->findChild<T*>(QLatin1String(name));
    }

    // The inspector goes before the store it reads.
    void close() {
        m_inspector.reset();
        m_fixture.reset();
    }
};

} // namespace corkwheel::test
