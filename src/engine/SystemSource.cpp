#include "engine/SystemSource.h"

#include "engine/MountTableWatch.h"

#include <QFile>

#include <sys/statvfs.h>

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

private:
    MountTableWatch m_mountTable;
};

} // namespace

const SystemSource& SystemSource::real() {
    static const RealSystemSource source;
    return source;
}

} // namespace corkwheel
