// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace corkwheel {

// Tells whether the mount table changed since it was last asked. The kernel marks an open
// /proc/self/mountinfo with a priority event after every mount and unmount, and a poll of
// that file takes the mark off again; so the table itself only needs reading after a change.
class MountTableWatch {
public:
    explicit MountTableWatch(const QString& path = QStringLiteral("/proc/self/mountinfo"));
    ~MountTableWatch();
    MountTableWatch(const MountTableWatch&) = delete;
    MountTableWatch& operator=(const MountTableWatch&) = delete;

    // True after a mount or unmount since the previous call, and always when the file
    // can't be watched, so a caller never keeps a stale table.
    bool changed() const;

private:
    int m_fd = -1;
};

} // namespace corkwheel
