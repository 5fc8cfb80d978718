// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzInput.h"
#include "engine/TerminalText.h"

using namespace corkwheel;

// Any text as a command's output: what a panel shows of it holds no control character but
// newlines, and its runs cover the text in order without overlapping.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const StyledText shown = TerminalText::parse(QString::fromUtf8(fuzz::inputText(data, size)));
    for (const QChar c : shown.text)
        fuzz::require(c == u'\n' || (c.unicode() >= 0x20 && c.unicode() != 0x7f &&
                                     (c.unicode() < 0x80 || c.unicode() >= 0xa0)));
    qsizetype end = 0;
    for (const StyledRun& run : shown.runs) {
        fuzz::require(run.start >= end && run.length > 0 && !run.style.isPlain());
        end = run.start + run.length;
    }
    fuzz::require(end <= shown.text.size());
    return 0;
}
