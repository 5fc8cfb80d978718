// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/PanelDocument.h"

#include "model/DocumentEncoding.h"
#include "model/DocumentFields.h"
#include "model/PanelListReader.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <limits>
#include <string>
#include <string_view>

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

Json encodeValue(double value) {
    return number(value);
}

Json encodeValue(bool value) {
    return value;
}

Json encodeValue(const QString& value) {
    return value.toStdString();
}

Json encodeValue(const QUuid& id) {
    return encodeValue(id.toString(QUuid::WithoutBraces).toUpper());
}

Json encodeValue(PanelType type) {
    return encodeValue(rawValue(type));
}

Json encodeValue(TextAlignmentOption alignment) {
    return encodeValue(rawValue(alignment));
}

template <DocumentObject Object> Json encodeValue(const Object& object) {
    [[maybe_unused]] static const Object defaults{};
    Json json = Json::object();
    forEachDocumentEntry(object, [&json](const auto& field, const auto& member) {
        if (field.presence == KeyPresence::WrittenWhenSet && member == defaults.*field.member)
            return;
        json[std::string(field.key)] = encodeValue(member);
    });
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
            document.push_back(encodeValue(panel));
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
