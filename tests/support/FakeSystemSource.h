// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/SystemSource.h"
#include "support/FakeKernelFiles.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <condition_variable>
#include <mutex>

namespace corkwheel::test {

// A machine made up by the test: files plus the capacity of each mount point. Capacities
// are asked from other threads; a mount point can be made to stop answering, like a network
// share whose server went away, until the test lets it go.
class FakeSystemSource final : public FakeKernelFiles<corkwheel::SystemSource> {
public:
    // Lets stuck questions go and waits until none is still inside.
    ~FakeSystemSource() override {
        releaseCapacities();
        std::unique_lock lock(m_questionsMutex);
        m_released.wait(lock, [&] { return m_questionsInside == 0; });
    }

    // Files are read from other threads too: each path read is counted under the lock.
    std::optional<QByteArray> readFile(const QString& path) const override {
        {
            const std::lock_guard lock(m_questionsMutex);
            m_pathsRead.append(path);
        }
        return FakeKernelFiles::readFile(path);
    }
    QStringList entryNames(const QString& directory) const override {
        {
            const std::lock_guard lock(m_questionsMutex);
            m_pathsRead.append(directory);
        }
        return FakeKernelFiles::entryNames(directory);
    }
    // Every file read and folder listed so far, in turn.
    QStringList pathsRead() const {
        const std::lock_guard lock(m_questionsMutex);
        return m_pathsRead;
    }

    std::optional<corkwheel::VolumeCapacity> capacity(const QString& mountPoint) const override {
        std::unique_lock lock(m_questionsMutex);
        ++m_questions[mountPoint];
        ++m_questionsInside;
        m_released.wait(lock, [&] { return !m_stuck.contains(mountPoint); });
        --m_questionsInside;
        m_released.notify_all();
        return m_capacities.value(mountPoint);
    }

    bool mountTableChanged() const override { return m_mountTableChanged; }
    double physicalMemoryBytes() const override { return m_physicalMemoryBytes; }
    int onlineCpuCount() const override { return m_onlineCpuCount; }

    void setCapacity(const QString& mountPoint, quint64 totalBytes, quint64 availableBytes) {
        const std::lock_guard lock(m_questionsMutex);
        m_capacities.insert(mountPoint, corkwheel::VolumeCapacity{totalBytes, availableBytes});
    }
    void removeCapacity(const QString& mountPoint) {
        const std::lock_guard lock(m_questionsMutex);
        m_capacities.remove(mountPoint);
    }
    // Until told otherwise the fake says every time that the mount table may have changed.
    void setMountTableChanged(bool changed) { m_mountTableChanged = changed; }
    void setPhysicalMemoryBytes(double bytes) { m_physicalMemoryBytes = bytes; }
    void setOnlineCpuCount(int count) { m_onlineCpuCount = count; }

    // Questions about the mount point wait until releaseCapacities().
    void makeCapacityStuck(const QString& mountPoint) {
        const std::lock_guard lock(m_questionsMutex);
        m_stuck.insert(mountPoint);
    }
    void releaseCapacities() {
        {
            const std::lock_guard lock(m_questionsMutex);
            m_stuck.clear();
        }
        m_released.notify_all();
    }
    // How often the mount point's capacity was asked for, answered or not.
    int questionsAbout(const QString& mountPoint) const {
        const std::lock_guard lock(m_questionsMutex);
        return m_questions.value(mountPoint);
    }

private:
    mutable std::mutex m_questionsMutex;
    mutable std::condition_variable m_released;
    mutable QHash<QString, int> m_questions;
    mutable QStringList m_pathsRead;
    mutable int m_questionsInside = 0;
    QSet<QString> m_stuck;
    QHash<QString, std::optional<corkwheel::VolumeCapacity>> m_capacities;
    bool m_mountTableChanged = true;
    double m_physicalMemoryBytes = 0;
    int m_onlineCpuCount = 4;
};

} // namespace corkwheel::test
