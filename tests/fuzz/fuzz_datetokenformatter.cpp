// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzInput.h"
#include "engine/DateTokenFormatter.h"

using namespace corkwheel;

// Any text as a text panel's template and as a clock panel's date pattern.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text = QString::fromUtf8(fuzz::inputText(data, size));
    const QDateTime instant = QDateTime::fromSecsSinceEpoch(1700000000, QTimeZone::utc());
    const QString expanded = DateTokenFormatter::expand(text, instant);
    if (!text.contains(u"{date:"))
        fuzz::require(expanded == text);
    DateTokenFormatter::format(text, instant, QTimeZone::utc());
    return 0;
}
