#include "model/PanelListReader.h"

#include <nlohmann/json.hpp>

#include <array>
#include <string_view>
#include <variant>
#include <vector>

namespace corkwheel {

namespace {

using Json = nlohmann::json;

// Where the value of one key goes. Objects nested in a panel are filled in place.
using Target = std::variant<double*, bool*, QString*, PanelFrame*, PanelStyle*, CodableColor*>;

struct Slot {
    std::string_view key;
    Target target;
};

constexpr int kNoKey = -1;
constexpr int kUnknownKey = -2;

// One object being read: its keys, which of them were seen, and the key whose value comes
// next.
struct OpenObject {
    std::array<Slot, 13> slots{};
    int slotCount = 0;
    std::uint32_t seen = 0;
    int pending = kNoKey;

    void add(std::string_view key, Target target) { slots[slotCount++] = {key, target}; }
    bool complete() const { return seen == (1u << slotCount) - 1; }
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
        const bool valid = m_objects.size() == 1 ? closePanel() : closeNested();
        m_objects.pop_back();
        return valid;
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

    // Stores a string, number or boolean in the pending key's place, if its type fits.
    template <typename Value> bool scalar(Value value) {
        if (m_skipDepth > 0 || skipsPendingValue())
            return skippedScalar();
        if (m_objects.empty())
            return false;
        OpenObject& object = m_objects.back();
        if (object.pending < 0)
            return false;
        auto* place = std::get_if<Value*>(&object.slots[object.pending].target);
        if (!place)
            return false;
        **place = std::move(value);
        object.seen |= 1u << object.pending;
        object.pending = kNoKey;
        return true;
    }

    bool openPanel() {
        m_panel = Panel();
        OpenObject panel;
        panel.add("id", &m_id);
        panel.add("name", &m_panel.name);
        panel.add("type", &m_type);
        panel.add("isEnabled", &m_panel.isEnabled);
        panel.add("frame", &m_panel.frame);
        panel.add("style", &m_panel.style);
        panel.add("refreshInterval", &m_panel.refreshInterval);
        panel.add("shellCommand", &m_panel.shellCommand);
        panel.add("filePath", &m_panel.filePath);
        panel.add("textTemplate", &m_panel.textTemplate);
        panel.add("clockFormat", &m_panel.clockFormat);
        panel.add("imageSource", &m_panel.imageSource);
        panel.add("webpageURL", &m_panel.webpageURL);
        m_objects.push_back(panel);
        return true;
    }

    bool openNested() {
        OpenObject& parent = m_objects.back();
        if (parent.pending < 0)
            return false;
        const Target target = parent.slots[parent.pending].target;
        parent.seen |= 1u << parent.pending;
        parent.pending = kNoKey;
        OpenObject child;
        if (auto* frame = std::get_if<PanelFrame*>(&target)) {
            child.add("x", &(*frame)->x);
            child.add("y", &(*frame)->y);
            child.add("width", &(*frame)->width);
            child.add("height", &(*frame)->height);
        } else if (auto* style = std::get_if<PanelStyle*>(&target)) {
            addStyleSlots(child, **style);
        } else if (auto* color = std::get_if<CodableColor*>(&target)) {
            child.add("red", &(*color)->red);
            child.add("green", &(*color)->green);
            child.add("blue", &(*color)->blue);
            child.add("alpha", &(*color)->alpha);
        } else {
            return false;
        }
        m_objects.push_back(child);
        return true;
    }

    void addStyleSlots(OpenObject& object, PanelStyle& style) {
        object.add("fontName", &style.fontName);
        object.add("fontSize", &style.fontSize);
        object.add("textColor", &style.textColor);
        object.add("backgroundColor", &style.backgroundColor);
        object.add("showShadow", &style.showShadow);
        object.add("showGlassBackground", &style.showGlassBackground);
        object.add("cornerRadius", &style.cornerRadius);
        object.add("opacity", &style.opacity);
        object.add("textAlignment", &m_alignment);
    }

    // The style is the only nested object with a raw string to check.
    bool closeNested() {
        if (m_objects.back().slots[0].key != "fontName")
            return true;
        const auto alignment = textAlignmentFromRaw(m_alignment);
        if (!alignment)
            return false;
        m_panel.style.textAlignment = *alignment;
        return true;
    }

    bool closePanel() {
        const auto id = parseUuid(m_id);
        const auto type = panelTypeFromRaw(m_type);
        if (!id || !type)
            return false;
        m_panel.id = *id;
        m_panel.type = *type;
        m_panels.append(std::move(m_panel));
        return true;
    }

    std::vector<OpenObject> m_objects;
    int m_skipDepth = 0;
    bool m_inArray = false;
    bool m_done = false;
    QList<Panel> m_panels;
    Panel m_panel;
    QString m_id;
    QString m_type;
    QString m_alignment;
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
