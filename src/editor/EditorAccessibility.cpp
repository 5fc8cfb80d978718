// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/EditorAccessibility.h"

#include "editor/PanelList.h"
#include "editor/PanelListAccessible.h"
#include "editor/PanelRow.h"
#include "editor/PanelRowAccessible.h"
#include "editor/StepperAccessible.h"
#include "editor/StepperLabel.h"

#include <QAccessible>

namespace corkwheel {

namespace {

// Qt asks with the name of each class of the object in turn, the most derived first.
QAccessibleInterface* describe(const QString& className, QObject* object) {
    if (className == QLatin1String(StepperLabel::staticMetaObject.className()))
        return new StepperAccessible(static_cast<StepperLabel*>(object));
    if (className == QLatin1String(PanelList::staticMetaObject.className()))
        return new PanelListAccessible(static_cast<PanelList*>(object));
    if (className == QLatin1String(PanelRow::staticMetaObject.className()))
        return new PanelRowAccessible(static_cast<PanelRow*>(object));
    return nullptr;
}

} // namespace

void EditorAccessibility::install() {
    static const bool installed = [] {
        QAccessible::installFactory(&describe);
        return true;
    }();
    Q_UNUSED(installed);
}

} // namespace corkwheel
