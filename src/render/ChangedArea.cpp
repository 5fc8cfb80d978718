// SPDX-License-Identifier: GPL-3.0-or-later

#include "render/ChangedArea.h"

#include <algorithm>
#include <cstring>

namespace corkwheel::ChangedArea {

namespace {

// The first and last column where two rows differ, when they do.
bool changedColumns(const QRgb* before, const QRgb* after, int width, int& first, int& last) {
    if (std::memcmp(before, after, static_cast<size_t>(width) * sizeof(QRgb)) == 0)
        return false;
    first = 0;
    while (before[first] == after[first])
        ++first;
    last = width - 1;
    while (before[last] == after[last])
        --last;
    return true;
}

} // namespace

QList<QRect> between(const QImage& before, const QImage& after, int gap) {
    QList<QRect> changed;
    QRect run;
    for (int y = 0; y < after.height(); ++y) {
        int first = 0;
        int last = 0;
        if (!changedColumns(reinterpret_cast<const QRgb*>(before.constScanLine(y)),
                            reinterpret_cast<const QRgb*>(after.constScanLine(y)), after.width(),
                            first, last)) {
            continue;
        }
        const QRect row(first, y, last - first + 1, 1);
        if (!run.isNull() && y - run.bottom() - 1 >= gap) {
            changed.append(run);
            run = QRect();
        }
        run = run.isNull() ? row : run.united(row);
    }
    if (!run.isNull())
        changed.append(run);
    return changed;
}

} // namespace corkwheel::ChangedArea
