#pragma once

#include "FakeKernelFiles.h"
#include "engine/SystemSource.h"

#include <QHash>

namespace corkwheel::test {

// A machine made up by the test: files plus the capacity of each mount point.
class FakeSystemSource final : public FakeKernelFiles<corkwheel::SystemSource> {
public:
    std::optional<corkwheel::VolumeCapacity> capacity(const QString& mountPoint) const override {
        const auto it = m_capacities.constFind(mountPoint);
        if (it == m_capacities.cend())
            return std::nullopt;
        return *it;
    }

    bool mountTableChanged() const override { return m_mountTableChanged; }
    double physicalMemoryBytes() const override { return m_physicalMemoryBytes; }

    void setCapacity(const QString& mountPoint, quint64 totalBytes, quint64 availableBytes) {
        m_capacities.insert(mountPoint, corkwheel::VolumeCapacity{totalBytes, availableBytes});
    }
    void removeCapacity(const QString& mountPoint) { m_capacities.remove(mountPoint); }
    // Until told otherwise the fake says every time that the mount table may have changed.
    void setMountTableChanged(bool changed) { m_mountTableChanged = changed; }
    void setPhysicalMemoryBytes(double bytes) { m_physicalMemoryBytes = bytes; }

private:
    QHash<QString, corkwheel::VolumeCapacity> m_capacities;
    bool m_mountTableChanged = true;
    double m_physicalMemoryBytes = 0;
};

} // namespace corkwheel::test
