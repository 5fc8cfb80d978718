// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/FocusChain.h"

#include <QWidget>

namespace corkwheel {

namespace {

bool isTabStop(const QWidget* widget) {
    return (widget->focusPolicy() & Qt::TabFocus) != 0;
}

} // namespace

QList<QWidget*> FocusChain::stopsIn(const QWidget* container) {
    QList<QWidget*> stops;
    for (QWidget* widget = container->nextInFocusChain(); widget && widget != container;
         widget = widget->nextInFocusChain()) {
        if (container->isAncestorOf(widget) && isTabStop(widget))
            stops.append(widget);
    }
    return stops;
}

void FocusChain::link(const QList<QWidget*>& widgets) {
    QWidget* previous = nullptr;
    for (QWidget* widget : widgets) {
        if (!widget || !isTabStop(widget))
            continue;
        // Qt keeps one chain per window.
        if (previous && previous->window() == widget->window())
            QWidget::setTabOrder(previous, widget);
        previous = widget;
    }
}

} // namespace corkwheel
