// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/MeminfoField.h"

#include <algorithm>

namespace corkwheel {

namespace {

bool isSpaceOrTab(char c) {
    return c == ' ' || c == '\t';
}

} // namespace

// Read in place: the statistics panel asks every refresh, and copying the table into a list
// of lines cost more than the rest of it.
std::optional<double> meminfoBytes(QByteArrayView meminfo, QByteArrayView key) {
    for (qsizetype start = 0; start < meminfo.size();) {
        qsizetype end = meminfo.indexOf('\n', start);
        if (end < 0)
            end = meminfo.size();
        const QByteArrayView line = meminfo.sliced(start, end - start);
        start = end + 1;
        if (!line.startsWith(key) || line.size() == key.size() || line[key.size()] != ':')
            continue;
        const QByteArrayView rest = line.sliced(key.size() + 1);
        const auto first = std::find_if_not(rest.begin(), rest.end(), isSpaceOrTab);
        const auto last = std::find_if(first, rest.end(), isSpaceOrTab);
        bool ok = false;
        const quint64 kilobytes = QByteArrayView(first, last).toULongLong(&ok);
        if (!ok)
            return std::nullopt;
        return double(kilobytes) * 1024.0;
    }
    return std::nullopt;
}

} // namespace corkwheel
