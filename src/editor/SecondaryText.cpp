#include "editor/SecondaryText.h"

#include "desktop/PanelFonts.h"

#include <QLabel>
#include <QPalette>

namespace corkwheel::SecondaryText {

void apply(QWidget& widget) {
    QPalette palette = widget.palette();
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        QColor color = palette.color(group, QPalette::WindowText);
        color.setAlphaF(color.alphaF() * kOpacity);
        palette.setColor(group, QPalette::WindowText, color);
    }
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
