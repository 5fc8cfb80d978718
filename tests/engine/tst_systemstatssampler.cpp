// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/SystemStatsSample.h"
#include "engine/SystemStatsSampler.h"
#include "support/DiskReadings.h"
#include "support/FakeSystemSource.h"
#include "support/FixtureFile.h"
#include "support/MockClock.h"

#include <QTest>

using namespace corkwheel;
using corkwheel::test::disksOf;
using corkwheel::test::FakeSystemSource;
using corkwheel::test::fixtureFile;
using corkwheel::test::MockClock;
using corkwheel::test::SteppingClock;

namespace {

constexpr quint64 kGiB = Q_UINT64_C(1) << 30;

const QString kStat = QStringLiteral("/proc/stat");
const QString kMeminfo = QStringLiteral("/proc/meminfo");
const QString kMountInfo = QStringLiteral("/proc/self/mountinfo");

const QString kNvmeDisk = QStringLiteral("/sys/devices/pci0000:00/0000:00:1d.0/0000:3d:00.0/"
                                         "nvme/nvme0/nvme0n1");
const QString kUsbDiskB = QStringLiteral("/sys/devices/pci0000:00/0000:00:14.0/usb2/2-1/2-1:1.0/"
                                         "host4/target4:0:0/4:0:0:0/block/sdb");
const QString kUsbDiskC = QStringLiteral("/sys/devices/pci0000:00/0000:00:14.0/usb1/1-3/1-3:1.0/"
                                         "host5/target5:0:0/5:0:0:0/block/sdc");

void setStat(FakeSystemSource& source, const char* fixture) {
    source.setFile(kStat, fixtureFile(QString::fromUtf8(fixture)));
}

// A partition as sysfs shows it: a link to its directory inside the disk's directory.
void addPartition(FakeSystemSource& source, const QString& diskPath, const QString& partition,
                  const QByteArray& removable) {
    source.setLink(QStringLiteral("/sys/class/block/") + partition, diskPath + u'/' + partition);
    source.setFile(diskPath + u'/' + partition + QStringLiteral("/partition"), "1\n");
    source.setFile(diskPath + QStringLiteral("/removable"), removable);
}

void addLabel(FakeSystemSource& source, const QString& linkName, const QString& device) {
    source.setLink(QStringLiteral("/dev/disk/by-label/") + linkName, device);
}

// A laptop with an NVMe disk, a USB stick, an NFS share and an sshfs mount.
void setUpDesktop(FakeSystemSource& source) {
    source.setFile(kMountInfo, fixtureFile(QStringLiteral("proc/mountinfo-desktop.txt")));
    addPartition(source, kNvmeDisk, QStringLiteral("nvme0n1p1"), "0\n");
    addPartition(source, kNvmeDisk, QStringLiteral("nvme0n1p2"), "0\n");
    addPartition(source, kUsbDiskB, QStringLiteral("sdb1"), "0\n");
    addLabel(source, QStringLiteral("EFI\\x20SYSTEM"), QStringLiteral("/dev/nvme0n1p1"));
    addLabel(source, QStringLiteral("Holiday\\x20Photos"), QStringLiteral("/dev/sdb1"));
    source.setCapacity(QStringLiteral("/"), 400 * kGiB, 100 * kGiB);
    source.setCapacity(QStringLiteral("/boot/efi"), kGiB / 2, kGiB / 4);
    source.setCapacity(QStringLiteral("/media/alice/Holiday Photos"), 64 * kGiB, 16 * kGiB);
    source.setCapacity(QStringLiteral("/mnt/nas"), 8192 * kGiB, 2048 * kGiB);
    source.setCapacity(QStringLiteral("/home/alice/remote"), 1000 * kGiB, 500 * kGiB);
}

// A live session: the root is an overlay, and the internal disk is mounted after a USB
// stick and an NFS share.
void setUpInternalLast(FakeSystemSource& source) {
    source.setFile(kMountInfo, fixtureFile(QStringLiteral("proc/mountinfo-internal-last.txt")));
    addPartition(source, kUsbDiskC, QStringLiteral("sdc1"), "0\n");
    addPartition(source, kNvmeDisk, QStringLiteral("nvme0n1p3"), "0\n");
    source.setCapacity(QStringLiteral("/media/ubuntu/STICK"), 32 * kGiB, 8 * kGiB);
    source.setCapacity(QStringLiteral("/mnt/nas"), 4096 * kGiB, 1024 * kGiB);
    source.setCapacity(QStringLiteral("/media/ubuntu/Data"), 900 * kGiB, 300 * kGiB);
}

QStringList idsOf(const QList<DiskInfo>& disks) {
    QStringList ids;
    for (const DiskInfo& disk : disks)
        ids.append(disk.id);
    return ids;
}

std::optional<DiskInfo> diskWithId(const QList<DiskInfo>& disks, const QString& id) {
    for (const DiskInfo& disk : disks) {
        if (disk.id == id)
            return disk;
    }
    return std::nullopt;
}

} // namespace

