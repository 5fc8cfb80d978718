// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/InspectorSection.h"

#include <QCheckBox>
#include <QFormLayout>

namespace corkwheel {

InspectorSection::InspectorSection(const QString& title, const QString& name, QWidget* parent)
    : FormSection(title, parent) {
    setObjectName(name);
}

QFormLayout* InspectorSection::makeForm() {
    auto* form = new QFormLayout(body());
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->setRowWrapPolicy(QFormLayout::DontWrapRows);
    return form;
}

QCheckBox* InspectorSection::makeToggle(const QString& text, const QString& name) {
    auto* toggle = new QCheckBox(text);
    toggle->setObjectName(name);
    return toggle;
}

} // namespace corkwheel
