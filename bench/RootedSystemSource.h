// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/SystemSource.h"

#include <QLatin1String>
#include <QString>

namespace corkwheel::bench {

// This machine, with the hardware monitoring, thermal zones and power supplies of another
// machine's tree (tests/data/machines/<name>) in place of its own: each read there is the
// same system call on a file as on /sys, so sensors and batteries this machine lacks cost
// what they would. /proc, the volumes and the size of memory are this machine's.
class RootedSystemSource final : public SystemSource {
public:
    explicit RootedSystemSource(QString root) : m_root(std::move(root)) {}

    std::optional<QByteArray> readFile(const QString& path) const override {
        return files().readFile(where(path));
    }
    bool exists(const QString& path) const override { return files().exists(where(path)); }
    QString canonicalPath(const QString& path) const override {
        return files().canonicalPath(where(path));
    }
    QStringList entryNames(const QString& directory) const override {
        return files().entryNames(where(directory));
    }
    std::optional<VolumeCapacity> capacity(const QString& mountPoint) const override {
        return SystemSource::real().capacity(mountPoint);
    }
    bool mountTableChanged() const override { return SystemSource::real().mountTableChanged(); }
    double physicalMemoryBytes() const override {
        return SystemSource::real().physicalMemoryBytes();
    }
    int onlineCpuCount() const override { return SystemSource::real().onlineCpuCount(); }

private:
    static const KernelFiles& files() { return KernelFiles::real(); }

    QString where(const QString& path) const {
        for (const QLatin1String folder :
             {QLatin1String("/sys/class/hwmon"), QLatin1String("/sys/class/thermal"),
              QLatin1String("/sys/class/power_supply")}) {
            if (path.startsWith(folder))
                return m_root + path;
        }
        return path;
    }

    QString m_root;
};

} // namespace corkwheel::bench
