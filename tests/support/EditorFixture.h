// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// The whole editor window on the offscreen platform, active and over a store of its own, as
// the keyboard and screen reader tests drive it; and the keys a user presses in it.

#include "support/FakeMachine.h"
#include "support/StoreFixture.h"

#include "editor/EditorView.h"
#include "editor/EditorWindow.h"
#include "editor/InspectorView.h"
#include "settings/AppSettings.h"

#include <QApplication>
#include <QTest>

#include <memory>

namespace corkwheel::test {

// A panel of `type` whose source names nothing, so its preview touches neither a shell, a
// file nor the network.
inline Panel silentPanel(PanelType type, const QString& name) {
    Panel panel = Panel::makeDefault(type);
    panel.name = name;
    panel.shellCommand.clear();
    panel.filePath.clear();
    panel.imageSource.clear();
    panel.webpageURL.clear();
    return panel;
}

// One panel of `type`, with every warning of a statistics panel on, so that its threshold
// steppers and colour wells take the keyboard too.
inline Panel panelWithEveryControl(PanelType type) {
    Panel panel = silentPanel(type, QStringLiteral("First"));
    for (StatsWarning StatsWarnings::*warning :
         {&StatsWarnings::cpu, &StatsWarnings::memory, &StatsWarnings::disks, &StatsWarnings::swap,
          &StatsWarnings::temperatures, &StatsWarnings::battery})
        (panel.systemStats.warnings.*warning).isOn = true;
    return panel;
}

// Every control of `window` that the keyboard can reach now: shown, enabled and a stop of
// Tab.
inline QList<QWidget*> reachableControls(QWidget& window) {
    QList<QWidget*> controls;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        if ((widget->focusPolicy() & Qt::TabFocus) && widget->isVisible() && widget->isEnabled() &&
            widget->window() == &window)
            controls << widget;
    }
    return controls;
}

// Where the keyboard's keys go: the focused widget of the open popup or, without one, of
// the active window.
inline QWidget* keyboardTarget() {
    if (QWidget* popup = QApplication::activePopupWidget())
        return popup->focusWidget() ? popup->focusWidget() : popup;
    if (QWidget* focused = QApplication::focusWidget())
        return focused;
    return QApplication::activeWindow();
}

inline void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(keyboardTarget(), key, modifiers);
}

// The preferences it writes go to the test's own folder only when the test has called
// PrivateConfigHome::use() first.
class EditorFixture {
public:
    // The editor on a document holding `panels`, shown, active and showing the first panel
    // (or the placard, for none). False when it did not come that far.
    bool open(const QList<Panel>& panels) {
        close();
        m_store = std::make_unique<StoreFixture>(panels);
        m_settings = std::make_unique<AppSettings>();
        m_window =
            std::make_unique<EditorWindow>(*m_store->store, *m_settings, m_machine.services());
        m_window->show();
        m_window->activateWindow();
        if (!QTest::qWaitForWindowActive(m_window.get()))
            return false;
        return QTest::qWaitFor(
            [&] { return panels.isEmpty() || m_window->view().inspector() != nullptr; });
    }

    void close() {
        m_window.reset();
        m_settings.reset();
        m_store.reset();
    }

    EditorWindow& window() const { return *m_window; }
    EditorView& view() const { return m_window->view(); }
    PanelStore& store() const { return *m_store->store; }
    AppSettings& settings() const { return *m_settings; }
    QList<Panel> savedPanels() const { return m_store->savedPanels(); }

    template <typename T> T* control(const char* name) const {
        return m_window->findChild<T*>(QLatin1String(name));
    }

private:
    FakeMachine m_machine;
    std::unique_ptr<StoreFixture> m_store;
    std::unique_ptr<AppSettings> m_settings;
    std::unique_ptr<EditorWindow> m_window;
};

} // namespace corkwheel::test
