// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/StyledText.h"

#include <QStringView>

namespace corkwheel::TerminalText {

// What a terminal would show of a program's output: its SGR sequences (ESC [ … m) become
// styled runs; every other escape or control sequence is removed (cursor movement, erase,
// OSC titles and hyperlinks, whose text stays, character-set selection, a lone ESC); a
// carriage return inside a line drops what came before it on that line; tabs expand to
// 8-column stops; other control characters are dropped. The result is trimmed as plain
// output is. Sequences cut off at the end of the output are dropped.
StyledText parse(QStringView output);

} // namespace corkwheel::TerminalText
