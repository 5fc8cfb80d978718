// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>

#include <optional>

namespace corkwheel {

// The document as UTF-8. A text editor may have saved it as UTF-16, which a JSON reader is
// to recognise (RFC 4627): by its byte order mark or, as JSON text starts with an ASCII
// character, by which of the first two bytes is zero. UTF-8, with or without its byte order
// mark, is returned as it is. No value when UTF-16 text does not decode.
std::optional<QByteArray> documentAsUtf8(const QByteArray& document);

} // namespace corkwheel
