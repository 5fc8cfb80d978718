// SPDX-License-Identifier: GPL-3.0-or-later

// The corkwheel binary on an X display of the test's own while an sshfs share has stopped
// answering: asking for its capacity or opening a file on it never returns. Nothing the user
// sees may freeze, and quitting still takes the panels away.

#include "support/PanelFixtures.h"
#include "support/PrivateXServer.h"
#include "support/XDisplayTools.h"
#include "support/XWindowImage.h"

#include <QTest>

#include <sys/mount.h>
#include <unistd.h>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// The share, mounted by a FUSE program of the test's own for as long as this lives.
class StuckShare {
public:
    explicit StuckShare(const QString& mountPoint) : m_mountPoint(mountPoint) {
        QDir().mkpath(mountPoint);
        m_program.start(QStringLiteral(STUCK_SHARE_PROGRAM), {mountPoint});
    }
    ~StuckShare() { stop(); }

    bool isMounted() const {
        QFile table(QStringLiteral("/proc/self/mountinfo"));
        return table.open(QIODevice::ReadOnly) &&
               table.readAll().contains(u' ' + QFile::encodeName(m_mountPoint) + " ");
    }

    // Ends the file system: whatever waits on it returns with an error.
    void stop() {
        if (m_program.state() != QProcess::NotRunning) {
            m_program.kill();
            m_program.waitForFinished(kWait);
        }
        ::umount2(QFile::encodeName(m_mountPoint).constData(), MNT_DETACH);
    }

private:
    QString m_mountPoint;
    QProcess m_program;
};

// Whether the window shows something other than `before` within `timeoutMs`.
bool changesFrom(WId window, const QImage& before, int timeoutMs) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < timeoutMs) {
        const QImage now = windowImage(window);
        if (!now.isNull() && now != before)
            return true;
        QTest::qWait(100);
    }
    return false;
}

} // namespace

class StuckShareEndToEndTest : public QObject {
    Q_OBJECT

private:
    PrivateXServer m_server;

private Q_SLOTS:
    void initTestCase() {
        if (::geteuid() != 0)
            QSKIP("Mounting the test's FUSE share needs root, as in CI");
        QVERIFY2(QFile::exists(QStringLiteral("/dev/fuse")), "/dev/fuse is missing");
        QVERIFY2(m_server.start(), "Xvfb did not start");
        qputenv("DISPLAY", m_server.display());
    }

    void stuckShareFreezesNothingAndQuittingStillWorks() {
        QTemporaryDir folder;
        const QString mountPoint = folder.filePath(QStringLiteral("remote"));
        StuckShare share(mountPoint);
        QTRY_VERIFY_WITH_TIMEOUT(share.isMounted(), kWait);

        const Panel clock =
            placedPanel(PanelType::Clock, QStringLiteral("Clock E2E"), {20, 20, 420, 60});
        const Panel stats =
            placedPanel(PanelType::SystemStats, QStringLiteral("Stats E2E"), {20, 100, 260, 320});
        Panel note = placedPanel(PanelType::File, QStringLiteral("Note E2E"), {300, 100, 320, 80});
        note.filePath = mountPoint + QStringLiteral("/note.txt");
        CorkwheelProcess corkwheel({clock, stats, note});

        const WId clockWindow = shownWindowNamed(clock.name);
        const WId statsWindow = shownWindowNamed(stats.name);
        const WId noteWindow = shownWindowNamed(note.name);
        QVERIFY(clockWindow && statsWindow && noteWindow);
        const QImage noteBefore = windowImage(noteWindow);

        // The clock turns every second, again and again.
        for (int second = 0; second < 3; ++second)
            QVERIFY2(changesFrom(clockWindow, windowImage(clockWindow), 2500), "the clock stopped");
        // The statistics go on refreshing: a busy core changes the CPU row.
        QProcess busy;
        busy.start(QStringLiteral("sh"),
                   {QStringLiteral("-c"), QStringLiteral("while :; do :; done")});
        const bool statsRefresh = changesFrom(statsWindow, windowImage(statsWindow), 5000);
        busy.kill();
        busy.waitForFinished(kWait);
        QVERIFY2(statsRefresh, "the statistics stopped");
        // The file that cannot be opened ends in a message instead of an empty panel for good.
        QVERIFY2(changesFrom(noteWindow, noteBefore, 15000), "the file panel never said why");

        // The editor opens.
        QCOMPARE(corkwheel.startAgain(), 0);
        QVERIFY(shownWindowNamed(QStringLiteral("Corkwheel")));

        // Asked to end, it takes its panels away at once, though a thread still waits on the
        // share; the process itself ends once the share lets that thread go.
        corkwheel.process().terminate();
        QTRY_VERIFY_WITH_TIMEOUT(windowsNamed(clock.name).isEmpty(), kWait);
        share.stop();
        QVERIFY(corkwheel.process().waitForFinished(kWait));
        QCOMPARE(corkwheel.process().exitStatus(), QProcess::NormalExit);
        QCOMPARE(corkwheel.process().exitCode(), 0);
    }
};

QTEST_MAIN(StuckShareEndToEndTest)
#include "tst_stuckshare_e2e.moc"
