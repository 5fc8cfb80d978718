#include "editor/EmptyStatePlacard.h"

#include "desktop/Symbols.h"

#include <QLabel>
#include <QPalette>
#include <QVBoxLayout>

namespace corkwheel {

namespace {

constexpr int kSymbolSize = 48;

QColor dimmed(const QWidget& widget) {
    return widget.palette().color(QPalette::Disabled, QPalette::WindowText);
}

} // namespace

EmptyStatePlacard::EmptyStatePlacard(QWidget* parent) : QWidget(parent) {
    auto* symbol = new QLabel(this);
    symbol->setObjectName(QStringLiteral("placardSymbol"));
    const double ratio = devicePixelRatioF();
    QImage image = Symbols::tinted(QStringLiteral("rectangle.on.rectangle"),
                                   QSizeF(kSymbolSize, kSymbolSize), ratio, dimmed(*this));
    symbol->setPixmap(QPixmap::fromImage(image));
    symbol->setAlignment(Qt::AlignCenter);

    auto* title = new QLabel(tr("No Panel Selected"), this);
    title->setObjectName(QStringLiteral("placardTitle"));
    QFont titleFont = title->font();
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.5);
    titleFont.setBold(true);
    title->setFont(titleFont);
    title->setAlignment(Qt::AlignCenter);

    auto* description = new QLabel(tr("Choose a panel from the sidebar, or add a new one."), this);
    description->setObjectName(QStringLiteral("placardDescription"));
    QPalette palette = description->palette();
    palette.setColor(QPalette::WindowText, dimmed(*this));
    description->setPalette(palette);
    description->setAlignment(Qt::AlignCenter);
    description->setWordWrap(true);

    auto* layout = new QVBoxLayout(this);
    layout->addStretch();
    layout->addWidget(symbol);
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
