// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArrayView>

#include <cstddef>
#include <cstdint>
#include <cstdlib>

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

} // namespace corkwheel::fuzz