class SystemStatsSamplerTest : public QObject {
    Q_OBJECT

    // Every reading in a refresh of its own, unless a test says otherwise.
    SteppingClock m_clock;

private Q_SLOTS:
    void zeroSampleIsAllZero() {
        const SystemStatsSample zero = SystemStatsSample::zero();
        QCOMPARE(zero, (SystemStatsSample{0, 0, 0, 0, {}}));
    }

    void firstCpuReadingIsZeroThenBusyShareSinceIt() {
        FakeSystemSource source;
        SystemStatsSampler sampler(source, m_clock);
        setStat(source, "proc/stat-first.txt");
        QCOMPARE(sampler.sampleCPU(), 0.0);
        setStat(source, "proc/stat-second.txt");
        QCOMPARE(sampler.sampleCPU(), 0.28);
    }

    void cpuReadingWithoutTicksInBetweenIsZero() {
        FakeSystemSource source;
        SystemStatsSampler sampler(source, m_clock);
        setStat(source, "proc/stat-first.txt");
        sampler.sampleCPU();
        setStat(source, "proc/stat-second.txt");
        QCOMPARE(sampler.sampleCPU(), 0.28);
        QCOMPARE(sampler.sampleCPU(), 0.0);
    }

    void readingsAskedForInOneWakeUpAreTheSameReading() {
        FakeSystemSource source;
        MockClock clock;
        SystemStatsSampler sampler(source, clock);
        setStat(source, "proc/stat-first.txt");
        sampler.sampleCPU();
        clock.advance(1);
        setStat(source, "proc/stat-second.txt");
        QCOMPARE(sampler.sampleCPU(), 0.28);
        // The next panels of the same wake-up, without a tick in between.
        clock.advance(0.001);
        QCOMPARE(sampler.sampleCPU(), 0.28);
        clock.advance(0.03);
        QCOMPARE(sampler.sampleCPU(), 0.28);
        // A panel of its own schedule, a little later, measures again.
        clock.advance(0.05);
        QCOMPARE(sampler.sampleCPU(), 0.0);
    }

    void memoryAskedForInOneWakeUpIsTheSameReading() {
        FakeSystemSource source;
        MockClock clock;
        SystemStatsSampler sampler(source, clock);
        source.setFile(QStringLiteral("/proc/meminfo"),
                       "MemTotal:        8388608 kB\nMemAvailable:    4194304 kB\n");
        const MemoryReading first = sampler.sampleMemory();
        source.setFile(QStringLiteral("/proc/meminfo"),
                       "MemTotal:        8388608 kB\nMemAvailable:    2097152 kB\n");
        clock.advance(0.01);
        QCOMPARE(sampler.sampleMemory(), first);
        clock.advance(0.05);
        QCOMPARE(sampler.sampleMemory().usedFraction, 0.75);
    }

    void counterWrapStillGivesSmallDifference() {
        FakeSystemSource source;
        SystemStatsSampler sampler(source, m_clock);
        setStat(source, "proc/stat-before-wrap.txt");
        sampler.sampleCPU();
        setStat(source, "proc/stat-after-wrap.txt");
        // 40 user ticks across the wrap and 20 system ticks, of 200.
        QCOMPARE(sampler.sampleCPU(), 0.3);
    }

    void failedCpuReadIsZeroAndKeepsPreviousTicks() {
        FakeSystemSource source;
        SystemStatsSampler sampler(source, m_clock);
        setStat(source, "proc/stat-first.txt");
        sampler.sampleCPU();
        source.removeFile(kStat);
        QCOMPARE(sampler.sampleCPU(), 0.0);
        setStat(source, "proc/stat-cut-short.txt");
        QCOMPARE(sampler.sampleCPU(), 0.0);
        setStat(source, "proc/stat-second.txt");
        QCOMPARE(sampler.sampleCPU(), 0.28);
    }

    void memoryIsReadFromMeminfo() {
        FakeSystemSource source;
        source.setFile(kMeminfo, fixtureFile(QStringLiteral("proc/meminfo-desktop.txt")));
        SystemStatsSampler sampler(source, m_clock);
        const MemoryReading memory = sampler.sampleMemory();
        QCOMPARE(memory.usedGB, 6441996.0 / (1024 * 1024));
        QCOMPARE(memory.totalGB, 16318540.0 / (1024 * 1024));
        QCOMPARE(memory.usedFraction, 6441996.0 / 16318540.0);
    }

