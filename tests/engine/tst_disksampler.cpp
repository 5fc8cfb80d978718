// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/DiskSampler.h"
#include "support/DiskReadings.h"
#include "support/FakeSystemSource.h"
#include "support/FixtureFile.h"
#include "support/MockClock.h"

#include <QElapsedTimer>
#include <QTest>

using namespace corkwheel;
using corkwheel::test::disksFrom;
using corkwheel::test::FakeSystemSource;
using corkwheel::test::fixtureFile;
using corkwheel::test::SteppingClock;

namespace {

constexpr quint64 kGiB = Q_UINT64_C(1) << 30;
const QString kNas = QStringLiteral("/mnt/nas");

// Two local disks and an NFS share; the share is listed last.
void setUpRootAndShare(FakeSystemSource& source) {
    source.setFile(QStringLiteral("/proc/self/mountinfo"),
                   fixtureFile(QStringLiteral("proc/mountinfo-internal-last.txt")));
    source.setCapacity(QStringLiteral("/media/ubuntu/STICK"), 32 * kGiB, 8 * kGiB);
    source.setCapacity(kNas, 4096 * kGiB, 1024 * kGiB);
    source.setCapacity(QStringLiteral("/media/ubuntu/Data"), 900 * kGiB, 300 * kGiB);
}

QStringList idsOf(const std::optional<QList<DiskInfo>>& disks) {
    QStringList ids;
    for (const DiskInfo& disk : disks.value_or(QList<DiskInfo>{}))
        ids.append(disk.id);
    return ids;
}

const QStringList kAllVolumes{QStringLiteral("/media/ubuntu/STICK"),
                              QStringLiteral("/media/ubuntu/Data"), kNas};
const QStringList kWithoutShare{QStringLiteral("/media/ubuntu/STICK"),
                                QStringLiteral("/media/ubuntu/Data")};

} // namespace

class DiskSamplerTest : public QObject {
    Q_OBJECT

    // Every reading in a refresh of its own.
    SteppingClock m_clock;

private Q_SLOTS:
    void everyVolumeThatAnswersIsListed() {
        FakeSystemSource source;
        setUpRootAndShare(source);
        DiskSampler sampler(source, m_clock);
        QCOMPARE(idsOf(disksFrom(sampler)), kAllVolumes);
    }

    void volumeThatDoesNotAnswerIsLeftOutOfThatReading() {
        FakeSystemSource source;
        setUpRootAndShare(source);
        source.makeCapacityStuck(kNas);
        DiskSampler sampler(source, m_clock, std::chrono::milliseconds(200));
        const auto disks = disksFrom(sampler);
        QVERIFY(disks);
        QCOMPARE(idsOf(disks), kWithoutShare);
    }

    void stuckVolumeIsNotAskedAgainUntilItAnswers() {
        FakeSystemSource source;
        setUpRootAndShare(source);
        source.makeCapacityStuck(kNas);
        DiskSampler sampler(source, m_clock, std::chrono::milliseconds(200));
        for (int reading = 0; reading < 3; ++reading)
            QCOMPARE(idsOf(disksFrom(sampler)), kWithoutShare);
        QCOMPARE(source.questionsAbout(kNas), 1);

        source.releaseCapacities();
        // The late answer frees the share; the reading after that asks it again.
        QTRY_COMPARE(idsOf(disksFrom(sampler)), kAllVolumes);
        QVERIFY(source.questionsAbout(kNas) >= 2);
    }

    void readingsAfterAVolumeGotStuckDoNotWaitForIt() {
        FakeSystemSource source;
        setUpRootAndShare(source);
        source.makeCapacityStuck(kNas);
        test::MockClock clock;
        DiskSampler sampler(source, clock);
        QObject receiver;
        bool firstCame = false;
        sampler.sample(&receiver, [&firstCame](const QList<DiskInfo>&) { firstCame = true; });
        clock.runFor(1.0);
        QVERIFY(firstCame);
        // The share is still stuck on the first question. The time limit never passes on
        // this clock, so a reading that waited for the share would never come; one that
        // comes at once lacks at most the volumes still answering the first question.
        QElapsedTimer polling;
        polling.start();
        std::optional<QList<DiskInfo>> later;
        do {
            QTest::qWait(10);
            clock.advance(60);
            later = disksFrom(sampler, 1000);
        } while (later && idsOf(later) != kWithoutShare && polling.elapsed() < 5000);
        QCOMPARE(idsOf(later), kWithoutShare);
    }

    void panelsAskingInOneWakeUpShareOneReading() {
        FakeSystemSource source;
        setUpRootAndShare(source);
        test::MockClock clock;
        DiskSampler sampler(source, clock);
        QObject receiver;
        int handed = 0;
        for (int panel = 0; panel < 3; ++panel)
            sampler.sample(&receiver, [&handed](const QList<DiskInfo>&) { ++handed; });
        QTRY_COMPARE(handed, 3);
        QCOMPARE(source.questionsAbout(kNas), 1);
        // Within the same wake-up the reading is handed over at once.
        sampler.sample(&receiver, [&handed](const QList<DiskInfo>&) { ++handed; });
        QCOMPARE(handed, 4);
        QCOMPARE(source.questionsAbout(kNas), 1);
    }

    void receiverGoneBeforeTheAnswersGetsNothing() {
        FakeSystemSource source;
        setUpRootAndShare(source);
        DiskSampler sampler(source, m_clock);
        bool handed = false;
        {
            QObject receiver;
            sampler.sample(&receiver, [&handed](const QList<DiskInfo>&) { handed = true; });
        }
        // A later request is answered, so the first one's answers have come in by then.
        QVERIFY(disksFrom(sampler));
        QVERIFY(!handed);
    }
};

QTEST_GUILESS_MAIN(DiskSamplerTest)
#include "tst_disksampler.moc"
