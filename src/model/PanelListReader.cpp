// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/PanelListReader.h"

#include "model/DocumentFields.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

namespace corkwheel {

namespace {

using Json = nlohmann::json;

// Where the value of one key goes. Objects nested in a panel are filled in place.
using Target = std::variant<double*, bool*, QString*, QUuid*, PanelType*, TextAlignmentOption*,
                            PanelFrame*, PanelStyle*, CodableColor*, SystemStatsOptions*,
                            StatsRows*, StatsWarnings*, StatsWarning*>;

struct Slot {
    std::string_view key;
    Target target;
};

constexpr int kNoKey = -1;
constexpr int kUnknownKey = -2;

constexpr std::size_t kMostKeys =
    std::max({documentFieldCount<Panel>, documentFieldCount<PanelFrame>,
              documentFieldCount<PanelStyle>, documentFieldCount<CodableColor>,
              documentFieldCount<SystemStatsOptions>, documentFieldCount<StatsRows>,
              documentFieldCount<StatsWarnings>, documentFieldCount<StatsWarning>});
static_assert(kMostKeys <= 32, "one bit of a seen mask per key");

// One object being read: its keys, which of them must be there, which were seen, which of
// those last held a raw string that names nothing, and the key whose value comes next.
struct OpenObject {
    std::array<Slot, kMostKeys> slots{};
    int slotCount = 0;
    std::uint32_t required = 0;
    std::uint32_t seen = 0;
    std::uint32_t unparsable = 0;
    int pending = kNoKey;

    template <DocumentObject Object> explicit OpenObject(Object& object) {
        forEachDocumentEntry(object, [this](const auto& field, auto& member) {
            if (field.presence == KeyPresence::Required)
                required |= 1u << slotCount;
            slots[slotCount++] = {field.key, &member};
        });
    }
    bool complete() const { return (seen & required) == required && unparsable == 0; }
    int find(std::string_view key) const {
        for (int i = 0; i < slotCount; ++i) {
            if (slots[i].key == key)
                return i;
        }
        return kUnknownKey;
    }
};

bool isHexDigit(QChar c) {
    const char16_t u = c.unicode();
    return (u >= u'0' && u <= u'9') || (u >= u'a' && u <= u'f') || (u >= u'A' && u <= u'F');
}

// Only the canonical 36-character hyphenated form, in either case.
std::optional<QUuid> parseUuid(const QString& text) {
    if (text.size() != 36)
        return std::nullopt;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const bool hyphenPlace = i == 8 || i == 13 || i == 18 || i == 23;
        if (hyphenPlace ? text.at(i) != u'-' : !isHexDigit(text.at(i)))
            return std::nullopt;
    }
    return QUuid::fromString(text);
}

std::optional<QUuid> parseRaw(const QString& text, const QUuid*) {
    return parseUuid(text);
}

std::optional<PanelType> parseRaw(const QString& text, const PanelType*) {
    return panelTypeFromRaw(text);
}

std::optional<TextAlignmentOption> parseRaw(const QString& text, const TextAlignmentOption*) {
    return textAlignmentFromRaw(text);
}

enum class Placement { Stored, Unparsable, WrongType };

// Puts a string, number or boolean into `member` if its JSON type is the one the member is
// written as. A member written as a raw string takes only a string that names one of its
// values.
template <typename Member, typename Value> Placement place(Member* member, Value& value) {
    if constexpr (std::is_same_v<Member, Value>) {
        *member = std::move(value);
        return Placement::Stored;
    } else if constexpr (requires { parseRaw(value, member); }) {
        const auto parsed = parseRaw(value, member);
        if (!parsed)
            return Placement::Unparsable;
        *member = *parsed;
        return Placement::Stored;
    } else {
        return Placement::WrongType;
    }
}

// Receives the parser's events (nlohmann's SAX interface); any `false` stops the parse and
// rejects the document.
class Reader {
public:
    bool null() { return skippedScalar(); }
    bool boolean(bool value) { return scalar(value); }
    bool number_integer(Json::number_integer_t value) { return scalar(static_cast<double>(value)); }
    bool number_unsigned(Json::number_unsigned_t value) {
        return scalar(static_cast<double>(value));
    }
    bool number_float(Json::number_float_t value, const std::string&) { return scalar(value); }
    bool string(std::string& value) {
        return scalar(QString::fromUtf8(value.data(), value.size()));
    }
    bool binary(Json::binary_t&) { return false; }

