// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// The real binary's editor on an X display, as the end-to-end tests find and drive it.
// Where a control sits inside that editor is read off an identical editor laid out, never
// shown, in the test's own process: the same code, fonts and size.

#include "support/PanelFixtures.h"
#include "support/StoreFixture.h"
#include "support/XDisplayTools.h"

#include "editor/EditorView.h"
#include "editor/EditorWindow.h"
#include "settings/AppSettings.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTest>

#include <functional>

namespace corkwheel::test {

// The editor window of the binary: the window titled "Corkwheel" at the editor's size.
inline WId shownEditor() {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < kWait) {
        for (WId window : windowsNamed(QStringLiteral("Corkwheel"))) {
            if (isViewable(window) && screenGeometry(window).size() == EditorWindow::kDefaultSize)
                return window;
        }
        QTest::qWait(50);
    }
    return 0;
}

// Where `control` of an editor showing `panels` sits, relative to the editor window;
// (-1, -1) when the editor has no such control.
inline QPoint controlOffset(const QList<Panel>& panels,
                            const std::function<QWidget*(EditorWindow&)>& control) {
    StoreFixture fixture(panels);
    AppSettings settings;
    EditorWindow editor(*fixture.store, settings, clockOnlyServices());
    editor.setAttribute(Qt::WA_DontShowOnScreen);
    editor.show();
    if (!QTest::qWaitFor([&] { return editor.view().inspector() != nullptr; }))
        return {-1, -1};
    QCoreApplication::processEvents();
    QWidget* widget = control(editor);
    return widget ? widget->mapTo(&editor, widget->rect().center()) : QPoint(-1, -1);
}

} // namespace corkwheel::test
