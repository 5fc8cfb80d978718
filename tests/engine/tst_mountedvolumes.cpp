// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/BlockDevice.h"
#include "engine/DiskLabels.h"
#include "engine/DiskList.h"
#include "engine/MountEntry.h"
#include "engine/UserVisibleMounts.h"
#include "support/FakeSystemSource.h"
#include "support/FixtureFile.h"

#include <QTest>

using namespace corkwheel;
using corkwheel::test::FakeSystemSource;
using corkwheel::test::fixtureFile;

namespace {

QList<MountEntry> mountsIn(const char* fixture) {
    return parseMountInfo(fixtureFile(QString::fromUtf8(fixture)));
}

QStringList mountPoints(const QList<MountEntry>& mounts) {
    QStringList points;
    for (const MountEntry& mount : mounts)
        points.append(mount.mountPoint);
    return points;
}

constexpr quint64 kGiB = Q_UINT64_C(1) << 30;

} // namespace

class MountedVolumesTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void mountInfoLineGivesRootMountPointTypeAndSource() {
        const QList<MountEntry> mounts = mountsIn("proc/mountinfo-desktop.txt");
        QCOMPARE(mounts.size(), 18);
        QCOMPARE(mounts[5], (MountEntry{QStringLiteral("/"), QStringLiteral("/"),
                                        QStringLiteral("ext4"), QStringLiteral("/dev/nvme0n1p2")}));
        QCOMPARE(mounts[15],
                 (MountEntry{QStringLiteral("/"), QStringLiteral("/mnt/nas"),
                             QStringLiteral("nfs4"), QStringLiteral("nas.local:/volume1/media")}));
    }

    void mountInfoWithoutOptionalTagsIsRead() {
        // Container tables often carry no "shared:" tags before the separator.
        const QList<MountEntry> mounts = mountsIn("proc/mountinfo-container.txt");
        QCOMPARE(mounts.size(), 7);
        QCOMPARE(mounts[6].root, QStringLiteral("/srv/projects"));
        QCOMPARE(mounts[6].source, QStringLiteral("/dev/vda1"));
    }

    void mountPointEscapesAreDecoded() {
        const QList<MountEntry> desktop = mountsIn("proc/mountinfo-desktop.txt");
        QCOMPARE(desktop[14].mountPoint, QStringLiteral("/media/alice/Holiday Photos"));
        const QList<MountEntry> btrfs = mountsIn("proc/mountinfo-btrfs.txt");
        QCOMPARE(btrfs[6].mountPoint, QStringLiteral("/mnt/My Share\t(old)\\archive"));
        QCOMPARE(btrfs[6].source, QStringLiteral("//fileserver/Old Archive"));
    }

    void backslashWithoutOctalDigitsIsKept() {
        QCOMPARE(decodeMountInfoEscapes("/mnt/a\\x41\\09"), QStringLiteral("/mnt/a\\x41\\09"));
        QCOMPARE(decodeMountInfoEscapes("/mnt/end\\04"), QStringLiteral("/mnt/end\\04"));
    }

    void octalBeyondAByteIsKept() {
        // Three octal digits go up to \777, a byte only to \377.
        QCOMPARE(decodeMountInfoEscapes("/mnt/a\\433b\\040c"), QStringLiteral("/mnt/a\\433b c"));
    }

    void malformedLinesAreSkipped() {
        QCOMPARE(parseMountInfo("29 1 259:2 / / rw,relatime shared:1 ext4 /dev/sda1 rw\n"
                                "\n"
                                "29 1 259:2 / / rw - ext4\n"),
                 QList<MountEntry>{});
    }

    void visibleMountsAreDisksOnceAndNetworkShares() {
        // Pseudo file systems, squashfs package images and the bind mount of a folder of
        // the root disk are left out.
        QCOMPARE(mountPoints(userVisibleMounts(mountsIn("proc/mountinfo-desktop.txt"))),
                 (QStringList{QStringLiteral("/"), QStringLiteral("/boot/efi"),
                              QStringLiteral("/media/alice/Holiday Photos"),
                              QStringLiteral("/mnt/nas"), QStringLiteral("/home/alice/remote")}));
    }

    void deviceMountedOnlyInPartsIsListedAtItsFirstMount() {
        const QList<MountEntry> visible = userVisibleMounts(mountsIn("proc/mountinfo-btrfs.txt"));
        QCOMPARE(
            mountPoints(visible),
            (QStringList{QStringLiteral("/"), QStringLiteral("/boot"), QStringLiteral("/boot/efi"),
                         QStringLiteral("/mnt/My Share\t(old)\\archive")}));
    }

    void mountShowingMostOfTheDiskWinsOverBindMountedFiles() {
        // In a container the disk first shows up as single bind-mounted files.
        QCOMPARE(mountPoints(userVisibleMounts(mountsIn("proc/mountinfo-container.txt"))),
                 QStringList{QStringLiteral("/work")});
    }

    void labelEscapesAreDecoded() {
        QCOMPARE(decodeUdevEscapes(QStringLiteral("Holiday\\x20Photos")),
                 QStringLiteral("Holiday Photos"));
        QCOMPARE(decodeUdevEscapes(QStringLiteral("a\\x2fb")), QStringLiteral("a/b"));
        // Bytes of one UTF-8 character escaped one by one.
        QCOMPARE(decodeUdevEscapes(QStringLiteral("Caf\\xc3\\xa9")), QStringLiteral("Café"));
        QCOMPARE(decodeUdevEscapes(QStringLiteral("x\\xZZ")), QStringLiteral("x\\xZZ"));
    }

    void labelsAreKeyedByResolvedDevice() {
        FakeSystemSource source;
        source.setLink(QStringLiteral("/dev/disk/by-label/Holiday\\x20Photos"),
                       QStringLiteral("/dev/sdb1"));
        source.setLink(QStringLiteral("/dev/disk/by-label/home"), QStringLiteral("/dev/dm-1"));
        source.setLink(QStringLiteral("/dev/disk/by-label/gone"), QString());
        const QHash<QString, QString> expected{
            {QStringLiteral("/dev/sdb1"), QStringLiteral("Holiday Photos")},
            {QStringLiteral("/dev/dm-1"), QStringLiteral("home")}};
        QCOMPARE(diskLabelsByDevice(source), expected);
    }

    void removableDiskIsExternal() {
        QVERIFY(!isInternalDisk(QByteArray("1\n"),
                                QStringLiteral("/sys/devices/pci0000:00/0000:00:14.5/mmc_host/"
                                               "mmc0/mmc0:aaaa/block/mmcblk0")));
    }

    void diskOnUsbIsExternalEvenWhenFixed() {
        QVERIFY(!isInternalDisk(QByteArray("0\n"),
                                QStringLiteral("/sys/devices/pci0000:00/0000:00:14.0/usb2/2-1/"
                                               "2-1:1.0/host4/target4:0:0/4:0:0:0/block/sdb")));
    }

    void fixedDiskOffUsbIsInternal() {
        QVERIFY(
            isInternalDisk(QByteArray("0\n"), QStringLiteral("/sys/devices/pci0000:00/0000:00:1d.0/"
                                                             "0000:3d:00.0/nvme/nvme0/nvme0n1")));
        QVERIFY(isInternalDisk(std::nullopt, QStringLiteral("/sys/devices/virtual/block/dm-0")));
    }

    void partitionIsJudgedByItsDisk() {
        FakeSystemSource source;
        const QString disk = QStringLiteral("/sys/devices/pci0000:00/0000:00:17.0/ata3/host2/"
                                            "target2:0:0/2:0:0:0/block/sda");
        source.setLink(QStringLiteral("/sys/class/block/sda1"), disk + QStringLiteral("/sda1"));
        source.setFile(disk + QStringLiteral("/sda1/partition"), "1\n");
        source.setFile(disk + QStringLiteral("/removable"), "1\n");
        QVERIFY(!isInternalBlockDevice(source, QStringLiteral("sda1")));
        source.setFile(disk + QStringLiteral("/removable"), "0\n");
        QVERIFY(isInternalBlockDevice(source, QStringLiteral("sda1")));
    }

    void deviceUnknownToSysfsCountsAsInternal() {
        FakeSystemSource source;
        QVERIFY(isInternalBlockDevice(source, QStringLiteral("root")));
    }

    void diskFiguresComeFromCapacity() {
        const QList<DiskInfo> disks =
            diskList({VolumeReading{QStringLiteral("/"), QStringLiteral("/"), true,
                                    VolumeCapacity{400 * kGiB, 100 * kGiB}}});
        QCOMPARE(disks, (QList<DiskInfo>{DiskInfo{QStringLiteral("/"), QStringLiteral("/"), true,
                                                  0.75, 100.0, 400.0}}));
    }

    void volumeWithoutKnownCapacityIsNotListed() {
        QCOMPARE(diskList({VolumeReading{QStringLiteral("/mnt/nas"), QStringLiteral("/mnt/nas"),
                                         false, std::nullopt}}),
                 QList<DiskInfo>{});
    }
};

QTEST_GUILESS_MAIN(MountedVolumesTest)
#include "tst_mountedvolumes.moc"
