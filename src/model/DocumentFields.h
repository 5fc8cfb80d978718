// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/Panel.h"

#include <cstddef>
#include <string_view>
#include <tuple>
#include <type_traits>

namespace corkwheel {

// Whether a key must be in the document. Every key that the first form of the document had
// is required, so that a document missing one is not taken for a good one. Keys added since
// may be missing: a document written before them reads as it did, its panels taking the
// member's default. Corkwheel's reader skips keys it does not know, so an older Corkwheel
// reads a newer document too, without what it does not know.
enum class KeyPresence {
    Required,
    // Read when present, the default when missing; always written.
    Optional,
    // The same, but written only when the member differs from its default: a panel that
    // does not use what the key holds is written as before the key existed.
    WrittenWhenSet,
};

// One key of a JSON object in the panel document and the member that holds its value.
template <typename Object, typename Member> struct DocumentField {
    constexpr DocumentField(std::string_view fieldKey, Member Object::*fieldMember,
                            KeyPresence keyPresence = KeyPresence::Required)
        : key(fieldKey), member(fieldMember), presence(keyPresence) {}

    std::string_view key;
    Member Object::*member;
    KeyPresence presence;
};

// The keys of each object the document holds, in the order they are written. Writing and
// reading the document both walk these tables, so each key is named here and nowhere else.
template <typename Object> struct DocumentFields;

template <> struct DocumentFields<CodableColor> {
    static constexpr std::tuple fields{
        DocumentField{"red", &CodableColor::red},
        DocumentField{"green", &CodableColor::green},
        DocumentField{"blue", &CodableColor::blue},
        DocumentField{"alpha", &CodableColor::alpha},
    };
};

template <> struct DocumentFields<PanelFrame> {
    static constexpr std::tuple fields{
        DocumentField{"x", &PanelFrame::x},
        DocumentField{"y", &PanelFrame::y},
        DocumentField{"width", &PanelFrame::width},
        DocumentField{"height", &PanelFrame::height},
    };
};

template <> struct DocumentFields<PanelStyle> {
    static constexpr std::tuple fields{
        DocumentField{"fontName", &PanelStyle::fontName},
        DocumentField{"fontSize", &PanelStyle::fontSize},
        DocumentField{"textColor", &PanelStyle::textColor},
        DocumentField{"backgroundColor", &PanelStyle::backgroundColor},
        DocumentField{"showShadow", &PanelStyle::showShadow},
        DocumentField{"showGlassBackground", &PanelStyle::showGlassBackground},
        DocumentField{"cornerRadius", &PanelStyle::cornerRadius},
        DocumentField{"opacity", &PanelStyle::opacity},
        DocumentField{"textAlignment", &PanelStyle::textAlignment},
    };
};

template <> struct DocumentFields<StatsRows> {
    static constexpr auto kOptional = KeyPresence::Optional;
    static constexpr std::tuple fields{
        DocumentField{"cores", &StatsRows::cores, kOptional},
        DocumentField{"load", &StatsRows::load, kOptional},
        DocumentField{"swap", &StatsRows::swap, kOptional},
        DocumentField{"temperatures", &StatsRows::temperatures, kOptional},
        DocumentField{"fans", &StatsRows::fans, kOptional},
        DocumentField{"battery", &StatsRows::battery, kOptional},
    };
};

template <> struct DocumentFields<StatsWarning> {
    static constexpr auto kOptional = KeyPresence::Optional;
    static constexpr std::tuple fields{
        DocumentField{"isOn", &StatsWarning::isOn, kOptional},
        DocumentField{"threshold", &StatsWarning::threshold, kOptional},
        DocumentField{"color", &StatsWarning::color, kOptional},
    };
};

template <> struct DocumentFields<StatsWarnings> {
    static constexpr auto kOptional = KeyPresence::Optional;
    static constexpr std::tuple fields{
        DocumentField{"cpu", &StatsWarnings::cpu, kOptional},
        DocumentField{"memory", &StatsWarnings::memory, kOptional},
        DocumentField{"disks", &StatsWarnings::disks, kOptional},
        DocumentField{"swap", &StatsWarnings::swap, kOptional},
        DocumentField{"temperatures", &StatsWarnings::temperatures, kOptional},
        DocumentField{"temperaturesAtSensorMax", &StatsWarnings::temperaturesAtSensorMax,
                      kOptional},
        DocumentField{"battery", &StatsWarnings::battery, kOptional},
    };
};

template <> struct DocumentFields<SystemStatsOptions> {
    static constexpr auto kOptional = KeyPresence::Optional;
    static constexpr std::tuple fields{
        DocumentField{"rows", &SystemStatsOptions::rows, kOptional},
        DocumentField{"warnings", &SystemStatsOptions::warnings, kOptional},
    };
};

template <> struct DocumentFields<Panel> {
    static constexpr std::tuple fields{
        DocumentField{"id", &Panel::id},
        DocumentField{"name", &Panel::name},
        DocumentField{"type", &Panel::type},
        DocumentField{"isEnabled", &Panel::isEnabled},
        DocumentField{"frame", &Panel::frame},
        DocumentField{"style", &Panel::style},
        DocumentField{"refreshInterval", &Panel::refreshInterval},
        DocumentField{"shellCommand", &Panel::shellCommand},
        DocumentField{"filePath", &Panel::filePath},
        DocumentField{"textTemplate", &Panel::textTemplate},
        DocumentField{"clockFormat", &Panel::clockFormat},
        DocumentField{"imageSource", &Panel::imageSource},
        DocumentField{"webpageURL", &Panel::webpageURL},
        DocumentField{"systemStats", &Panel::systemStats, KeyPresence::WrittenWhenSet},
    };
};

// A type the document writes as a JSON object of its own.
template <typename Object>
concept DocumentObject = requires {
    DocumentFields<std::remove_const_t<Object>>::fields;
};

template <DocumentObject Object>
constexpr std::size_t documentFieldCount =
    std::tuple_size_v<std::remove_const_t<decltype(DocumentFields<Object>::fields)>>;

// Calls `visit(key, member)` for each field of `object` in document order; the member is
// const when the object is.
template <DocumentObject Object, typename Visit>
void forEachDocumentField(Object& object, Visit&& visit) {
    std::apply([&](const auto&... field) { (visit(field.key, object.*field.member), ...); },
               DocumentFields<std::remove_const_t<Object>>::fields);
}

// Calls `visit(field, member)` for each field of `object` in document order, with the
// field's key, member pointer and presence.
template <DocumentObject Object, typename Visit>
void forEachDocumentEntry(Object& object, Visit&& visit) {
    std::apply([&](const auto&... field) { (visit(field, object.*field.member), ...); },
               DocumentFields<std::remove_const_t<Object>>::fields);
}

} // namespace corkwheel
