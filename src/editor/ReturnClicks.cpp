// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/ReturnClicks.h"

#include <QAbstractButton>
#include <QKeyEvent>
#include <QPushButton>

namespace corkwheel {

void ReturnClicks::install(QAbstractButton* button) {
    button->installEventFilter(new ReturnClicks(button));
}

bool ReturnClicks::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto* key = static_cast<QKeyEvent*>(event);
    if ((key->key() != Qt::Key_Return && key->key() != Qt::Key_Enter) ||
        (key->modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier)
        return false;
    auto* button = qobject_cast<QAbstractButton*>(watched);
    if (!button || !button->isEnabled())
        return false;
    // A key held down repeats the press, which would stack up menus and dialogs.
    if (key->isAutoRepeat())
        return true;
    // A button with a menu opens it as Space does, once the key has been handled: a click
    // does not open it in every Qt version, and a menu run from within the key's handling
    // does not show in every one.
    auto* push = qobject_cast<QPushButton*>(button);
    if (push && push->menu())
        QMetaObject::invokeMethod(push, &QPushButton::showMenu, Qt::QueuedConnection);
    else
        button->click();
    return true;
}

} // namespace corkwheel
