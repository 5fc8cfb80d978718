// SPDX-License-Identifier: GPL-3.0-or-later

#include "editor/EmptyStatePlacard.h"

#include "editor/SecondaryText.h"
#include "editor/SymbolBox.h"

#include <QLabel>
#include <QPalette>
#include <QVBoxLayout>

namespace corkwheel {

namespace {

constexpr int kSymbolSize = 48;

} // namespace

EmptyStatePlacard::EmptyStatePlacard(QWidget* parent) : QWidget(parent) {
    auto* symbol = new SymbolBox(kSymbolSize, kSymbolSize, this);
    symbol->setObjectName(QStringLiteral("placardSymbol"));
    symbol->setSymbol(QStringLiteral("rectangle.on.rectangle"),
                      SecondaryText::dimmed(palette().color(QPalette::WindowText)));

    auto* title = new QLabel(tr("No Panel Selected"), this);
    title->setObjectName(QStringLiteral("placardTitle"));
    QFont titleFont = title->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.5);
    titleFont.setBold(true);
    title->setFont(titleFont);
    title->setAlignment(Qt::AlignCenter);

    auto* description = new QLabel(tr("Choose a panel from the sidebar, or add a new one."), this);
    description->setObjectName(QStringLiteral("placardDescription"));
    SecondaryText::apply(*description);
    description->setAlignment(Qt::AlignCenter);
    description->setWordWrap(true);

    auto* layout = new QVBoxLayout(this);
    layout->addStretch();
    layout->addWidget(symbol, 0, Qt::AlignHCenter);
    layout->addWidget(title);
    layout->addWidget(description);
    layout->addStretch();
}

QString EmptyStatePlacard::title() const {
    return findChild<QLabel*>(QStringLiteral("placardTitle"))->text();
}

QString EmptyStatePlacard::description() const {
    return findChild<QLabel*>(QStringLiteral("placardDescription"))->text();
}

} // namespace corkwheel
