// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/PreviewSection.h"

#include "editor/PreviewStage.h"

#include <QHBoxLayout>

namespace corkwheel {

PreviewSection::PreviewSection(PanelRunner& runner, QWidget* parent)
    : InspectorSection(tr("Preview"), QStringLiteral("previewSection"), parent),
      m_stage(new PreviewStage(runner)) {
    m_stage->setObjectName(QStringLiteral("previewStage"));
    auto* layout = new QHBoxLayout(body());
    layout->addWidget(m_stage, 0, Qt::AlignCenter);
}

void PreviewSection::showPanel(const Panel& panel) {
    m_stage->setPanel(panel);
}

PanelContentView& PreviewSection::content() const {
    return m_stage->content();
}

} // namespace corkwheel
