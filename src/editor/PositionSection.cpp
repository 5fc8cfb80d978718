// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/PositionSection.h"

#include "editor/LabeledField.h"
#include "editor/SecondaryText.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace corkwheel {

PositionSection::PositionSection(QWidget* parent)
    : InspectorSection(tr("Position & Size"), QStringLiteral("positionSection"), parent),
      m_xField(frameField(tr("X"), tr("X position"), QStringLiteral("xField"), &PanelFrame::x)),
      m_yField(frameField(tr("Y"), tr("Y position"), QStringLiteral("yField"), &PanelFrame::y)),
      m_widthField(
          frameField(tr("W"), tr("Width"), QStringLiteral("widthField"), &PanelFrame::width)),
      m_heightField(
          frameField(tr("H"), tr("Height"), QStringLiteral("heightField"), &PanelFrame::height)) {
    auto* layout = new QVBoxLayout(body());

    auto* position = new QHBoxLayout;
    position->addWidget(m_xField, 1, Qt::AlignVCenter);
    position->addWidget(m_yField, 1, Qt::AlignVCenter);
    layout->addLayout(position);

    auto* size = new QHBoxLayout;
    size->addWidget(m_widthField, 1);
    size->addWidget(m_heightField, 1);
    layout->addLayout(size);

    QLabel* note =
        SecondaryText::note(tr("Position is measured from the top-left of your main display."));
    note->setObjectName(QStringLiteral("positionNote"));
    layout->addWidget(note);
}

void PositionSection::showPanel(const Panel& panel) {
    m_xField->setValue(panel.frame.x);
    m_yField->setValue(panel.frame.y);
    m_widthField->setValue(panel.frame.width);
    m_heightField->setValue(panel.frame.height);
}

LabeledField* PositionSection::frameField(const QString& label, const QString& spokenName,
                                          const QString& name, double PanelFrame::*field) {
    auto* labeled = new LabeledField(label, spokenName);
    labeled->setObjectName(name);
    connect(labeled, &LabeledField::valueEdited, this, [this, field](double value) {
        Q_EMIT edited([field, value](Panel& panel) { panel.frame.*field = value; });
    });
    return labeled;
}

} // namespace corkwheel
