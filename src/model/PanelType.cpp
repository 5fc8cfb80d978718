#include "model/PanelType.h"

namespace corkwheel {

namespace {

struct PanelTypeInfo {
    PanelType type;
    const char16_t* raw;
    const char16_t* displayName;
    const char16_t* symbolName;
};

constexpr PanelTypeInfo kTypes[] = {
    {PanelType::Shell, u"shell", u"Shell Command", u"terminal"},
    {PanelType::File, u"file", u"File Content", u"doc.text"},
    {PanelType::Text, u"text", u"Text", u"textformat"},
    {PanelType::Clock, u"clock", u"Clock", u"clock"},
    {PanelType::Image, u"image", u"Image", u"photo"},
    {PanelType::SystemStats, u"systemStats", u"System Stats", u"gauge.with.dots.needle.50percent"},
    {PanelType::Webpage, u"webpage", u"Webpage", u"safari"},
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
    return QString::fromUtf16(infoFor(type).displayName);
}

QString symbolName(PanelType type) {
    return QString::fromUtf16(infoFor(type).symbolName);
}

} // namespace corkwheel
