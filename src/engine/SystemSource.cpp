// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/SystemSource.h"

#include "engine/MountTableWatch.h"

#include <QFile>

#include <algorithm>
#include <sys/statvfs.h>
#include <unistd.h>

namespace corkwheel {

namespace {

class RealSystemSource final : public MachineKernelFiles<SystemSource> {
public:
    std::optional<VolumeCapacity> capacity(const QString& mountPoint) const override {
        struct statvfs info {};
        if (::statvfs(QFile::encodeName(mountPoint).constData(), &info) != 0)
            return std::nullopt;
        return VolumeCapacity{quint64(info.f_blocks) * info.f_frsize,
                              quint64(info.f_bavail) * info.f_frsize};
    }

    bool mountTableChanged() const override { return m_mountTable.changed(); }

    double physicalMemoryBytes() const override {
        const long pages = ::sysconf(_SC_PHYS_PAGES);
        const long pageSize = ::sysconf(_SC_PAGE_SIZE);
        return pages > 0 && pageSize > 0 ? double(pages) * double(pageSize) : 0.0;
    }

    int onlineCpuCount() const override {
        const long count = ::sysconf(_SC_NPROCESSORS_ONLN);
        return count > 0 ? int(std::min<long>(count, 1 << 20)) : 1;
    }

private:
    MountTableWatch m_mountTable;
};

} // namespace

const SystemSource& SystemSource::real() {
    static const RealSystemSource source;
    return source;
}

} // namespace corkwheel
