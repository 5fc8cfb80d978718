// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/Symbols.h"

#include "render/DevicePixelRatio.h"

#include <QFile>
#include <QHash>
#include <QPainter>

#include <cmath>

// Outside any namespace, as Q_INIT_RESOURCE requires. A static library's resources are
// only linked in when something refers to them.
static void initSymbolResources() {
    Q_INIT_RESOURCE(symbols);
}

namespace corkwheel::Symbols {

namespace {

struct SymbolInfo {
    const char16_t* name;
    // Symbolic (single-colour) variants first: they tint cleanly.
    QList<const char16_t*> themeNames;
};

const QList<SymbolInfo>& symbolTable() {
    static const QList<SymbolInfo> table{
        {u"arrow.up.left.and.arrow.down.right", {}},
        {u"battery", {u"battery-good-symbolic", u"battery"}},
        {u"cable.connector", {u"network-wired-symbolic", u"network-wired"}},
        {u"clock", {u"preferences-system-time-symbolic", u"preferences-system-time"}},
        {u"cpu", {u"cpu"}},
        {u"doc.text", {u"text-x-generic-symbolic", u"text-x-generic"}},
        {u"externaldrive", {u"drive-removable-media-symbolic", u"drive-removable-media"}},
        {u"eye", {u"view-reveal-symbolic", u"visibility"}},
        {u"eye.slash", {u"view-conceal-symbolic", u"hint"}},
        {u"eye.slash.fill", {u"view-conceal-symbolic", u"hint"}},
        {u"fan", {}},
        {u"gauge.with.dots.needle.50percent",
         {u"utilities-system-monitor-symbolic", u"utilities-system-monitor"}},
        {u"gearshape", {u"emblem-system-symbolic", u"preferences-system"}},
        {u"hand.draw", {}},
        {u"hand.draw.fill", {}},
        {u"internaldrive", {u"drive-harddisk-symbolic", u"drive-harddisk"}},
        {u"memorychip", {u"memory"}},
        {u"network", {u"network-workgroup-symbolic", u"network-workgroup"}},
        {u"photo", {u"image-x-generic-symbolic", u"image-x-generic"}},
        {u"plus", {u"list-add-symbolic", u"list-add"}},
        {u"rectangle.on.rectangle", {u"edit-copy-symbolic", u"edit-copy"}},
        {u"safari", {u"web-browser-symbolic", u"web-browser"}},
        {u"square.grid.2x2.fill", {u"view-app-grid-symbolic", u"view-grid"}},
        {u"terminal", {u"utilities-terminal-symbolic", u"utilities-terminal"}},
        {u"textformat", {u"font-x-generic-symbolic", u"font-x-generic"}},
        {u"thermometer", {u"temperature-symbolic", u"temperature"}},
        {u"wifi", {u"network-wireless-symbolic", u"network-wireless"}},
    };
    return table;
}

const SymbolInfo* infoFor(const QString& name) {
    for (const SymbolInfo& info : symbolTable()) {
        if (name == QStringView(info.name))
            return &info;
    }
    return nullptr;
}

QString bundledPath(const QString& name) {
    static const bool initialised = [] {
        initSymbolResources();
        return true;
    }();
    Q_UNUSED(initialised);
    return QStringLiteral(":/corkwheel/symbols/") + name + QStringLiteral(".svg");
}

QImage silhouette(const QIcon& icon, const QSize& pixels, double ratio, const QColor& color) {
    QImage image = icon.pixmap(pixels / ratio, ratio).toImage();
    if (image.isNull())
        return image;
    image = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(QRectF(QPointF(), image.deviceIndependentSize()), color);
    return image;
}

// Drawing a symbol renders an SVG; panels redraw every second, so the tinted results are
// kept. The key holds everything that changes the result, the theme included.
QHash<QString, QImage>& tintedCache() {
    static QHash<QString, QImage> cache;
    return cache;
}

constexpr qsizetype kMaxCachedImages = 256;

// Qt names "hicolor" when the desktop sets no icon theme. That is the freedesktop fallback
// where applications put their own full-colour icons, not a set of symbols, and reading its
// index of several thousand lines took 5 ms of Corkwheel's start-up.
bool hasChosenIconTheme() {
    const QString theme = QIcon::themeName();
    return !theme.isEmpty() && theme != u"hicolor";
}

} // namespace

const QStringList& names() {
    static const QStringList all = [] {
        QStringList list;
        for (const SymbolInfo& info : symbolTable())
            list.append(QString::fromUtf16(info.name));
        return list;
    }();
    return all;
}

QStringList themeNames(const QString& name) {
    QStringList list;
    if (const SymbolInfo* info = infoFor(name)) {
        for (const char16_t* themeName : info->themeNames)
            list.append(QString::fromUtf16(themeName));
    }
    return list;
}

QIcon bundledIcon(const QString& name) {
    if (!infoFor(name))
        return {};
    const QString path = bundledPath(name);
    return QFile::exists(path) ? QIcon(path) : QIcon();
}

QIcon icon(const QString& name) {
    if (!hasChosenIconTheme())
        return bundledIcon(name);
    for (const QString& themeName : themeNames(name)) {
        if (QIcon::hasThemeIcon(themeName))
            return QIcon::fromTheme(themeName);
    }
    return bundledIcon(name);
}

QImage tinted(const QString& name, const QSizeF& size, double ratio, const QColor& color) {
    const QSize pixels(std::max(1, static_cast<int>(std::ceil(size.width() * ratio))),
                       std::max(1, static_cast<int>(std::ceil(size.height() * ratio))));
    const QString key = QStringLiteral("%1|%2|%3x%4|%5|%6")
                            .arg(name, QIcon::themeName())
                            .arg(pixels.width())
                            .arg(pixels.height())
                            .arg(ratio)
                            .arg(color.rgba64().toArgb32());
    QHash<QString, QImage>& cache = tintedCache();
    const auto cached = cache.constFind(key);
    if (cached != cache.cend())
        return *cached;
    const QIcon symbol = icon(name);
    const QImage image = symbol.isNull() ? QImage() : silhouette(symbol, pixels, ratio, color);
    if (cache.size() >= kMaxCachedImages)
        cache.clear();
    cache.insert(key, image);
    return image;
}

void paint(QPainter& painter, const QRectF& box, const QString& name, const QColor& color) {
    if (box.isEmpty())
        return;
    const QImage image = tinted(name, box.size(), paintRatio(painter), color);
    if (image.isNull())
        return;
    QRectF target(QPointF(), image.deviceIndependentSize());
    target.moveCenter(box.center());
    painter.drawImage(target, image);
}

} // namespace corkwheel::Symbols
