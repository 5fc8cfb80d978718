// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QString>

#include <cstdint>

namespace corkwheel {

// A colour a terminal program asked for: the panel's own, one of the 256 indexed colours
// (the first 16 from the terminal palette), or an exact 24-bit one.
struct TerminalColor {
    enum class Kind : std::uint8_t { Default, Indexed, Rgb };

    Kind kind = Kind::Default;
    // The index for Indexed, 0xRRGGBB for Rgb.
    std::uint32_t value = 0;

    static TerminalColor indexed(int index) { return {Kind::Indexed, std::uint32_t(index)}; }
    static TerminalColor rgb(int r, int g, int b) {
        return {Kind::Rgb, std::uint32_t(r) << 16 | std::uint32_t(g) << 8 | std::uint32_t(b)};
    }
    bool isDefault() const { return kind == Kind::Default; }
    bool operator==(const TerminalColor&) const = default;
};

// The look a run of text was given by SGR escape sequences.
struct TextStyle {
    TerminalColor foreground;
    TerminalColor background;
    bool bold = false;
    bool dim = false;
    bool italic = false;
    bool underline = false;
    bool strikeOut = false;
    bool reverse = false;

    bool isPlain() const { return *this == TextStyle{}; }
    bool operator==(const TextStyle&) const = default;
};

// `length` characters of the text from `start` on, in `style`.
struct StyledRun {
    qsizetype start = 0;
    qsizetype length = 0;
    TextStyle style;

    bool operator==(const StyledRun&) const = default;
};

// Text as a terminal would show it: the characters, and the runs of them that are styled,
// in order and not overlapping. Text in the panel's own look has no run, so plain text has
// none at all.
struct StyledText {
    QString text;
    QList<StyledRun> runs;

    bool operator==(const StyledText&) const = default;
};

} // namespace corkwheel
