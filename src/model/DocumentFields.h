// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "model/Panel.h"

#include <cstddef>
#include <string_view>
#include <tuple>
#include <type_traits>

namespace corkwheel {

// One key of a JSON object in the panel document and the member that holds its value.
template <typename Object, typename Member> struct DocumentField {
    constexpr DocumentField(std::string_view fieldKey, Member Object::*fieldMember)
        : key(fieldKey), member(fieldMember) {}

    std::string_view key;
    Member Object::*member;
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

} // namespace corkwheel