    void failedMemoryReadShowsNothingUsedOfKnownTotal() {
        FakeSystemSource source;
        source.setFile(kMeminfo, fixtureFile(QStringLiteral("proc/meminfo-old-kernel.txt")));
        SystemStatsSampler sampler(source, m_clock);
        QCOMPARE(sampler.sampleMemory(), (MemoryReading{0, 0, 2048000.0 / (1024 * 1024)}));
    }

    void unreadableMeminfoShowsThePhysicalMemory() {
        FakeSystemSource source;
        source.setPhysicalMemoryBytes(4.0 * (1 << 30));
        SystemStatsSampler sampler(source, m_clock);
        QCOMPARE(sampler.sampleMemory(), (MemoryReading{0, 0, 4.0}));
    }

    void meminfoWithoutTotalShowsThePhysicalMemory() {
        FakeSystemSource source;
        source.setFile(kMeminfo, fixtureFile(QStringLiteral("proc/meminfo-no-total.txt")));
        source.setPhysicalMemoryBytes(16.0 * (1 << 30));
        SystemStatsSampler sampler(source, m_clock);
        QCOMPARE(sampler.sampleMemory(), (MemoryReading{0, 0, 16.0}));
    }

    void disksShowLabelsCapacitiesAndPlacement() {
        FakeSystemSource source;
        setUpDesktop(source);
        SystemStatsSampler sampler(source, m_clock);
        const QList<DiskInfo> expected{
            {QStringLiteral("/"), QStringLiteral("/"), true, 0.75, 100, 400},
            {QStringLiteral("/boot/efi"), QStringLiteral("EFI SYSTEM"), true, 0.5, 0.25, 0.5},
            {QStringLiteral("/media/alice/Holiday Photos"), QStringLiteral("Holiday Photos"), false,
             0.75, 16, 64},
            {QStringLiteral("/mnt/nas"), QStringLiteral("/mnt/nas"), false, 0.75, 2048, 8192},
            {QStringLiteral("/home/alice/remote"), QStringLiteral("/home/alice/remote"), false, 0.5,
             500, 1000}};
        QCOMPARE(disksOf(sampler), expected);
    }

    void deviceBehindMapperLinkFindsItsLabel() {
        FakeSystemSource source;
        source.setFile(kMountInfo, fixtureFile(QStringLiteral("proc/mountinfo-lvm.txt")));
        source.setLink(QStringLiteral("/dev/mapper/vgubuntu-root"), QStringLiteral("/dev/dm-1"));
        addLabel(source, QStringLiteral("ubuntu-root"), QStringLiteral("/dev/dm-1"));
        source.setLink(QStringLiteral("/sys/class/block/dm-1"),
                       QStringLiteral("/sys/devices/virtual/block/dm-1"));
        source.setFile(QStringLiteral("/sys/devices/virtual/block/dm-1/removable"), "0\n");
        source.setCapacity(QStringLiteral("/"), 200 * kGiB, 50 * kGiB);
        source.setCapacity(QStringLiteral("/boot"), 2 * kGiB, kGiB);
        SystemStatsSampler sampler(source, m_clock);
        const QList<DiskInfo> disks = disksOf(sampler);
        QCOMPARE(idsOf(disks), (QStringList{QStringLiteral("/"), QStringLiteral("/boot")}));
        QCOMPARE(disks[0].name, QStringLiteral("ubuntu-root"));
        QVERIFY(disks[0].isInternal);
    }

    void volumeWithMoreAvailableThanTotalShowsNothingUsed() {
        FakeSystemSource source;
        setUpDesktop(source);
        source.setCapacity(QStringLiteral("/mnt/nas"), 100 * kGiB, 120 * kGiB);
        SystemStatsSampler sampler(source, m_clock);
        const auto nas = diskWithId(disksOf(sampler), QStringLiteral("/mnt/nas"));
        QVERIFY(nas);
        QCOMPARE(nas->usedFraction, 0.0);
        QCOMPARE(nas->freeGB, 120.0);
        QCOMPARE(nas->totalGB, 100.0);
    }

    void volumeWithZeroTotalIsNotListed() {
        FakeSystemSource source;
        setUpDesktop(source);
        source.setCapacity(QStringLiteral("/home/alice/remote"), 0, 0);
        SystemStatsSampler sampler(source, m_clock);
        QCOMPARE(idsOf(disksOf(sampler)),
                 (QStringList{QStringLiteral("/"), QStringLiteral("/boot/efi"),
                              QStringLiteral("/media/alice/Holiday Photos"),
                              QStringLiteral("/mnt/nas")}));
    }

