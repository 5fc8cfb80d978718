// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzInput.h"
#include "engine/LoadAverage.h"

#include <cmath>
#include <cstdlib>
#include <string>

using namespace corkwheel;

namespace {

bool isSeparator(char c) {
    return c == ' ' || c == '\t' || c == '\n';
}

bool hasNonZeroDigit(QByteArrayView field) {
    for (const char c : field)
        if (c >= '1' && c <= '9')
            return true;
    return false;
}

// A figure the kernel could have written: digits with at most one point among them.
bool isFigure(QByteArrayView field) {
    int points = 0;
    int digits = 0;
    for (const char c : field) {
        if (c == '.')
            ++points;
        else if (c >= '0' && c <= '9')
            ++digits;
        else
            return false;
    }
    return digits > 0 && points <= 1;
}

} // namespace

// Any text as /proc/loadavg. It reads exactly when its first three fields are figures of
// digits with at most one point that a double holds: neither overflowing to infinity nor
// underflowing to zero from a nonzero figure. Each is then the C library's reading of it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArrayView text = fuzz::inputText(data, size);
    QList<QByteArrayView> fields;
    for (qsizetype at = 0; at < text.size() && fields.size() < 3;) {
        while (at < text.size() && isSeparator(text[at]))
            ++at;
        const qsizetype start = at;
        while (at < text.size() && !isSeparator(text[at]))
            ++at;
        if (at > start)
            fields.append(text.sliced(start, at - start));
    }
    bool readable = fields.size() == 3;
    double values[3] = {0, 0, 0};
    for (qsizetype i = 0; readable && i < 3; ++i) {
        readable = isFigure(fields[i]);
        if (readable) {
            const std::string field(fields[i].data(), std::size_t(fields[i].size()));
            values[i] = std::strtod(field.c_str(), nullptr);
            readable = std::isfinite(values[i]) && (values[i] != 0 || !hasNonZeroDigit(fields[i]));
        }
    }
    const auto load = parseLoadAverage(text);
    fuzz::require(load.has_value() == readable);
    if (load) {
        fuzz::require(load->one == values[0] && load->five == values[1] &&
                      load->fifteen == values[2]);
        fuzz::require(load->one >= 0 && load->five >= 0 && load->fifteen >= 0);
    }
    return 0;
}
