// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/PanelRow.h"

#include "editor/EditorAccessibility.h"
#include "editor/ElidedLabel.h"
#include "editor/MiniSwitch.h"
#include "editor/SecondaryText.h"
#include "editor/SymbolBox.h"
#include "model/PanelStore.h"
#include "render/PanelFonts.h"
#include "render/Theme.h"

#include <QAccessible>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace corkwheel {

namespace {

template <typename Label> Label* makeLabel(const QString& objectName, QWidget* parent) {
    auto* label = new Label(parent);
    label->setObjectName(objectName);
    label->setTextFormat(Qt::PlainText);
    // Inside a list the role would follow the list's base colour; the row sets WindowText.
    label->setForegroundRole(QPalette::WindowText);
    // Clicks fall through to the list, which selects the row.
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    return label;
}

} // namespace

PanelRow::PanelRow(PanelStore& store, const Panel& panel, QWidget* parent)
    : QWidget(parent), m_store(store), m_panel(panel),
      m_symbol(new SymbolBox(kSymbolBox, kSymbolSize, this)),
      m_name(makeLabel<ElidedLabel>(QStringLiteral("nameLabel"), this)),
      m_type(makeLabel<QLabel>(QStringLiteral("typeLabel"), this)), m_switch(new MiniSwitch(this)) {
    EditorAccessibility::install();
    setObjectName(QStringLiteral("panelRow"));
    m_symbol->setObjectName(QStringLiteral("symbolBox"));
    m_symbol->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_switch->setObjectName(QStringLiteral("enabledSwitch"));
    m_type->setFont(PanelFonts::caption());

    auto* lines = new QVBoxLayout;
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(kLineSpacing);
    lines->addWidget(m_name);
    lines->addWidget(m_type);

    auto* row = new QHBoxLayout(this);
    // The switch's track keeps its distance from the row's end; the margin it keeps for its
    // focus ring lies within that distance.
    row->setContentsMargins(kLeadingPadding, kVerticalPadding,
                            kTrailingPadding - MiniSwitch::kRingMargin, kVerticalPadding);
    row->setSpacing(kSpacing);
    row->addWidget(m_symbol, 0, Qt::AlignVCenter);
    row->addLayout(lines, 1);
    row->addWidget(m_switch, 0, Qt::AlignVCenter);

    // Toggled, not clicked: a screen reader's toggle action flips the switch without a click.
    // The row's own changes of the switch are made with its signals blocked.
    connect(m_switch, &QAbstractButton::toggled, this, &PanelRow::writeEnabled);
    showFields();
    applyColors();
}

// The sidebar hands every row its panel on every change of the store, a drag step on the
// desktop included, so what did not change is left as it is: new colours are costly, as
// every label takes its palette in anew.
void PanelRow::setPanel(const Panel& panel) {
    const bool typeChanged = panel.type != m_panel.type;
    m_panel = panel;
    showFields();
    if (typeChanged)
        applyColors();
}

QString PanelRow::title() const {
    return m_panel.name.isEmpty() ? displayName(m_panel.type) : m_panel.name;
}

void PanelRow::showFields() {
    const bool renamed = m_name->text() != m_panel.name;
    m_name->setText(m_panel.name);
    m_type->setText(displayName(m_panel.type));
    const QSignalBlocker quiet(m_switch);
    m_switch->setChecked(m_panel.isEnabled);
    //: The name a screen reader gives a panel's on/off switch in the sidebar.
    const QString switchName = tr("%1 enabled").arg(title());
    if (m_switch->accessibleName() != switchName)
        m_switch->setAccessibleName(switchName);
    if (renamed && QAccessible::isActive()) {
        QAccessibleEvent event(this, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
}

void PanelRow::setSelected(bool selected) {
    if (selected == m_selected)
        return;
    m_selected = selected;
    m_switch->setOnHighlight(selected);
    applyColors();
    update();
}

void PanelRow::setKeyboardCurrent(bool current) {
    if (current == m_keyboardCurrent)
        return;
    m_keyboardCurrent = current;
    update();
}

// Over the list's selection highlight, which is of the accent colour, the ring takes the
// highlighted text's colour.
void PanelRow::paintEvent(QPaintEvent*) {
    if (!m_keyboardCurrent)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor ring = m_selected ? palette().color(QPalette::HighlightedText) : Theme::accent();
    painter.setPen(QPen(ring, kRingWidth));
    painter.setBrush(Qt::NoBrush);
    // Inside the row, clear of the highlight's edge, which would blur into it.
    const double inset = kRingInset + kRingWidth / 2;
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kRingRadius,
                            kRingRadius);
}

void PanelRow::writeEnabled(bool enabled) {
    Panel copy = m_panel;
    copy.isEnabled = enabled;
    m_store.update(copy);
    // The store hands the changed panel back through setPanel; when it ignored the write
    // (the panel is gone) the switch goes back to what the row's copy says.
    const QSignalBlocker quiet(m_switch);
    m_switch->setChecked(m_panel.isEnabled);
}

void PanelRow::applyColors() {
    const QColor text = palette().color(m_selected ? QPalette::HighlightedText : QPalette::Text);
    QPalette namePalette = m_name->palette();
    namePalette.setColor(QPalette::WindowText, text);
    m_name->setPalette(namePalette);
    QPalette typePalette = m_type->palette();
    typePalette.setColor(QPalette::WindowText, SecondaryText::dimmed(text));
    m_type->setPalette(typePalette);
    m_symbol->setSymbol(symbolName(m_panel.type), SecondaryText::dimmed(text));
}

void PanelRow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyColors();
}

} // namespace corkwheel
