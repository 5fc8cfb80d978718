// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/SecondaryText.h"

#include "render/PanelFonts.h"

#include <QLabel>
#include <QPalette>

namespace corkwheel::SecondaryText {

QColor dimmed(QColor color) {
    color.setAlphaF(static_cast<float>(color.alphaF() * kOpacity));
    return color;
}

void apply(QWidget& widget) {
    QPalette palette = widget.palette();
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        palette.setColor(group, QPalette::WindowText,
                         dimmed(palette.color(group, QPalette::WindowText)));
    widget.setPalette(palette);
}

QLabel* note(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setFont(PanelFonts::caption());
    label->setWordWrap(true);
    label->setTextFormat(Qt::PlainText);
    apply(*label);
    return label;
}

} // namespace corkwheel::SecondaryText
