#include "model/PanelDocument.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>

namespace corkwheel::PanelDocument {

namespace {

using Json = nlohmann::ordered_json;

// ---- encoding ----------------------------------------------------------------------

// Thrown only inside encode() and caught there: a non-finite number anywhere aborts the
// whole document.
struct NonFiniteNumber {};

Json number(double value) {
    if (!std::isfinite(value))
        throw NonFiniteNumber{};
    // Integral values are written without a fraction ("60", not "60.0"); both read back
    // to the same double.
    constexpr double kExactIntegerLimit = 9007199254740992.0; // 2^53
    // -0.0 keeps its fraction so that its sign survives the round trip.
    if (value == std::trunc(value) && std::fabs(value) < kExactIntegerLimit &&
        !(value == 0 && std::signbit(value)))
        return static_cast<std::int64_t>(value);
    return value;
}

Json string(const QString& value) {
    return value.toStdString();
}

Json encodeColor(const CodableColor& color) {
    Json json = Json::object();
    json["red"] = number(color.red);
    json["green"] = number(color.green);
    json["blue"] = number(color.blue);
    json["alpha"] = number(color.alpha);
    return json;
}

Json encodeFrame(const PanelFrame& frame) {
    Json json = Json::object();
    json["x"] = number(frame.x);
    json["y"] = number(frame.y);
    json["width"] = number(frame.width);
    json["height"] = number(frame.height);
    return json;
}

Json encodeStyle(const PanelStyle& style) {
    Json json = Json::object();
    json["fontName"] = string(style.fontName);
    json["fontSize"] = number(style.fontSize);
    json["textColor"] = encodeColor(style.textColor);
    json["backgroundColor"] = encodeColor(style.backgroundColor);
    json["showShadow"] = style.showShadow;
    json["showGlassBackground"] = style.showGlassBackground;
    json["cornerRadius"] = number(style.cornerRadius);
    json["opacity"] = number(style.opacity);
    json["textAlignment"] = string(rawValue(style.textAlignment));
    return json;
}

Json encodePanel(const Panel& panel) {
    Json json = Json::object();
    json["id"] = string(panel.id.toString(QUuid::WithoutBraces).toUpper());
    json["name"] = string(panel.name);
    json["type"] = string(rawValue(panel.type));
    json["isEnabled"] = panel.isEnabled;
    json["frame"] = encodeFrame(panel.frame);
    json["style"] = encodeStyle(panel.style);
    json["refreshInterval"] = number(panel.refreshInterval);
    json["shellCommand"] = string(panel.shellCommand);
    json["filePath"] = string(panel.filePath);
    json["textTemplate"] = string(panel.textTemplate);
    json["clockFormat"] = string(panel.clockFormat);
    json["imageSource"] = string(panel.imageSource);
    json["webpageURL"] = string(panel.webpageURL);
    return json;
}

// A solidus can only occur inside JSON strings, so escaping every one in the output text
// escapes exactly the ones inside strings.
QByteArray escapeSolidus(const std::string& text) {
    QByteArray out;
    out.reserve(static_cast<qsizetype>(text.size() + text.size() / 16));
    for (char c : text) {
        if (c == '/')
            out.append('\\');
        out.append(c);
    }
    return out;
}

// ---- decoding ----------------------------------------------------------------------

// Each reader returns false when the key is missing or holds the wrong JSON type.

const Json* member(const Json& object, const char* key) {
    const auto it = object.find(key);
    return it == object.end() ? nullptr : &*it;
}

bool readNumber(const Json& object, const char* key, double& out) {
    const Json* value = member(object, key);
    if (!value || !value->is_number())
        return false;
    out = value->get<double>();
    return true;
}

bool readBool(const Json& object, const char* key, bool& out) {
    const Json* value = member(object, key);
    if (!value || !value->is_boolean())
        return false;
    out = value->get<bool>();
    return true;
}

bool readString(const Json& object, const char* key, QString& out) {
    const Json* value = member(object, key);
    if (!value || !value->is_string())
        return false;
    out = QString::fromStdString(value->get_ref<const std::string&>());
    return true;
}

bool readObject(const Json& object, const char* key, const Json*& out) {
    out = member(object, key);
    return out && out->is_object();
}

bool isHexDigit(QChar c) {
    const char16_t u = c.unicode();
    return (u >= u'0' && u <= u'9') || (u >= u'a' && u <= u'f') || (u >= u'A' && u <= u'F');
}

// Only the canonical 36-character hyphenated form, in either case.
bool parseUuid(const QString& text, QUuid& out) {
    if (text.size() != 36)
        return false;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool hyphenPlace = i == 8 || i == 13 || i == 18 || i == 23;
        if (hyphenPlace ? text.at(i) != u'-' : !isHexDigit(text.at(i)))
            return false;
    }
    out = QUuid::fromString(text);
    return true;
}

bool decodeColor(const Json& parent, const char* key, CodableColor& color) {
    const Json* json = nullptr;
    return readObject(parent, key, json) && readNumber(*json, "red", color.red) &&
           readNumber(*json, "green", color.green) && readNumber(*json, "blue", color.blue) &&
           readNumber(*json, "alpha", color.alpha);
}

bool decodeFrame(const Json& parent, PanelFrame& frame) {
    const Json* json = nullptr;
    return readObject(parent, "frame", json) && readNumber(*json, "x", frame.x) &&
           readNumber(*json, "y", frame.y) && readNumber(*json, "width", frame.width) &&
           readNumber(*json, "height", frame.height);
}

bool decodeStyle(const Json& parent, PanelStyle& style) {
    const Json* json = nullptr;
    QString alignment;
    if (!readObject(parent, "style", json) || !readString(*json, "fontName", style.fontName) ||
        !readNumber(*json, "fontSize", style.fontSize) ||
        !decodeColor(*json, "textColor", style.textColor) ||
        !decodeColor(*json, "backgroundColor", style.backgroundColor) ||
        !readBool(*json, "showShadow", style.showShadow) ||
        !readBool(*json, "showGlassBackground", style.showGlassBackground) ||
        !readNumber(*json, "cornerRadius", style.cornerRadius) ||
        !readNumber(*json, "opacity", style.opacity) ||
        !readString(*json, "textAlignment", alignment))
        return false;
    const auto option = textAlignmentFromRaw(alignment);
    if (!option)
        return false;
    style.textAlignment = *option;
    return true;
}

std::optional<Panel> decodePanel(const Json& json) {
    if (!json.is_object())
        return std::nullopt;
    Panel panel;
    QString id;
    QString type;
    if (!readString(json, "id", id) || !parseUuid(id, panel.id) ||
        !readString(json, "name", panel.name) || !readString(json, "type", type) ||
        !readBool(json, "isEnabled", panel.isEnabled) || !decodeFrame(json, panel.frame) ||
        !decodeStyle(json, panel.style) ||
        !readNumber(json, "refreshInterval", panel.refreshInterval) ||
        !readString(json, "shellCommand", panel.shellCommand) ||
        !readString(json, "filePath", panel.filePath) ||
        !readString(json, "textTemplate", panel.textTemplate) ||
        !readString(json, "clockFormat", panel.clockFormat) ||
        !readString(json, "imageSource", panel.imageSource) ||
        !readString(json, "webpageURL", panel.webpageURL))
        return std::nullopt;
    const auto panelType = panelTypeFromRaw(type);
    if (!panelType)
        return std::nullopt;
    panel.type = *panelType;
    return panel;
}

} // namespace

std::optional<QByteArray> encode(const QList<Panel>& panels) {
    Json document = Json::array();
    try {
        for (const Panel& panel : panels)
            document.push_back(encodePanel(panel));
    } catch (const NonFiniteNumber&) {
        return std::nullopt;
    }
    return escapeSolidus(document.dump(-1, ' ', false, Json::error_handler_t::replace));
}

std::optional<QList<Panel>> decode(const QByteArray& document) {
    const Json json = Json::parse(document.begin(), document.end(), nullptr,
                                  /*allow_exceptions=*/false);
    if (json.is_discarded() || !json.is_array())
        return std::nullopt;
    QList<Panel> panels;
    panels.reserve(static_cast<qsizetype>(json.size()));
    for (const Json& element : json) {
        auto panel = decodePanel(element);
        if (!panel)
            return std::nullopt;
        panels.append(std::move(*panel));
    }
    return panels;
}

} // namespace corkwheel::PanelDocument
