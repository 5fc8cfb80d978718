#include "desktop/PanelFonts.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <QGuiApplication>

#include <algorithm>
#include <cmath>

namespace corkwheel::PanelFonts {

namespace {

constexpr double kCaptionScale = 0.85;
constexpr double kSmallCaptionScale = 0.75;

} // namespace

void setSize(QFont& font, double size) {
    const double finite = std::isfinite(size) ? size : 1.0;
    font.setPixelSize(std::max(1, static_cast<int>(std::lround(std::clamp(finite, 1.0, 4096.0)))));
}

double sizeOf(const QFont& font) {
    return font.pixelSize() > 0 ? font.pixelSize() : QFontInfo(font).pixelSize();
}

QFont styleFont(const QString& family, double size) {
    QFont font = QFontDatabase::hasFamily(family)
                     ? QFont(family)
                     : QFontDatabase::systemFont(QFontDatabase::FixedFont);
    setSize(font, size);
    return font;
}

QFont systemFont(double size, QFont::Weight weight) {
    QFont font = QGuiApplication::font();
    setSize(font, size);
    font.setWeight(weight);
    return font;
}

double bodySize() {
    return QFontInfo(QGuiApplication::font()).pixelSize();
}

QFont caption() {
    return systemFont(bodySize() * kCaptionScale);
}

QFont smallCaption() {
    return systemFont(bodySize() * kSmallCaptionScale);
}

} // namespace corkwheel::PanelFonts