    bool start_object(std::size_t) {
        if (m_skipDepth > 0 || skipsPendingValue()) {
            ++m_skipDepth;
            return true;
        }
        if (m_objects.empty())
            return m_inArray && openPanel();
        return openNested();
    }

    bool key(std::string& key) {
        if (m_skipDepth > 0)
            return true;
        m_objects.back().pending = m_objects.back().find(key);
        return true;
    }

    bool end_object() {
        if (m_skipDepth > 0)
            return leaveSkipped();
        OpenObject& object = m_objects.back();
        if (!object.complete())
            return false;
        if (m_objects.size() == 1)
            m_panels.append(std::move(m_panel));
        m_objects.pop_back();
        return true;
    }

    bool start_array(std::size_t) {
        if (m_skipDepth > 0 || skipsPendingValue()) {
            ++m_skipDepth;
            return true;
        }
        if (!m_objects.empty() || m_inArray || m_done)
            return false;
        m_inArray = true;
        return true;
    }

    bool end_array() {
        if (m_skipDepth > 0)
            return leaveSkipped();
        m_inArray = false;
        m_done = true;
        return true;
    }

    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) {
        return false;
    }

    std::optional<QList<Panel>> result() {
        if (!m_done)
            return std::nullopt;
        return std::move(m_panels);
    }

private:
    bool skipsPendingValue() const {
        return !m_objects.empty() && m_objects.back().pending == kUnknownKey;
    }

    bool leaveSkipped() {
        if (--m_skipDepth == 0)
            m_objects.back().pending = kNoKey;
        return true;
    }

    bool skippedScalar() {
        if (m_skipDepth > 0)
            return true;
        if (!skipsPendingValue())
            return false;
        m_objects.back().pending = kNoKey;
        return true;
    }

    // Stores a string, number or boolean in the pending key's place, if its type fits. A raw
    // string that names nothing rejects the object when it closes, so that a later value of
    // the same key still counts instead.
    template <typename Value> bool scalar(Value value) {
        if (m_skipDepth > 0 || skipsPendingValue())
            return skippedScalar();
        if (m_objects.empty())
            return false;
        OpenObject& object = m_objects.back();
        if (object.pending < 0)
            return false;
        const Placement placement =
            std::visit([&value](auto* member) { return place(member, value); },
                       object.slots[object.pending].target);
        if (placement == Placement::WrongType)
            return false;
        const std::uint32_t bit = 1u << object.pending;
        object.seen |= bit;
        object.unparsable =
            placement == Placement::Unparsable ? object.unparsable | bit : object.unparsable & ~bit;
        object.pending = kNoKey;
        return true;
    }

    bool openPanel() {
        m_panel = Panel();
        m_objects.emplace_back(m_panel);
        return true;
    }

    bool openNested() {
        OpenObject& parent = m_objects.back();
        if (parent.pending < 0)
            return false;
        const Target target = parent.slots[parent.pending].target;
        parent.seen |= 1u << parent.pending;
        parent.pending = kNoKey;
        return std::visit(
            [this](auto* member) {
                if constexpr (DocumentObject<std::remove_pointer_t<decltype(member)>>) {
                    m_objects.emplace_back(*member);
                    return true;
                } else {
                    return false;
                }
            },
            target);
    }

    std::vector<OpenObject> m_objects;
    int m_skipDepth = 0;
    bool m_inArray = false;
    bool m_done = false;
    QList<Panel> m_panels;
    Panel m_panel;
};

} // namespace

std::optional<QList<Panel>> readPanelList(const QByteArray& document) {
    Reader reader;
    const bool parsed = Json::sax_parse(document.begin(), document.end(), &reader,
                                        nlohmann::detail::input_format_t::json, true);
    if (!parsed)
        return std::nullopt;
    return reader.result();
}

} // namespace corkwheel
