// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace corkwheel::Utf8Text {

// `bytes` cut to at most `maxBytes`, a little shorter when the cut would split a
// character, so a kept prefix of valid UTF-8 stays valid.
QByteArray prefix(const QByteArray& bytes, qsizetype maxBytes);

// Drops the start of a character that a cut at the end of `cut` left incomplete.
void chopSplitCharacter(QByteArray& cut);

// Strict UTF-8, trimmed of white space at both ends; a single bad sequence makes the
// whole text count as empty.
QString decodeTrimmed(const QByteArray& bytes);

// Like decodeTrimmed, but no value for invalid UTF-8, for callers that show a message then.
std::optional<QString> decodeStrict(const QByteArray& bytes);

} // namespace corkwheel::Utf8Text
