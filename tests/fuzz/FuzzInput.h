// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArrayView>
#include <QList>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <optional>

namespace corkwheel::fuzz {

// The fuzzer's bytes, taken as the text of the file or document under test.
inline QByteArrayView inputText(const std::uint8_t* data, std::size_t size) {
    return QByteArrayView(data, static_cast<qsizetype>(size));
}

// What a parser promises for every input. A broken promise stops the run like a crash, so
// the fuzzer keeps the input that broke it.
inline void require(bool holds) {
    if (!holds)
        std::abort();
}

// The checks below work out what a kernel file means on their own, byte by byte, so that a
// parser is held against the format rather than against itself.

// The bytes that count as white space around the values of the kernel's text files.
inline bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r';
}

inline QByteArrayView withoutBlankEnds(QByteArrayView text) {
    while (!text.isEmpty() && isBlank(text.front()))
        text = text.sliced(1);
    while (!text.isEmpty() && isBlank(text.back()))
        text = text.chopped(1);
    return text;
}

// The stretches of text between separators: n separators make n + 1 of them, some empty.
inline QList<QByteArrayView> piecesBetween(QByteArrayView text, char separator) {
    QList<QByteArrayView> pieces;
    qsizetype start = 0;
    for (qsizetype i = 0; i <= text.size(); ++i) {
        if (i == text.size() || text[i] == separator) {
            pieces.append(text.sliced(start, i - start));
            start = i + 1;
        }
    }
    return pieces;
}

// The value of a number written as decimal digits and nothing else, when it fits 64 bits.
inline std::optional<quint64> plainDecimal(QByteArrayView digits) {
    if (digits.isEmpty())
        return std::nullopt;
    constexpr quint64 kMax = std::numeric_limits<quint64>::max();
    quint64 value = 0;
    for (const char c : digits) {
        if (c < '0' || c > '9')
            return std::nullopt;
        const auto digit = static_cast<quint64>(c - '0');
        if (value > (kMax - digit) / 10)
            return std::nullopt;
        value = value * 10 + digit;
    }
    return value;
}

} // namespace corkwheel::fuzz
