// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/KernelFiles.h"
#include "engine/VolumeCapacity.h"

#include <optional>

namespace corkwheel {

// Everything the system statistics are read from: the kernel's files plus the capacity of
// mounted file systems and the size of the memory.
class SystemSource : public KernelFiles {
public:
    // Nothing when the file system at the mount point can't be asked.
    virtual std::optional<VolumeCapacity> capacity(const QString& mountPoint) const = 0;
    // Whether the mount table may have changed since the previous call; true when
    // nothing can tell.
    virtual bool mountTableChanged() const = 0;
    // The machine's physical memory, known even when /proc/meminfo can't be read.
    virtual double physicalMemoryBytes() const = 0;
    // How many logical CPUs are online; at least 1.
    virtual int onlineCpuCount() const = 0;

    // This machine.
    static const SystemSource& real();
};

} // namespace corkwheel
