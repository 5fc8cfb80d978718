// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/MountTableWatch.h"

#include <QStorageInfo>
#include <QTemporaryDir>
#include <QTest>

#include <sched.h>
#include <sys/mount.h>

using namespace corkwheel;

class MountTableWatchTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void quietMountTableCountsAsUnchanged() {
        const MountTableWatch watch;
        QVERIFY(!watch.changed());
        QVERIFY(!watch.changed());
    }

    void tableThatCantBeWatchedAlwaysCountsAsChanged() {
        const MountTableWatch watch(QStringLiteral("/nonexistent/mountinfo"));
        QVERIFY(watch.changed());
        QVERIFY(watch.changed());
    }

    // Mounts a file system in a mount namespace of this test's own, where that is allowed.
    // Only the mount that holds the test's folder is made private: in a chroot, as where the
    // suite runs on Debian 13, "/" is no mount point.
    void mountIsNoticedOnce() {
        QTemporaryDir directory;
        QVERIFY(directory.isValid());
        const QByteArray target = QFile::encodeName(directory.path());
        const QByteArray holder = QFile::encodeName(QStorageInfo(directory.path()).rootPath());
        if (::unshare(CLONE_NEWNS) != 0 ||
            ::mount(nullptr, holder.constData(), nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
            QSKIP("This test may not have a mount namespace of its own here");
        const MountTableWatch watch;
        if (::mount("none", target.constData(), "tmpfs", 0, nullptr) != 0)
            QSKIP("This test may not mount a file system here");
        QVERIFY(watch.changed());
        QVERIFY(!watch.changed());
        QVERIFY(::umount(target.constData()) == 0);
        QVERIFY(watch.changed());
    }
};

QTEST_GUILESS_MAIN(MountTableWatchTest)
#include "tst_mounttablewatch.moc"
