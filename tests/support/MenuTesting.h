// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QAction>
#include <QMenu>
#include <QPoint>
#include <QString>
#include <QTest>

namespace corkwheel::test {

inline QAction* actionNamed(QMenu& menu, const QString& text) {
    for (QAction* action : menu.actions()) {
        if (action->text() == text)
            return action;
    }
    return nullptr;
}

// `menu` popped up, as a click on the tray icon does.
inline void openMenu(QMenu& menu) {
    if (!menu.isVisible())
        menu.popup(QPoint(100, 100));
    QTRY_VERIFY(menu.isVisible());
}

// `item` chosen in the open menu with the keyboard (the item made current, then Return),
// which closes the menu. A click on an item is not taken until the pointer has moved in
// the menu, which a test's pointer does not do reliably.
inline void chooseInMenu(QMenu& menu, QAction* item) {
    openMenu(menu);
    menu.setActiveAction(item);
    QTest::keyClick(&menu, Qt::Key_Return);
    QTRY_VERIFY(!menu.isVisible());
}

} // namespace corkwheel::test
