#include "model/PanelDocument.h"

#include "model/DocumentEncoding.h"
#include "model/PanelListReader.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>

namespace corkwheel::PanelDocument {

namespace {

using Json = nlohmann::ordered_json;

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
    const auto utf8 = documentAsUtf8(document);
    if (!utf8)
        return std::nullopt;
    return readPanelList(*utf8);
}

} // namespace corkwheel::PanelDocument
