// SPDX-License-Identifier: GPL-3.0-or-later

#include "FuzzInput.h"
#include "engine/CoreTicks.h"

using namespace corkwheel;

namespace {

// The N of a line that begins "cpuN" and a blank, worked out here byte by byte; -1 for any
// other line, and for an N past what an int holds.
qint64 lineCore(QByteArrayView line) {
    if (!line.startsWith("cpu"))
        return -1;
    qsizetype end = 3;
    while (end < line.size() && line[end] >= '0' && line[end] <= '9')
        ++end;
    if (end == 3 || end == line.size() || (line[end] != ' ' && line[end] != '\t'))
        return -1;
    const auto number = fuzz::plainDecimal(line.sliced(3, end - 3));
    return number && *number <= quint64(std::numeric_limits<int>::max()) ? qint64(*number) : -1;
}

} // namespace

// Any text as /proc/stat. Every core read comes from a "cpuN" line, in the order of the
// lines; each core's busy share, against any earlier reading, is a fraction; and a reading
// against itself is idle.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QByteArrayView text = fuzz::inputText(data, size);
    QList<qint64> lineCores;
    for (const QByteArrayView line : fuzz::piecesBetween(text, '\n')) {
        const qint64 core = lineCore(line);
        if (core >= 0)
            lineCores.append(core);
    }
    const QList<CoreTicks> cores = parseCoreTicks(text);
    qsizetype next = 0;
    for (const CoreTicks& core : cores) {
        while (next < lineCores.size() && lineCores[next] != core.core)
            ++next;
        fuzz::require(next < lineCores.size());
        ++next;
    }
    QList<CoreTicks> zero = cores;
    for (CoreTicks& core : zero)
        core.ticks = {};
    for (const QList<double>& shares :
         {coreBusyShares(zero, cores), coreBusyShares(cores, zero), coreBusyShares({}, cores)}) {
        fuzz::require(shares.size() == cores.size());
        for (const double share : shares)
            fuzz::require(share >= 0 && share <= 1);
    }
    for (const double share : coreBusyShares(cores, cores))
        fuzz::require(share == 0);
    return 0;
}
