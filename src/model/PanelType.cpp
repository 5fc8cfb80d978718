// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/PanelType.h"

#include <QCoreApplication>

namespace corkwheel {

namespace {

struct PanelTypeInfo {
    PanelType type;
    const char16_t* raw;
    // English, and the key to its translation.
    const char* displayName;
    const char16_t* symbolName;
};

constexpr PanelTypeInfo kTypes[] = {
    {PanelType::Shell, u"shell", QT_TRANSLATE_NOOP("corkwheel::PanelType", "Shell Command"),
     u"terminal"},
    {PanelType::File, u"file", QT_TRANSLATE_NOOP("corkwheel::PanelType", "File Content"),
     u"doc.text"},
    {PanelType::Text, u"text", QT_TRANSLATE_NOOP("corkwheel::PanelType", "Text"), u"textformat"},
    {PanelType::Clock, u"clock", QT_TRANSLATE_NOOP("corkwheel::PanelType", "Clock"), u"clock"},
    {PanelType::Image, u"image", QT_TRANSLATE_NOOP("corkwheel::PanelType", "Image"), u"photo"},
    {PanelType::SystemStats, u"systemStats",
     QT_TRANSLATE_NOOP("corkwheel::PanelType", "System Stats"),
     u"gauge.with.dots.needle.50percent"},
    {PanelType::Webpage, u"webpage", QT_TRANSLATE_NOOP("corkwheel::PanelType", "Webpage"),
     u"safari"},
};

const PanelTypeInfo& infoFor(PanelType type) {
    return kTypes[static_cast<int>(type)];
}

} // namespace

const QList<PanelType>& allPanelTypes() {
    static const QList<PanelType> types = [] {
        QList<PanelType> list;
        for (const auto& info : kTypes)
            list.append(info.type);
        return list;
    }();
    return types;
}

QString rawValue(PanelType type) {
    return QString::fromUtf16(infoFor(type).raw);
}

std::optional<PanelType> panelTypeFromRaw(QStringView raw) {
    for (const auto& info : kTypes) {
        if (raw == QStringView(info.raw))
            return info.type;
    }
    return std::nullopt;
}

QString displayName(PanelType type) {
    return QCoreApplication::translate("corkwheel::PanelType", infoFor(type).displayName);
}

QString symbolName(PanelType type) {
    return QString::fromUtf16(infoFor(type).symbolName);
}

} // namespace corkwheel