    void volumeWhoseCapacityCantBeReadIsNotListed() {
        FakeSystemSource source;
        setUpInternalLast(source);
        source.removeCapacity(QStringLiteral("/mnt/nas"));
        SystemStatsSampler sampler(source, m_clock);
        QVERIFY(!diskWithId(disksOf(sampler), QStringLiteral("/mnt/nas")));
    }

    void internalDiskListedAfterTwoExternalComesFirst() {
        FakeSystemSource source;
        setUpInternalLast(source);
        SystemStatsSampler sampler(source, m_clock);
        const QList<DiskInfo> disks = disksOf(sampler);
        QCOMPARE(idsOf(disks),
                 (QStringList{QStringLiteral("/media/ubuntu/Data"),
                              QStringLiteral("/media/ubuntu/STICK"), QStringLiteral("/mnt/nas")}));
        QCOMPARE(disks[0].isInternal, true);
        QCOMPARE(disks[1].isInternal, false);
        QCOMPARE(disks[2].isInternal, false);
    }

    void volumeWithUnknownInternalFlagSortsAsInternal() {
        FakeSystemSource source;
        setUpInternalLast(source);
        source.removeLink(QStringLiteral("/sys/class/block/nvme0n1p3"));
        SystemStatsSampler sampler(source, m_clock);
        const QList<DiskInfo> disks = disksOf(sampler);
        QCOMPARE(idsOf(disks),
                 (QStringList{QStringLiteral("/media/ubuntu/Data"),
                              QStringLiteral("/media/ubuntu/STICK"), QStringLiteral("/mnt/nas")}));
        QVERIFY(disks[0].isInternal);
    }

    void unreadableMountTableGivesNoDisks() {
        FakeSystemSource source;
        setUpDesktop(source);
        source.removeFile(kMountInfo);
        SystemStatsSampler sampler(source, m_clock);
        QCOMPARE(disksOf(sampler), QList<DiskInfo>{});
    }

    void unchangedMountTableIsNotReadAgainButCapacitiesAre() {
        FakeSystemSource source;
        setUpDesktop(source);
        SystemStatsSampler sampler(source, m_clock);
        QCOMPARE(disksOf(sampler).size(), 5);
        source.setMountTableChanged(false);
        // Gone from the table, but nothing says the table changed.
        source.setFile(kMountInfo, fixtureFile(QStringLiteral("proc/mountinfo-lvm.txt")));
        source.setCapacity(QStringLiteral("/"), 400 * kGiB, 300 * kGiB);
        const QList<DiskInfo> disks = disksOf(sampler);
        QCOMPARE(disks.size(), 5);
        QCOMPARE(disks[0].id, QStringLiteral("/"));
        QCOMPARE(disks[0].freeGB, 300.0);
        QCOMPARE(disks[0].usedFraction, 0.25);
    }

    void changedMountTableIsReadAgain() {
        FakeSystemSource source;
        setUpDesktop(source);
        SystemStatsSampler sampler(source, m_clock);
        source.setMountTableChanged(false);
        QCOMPARE(disksOf(sampler).size(), 5);
        setUpInternalLast(source);
        source.setMountTableChanged(true);
        QCOMPARE(idsOf(disksOf(sampler)),
                 (QStringList{QStringLiteral("/media/ubuntu/Data"),
                              QStringLiteral("/media/ubuntu/STICK"), QStringLiteral("/mnt/nas")}));
    }

    void firstReadingNeedsNoChangeOfTheMountTable() {
        FakeSystemSource source;
        setUpDesktop(source);
        source.setMountTableChanged(false);
        SystemStatsSampler sampler(source, m_clock);
        QCOMPARE(disksOf(sampler).size(), 5);
    }

    void realMachineGivesSaneReadings() {
        SystemStatsSampler& sampler = SystemStatsSampler::shared();
        QCOMPARE(&sampler, &SystemStatsSampler::shared());
        const MemoryReading memory = sampler.sampleMemory();
        QVERIFY(memory.totalGB > 0);
        QVERIFY(memory.usedFraction >= 0 && memory.usedFraction <= 1);
        sampler.sampleCPU();
        const double cpu = sampler.sampleCPU();
        QVERIFY(cpu >= 0 && cpu <= 1);
        for (const DiskInfo& disk : disksOf(sampler)) {
            QVERIFY2(disk.totalGB > 0, qPrintable(disk.id));
            QVERIFY2(disk.usedFraction >= 0 && disk.usedFraction <= 1, qPrintable(disk.id));
        }
    }
};

QTEST_GUILESS_MAIN(SystemStatsSamplerTest)
#include "tst_systemstatssampler.moc"
