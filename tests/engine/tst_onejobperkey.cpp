// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/OneJobPerKey.h"

#include <QSemaphore>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QThreadPool>

#include <atomic>
#include <memory>

using namespace corkwheel;

namespace {

const QString kShare = QStringLiteral("/mnt/share");
const QString kOther = QStringLiteral("/mnt/other");

// Work that stays under way until the test lets it return, as a stuck mount does.
class HeldWork {
public:
    // What a job of this work returns.
    auto job(int result) {
        return [this, result] {
            ++m_started;
            m_release.acquire();
            return result;
        };
    }
    void release(int jobs = 1) { m_release.release(jobs); }
    int started() const { return m_started; }

private:
    QSemaphore m_release;
    std::atomic<int> m_started = 0;
};

} // namespace

class OneJobPerKeyTest : public QObject {
    Q_OBJECT

private:
    QThreadPool m_pool;
    std::unique_ptr<HeldWork> m_held;
    // A test's jobs live in the test function, and their receiver goes with the test: work
    // still held when the test ends returns only once nothing is there to take its result.
    std::unique_ptr<QObject> m_receiver;
    QList<int> m_delivered;

    auto recordResult() {
        return [this](int result) { m_delivered.append(result); };
    }

private Q_SLOTS:
    void init() {
        m_pool.setMaxThreadCount(8);
        m_held = std::make_unique<HeldWork>();
        m_receiver = std::make_unique<QObject>();
        m_delivered.clear();
    }

    void cleanup() {
        m_receiver.reset();
        // Nothing may stay held past its test.
        m_held->release(8);
        QVERIFY(m_pool.waitForDone(5000));
        QCoreApplication::processEvents();
    }

    void askForAKeyUnderWayStartsNothingUntilItsJobReturns() {
        OneJobPerKey jobs(m_receiver.get());
        QVERIFY(jobs.run(m_pool, kShare, m_held->job(1), recordResult()));
        QVERIFY(jobs.isUnderWay(kShare));
        QVERIFY(!jobs.run(m_pool, kShare, m_held->job(2), recordResult()));
        QVERIFY(!jobs.run(m_pool, kShare, m_held->job(3), recordResult()));
        QTRY_COMPARE(m_held->started(), 1);

        m_held->release();
        QTRY_COMPARE(m_delivered, QList<int>({1}));
        QVERIFY(!jobs.isUnderWay(kShare));

        // Once it returned, the key runs again; the asks it took in were not run again
        // before it, or more would have started and been delivered.
        QVERIFY(jobs.run(m_pool, kShare, m_held->job(4), recordResult()));
        m_held->release();
        QTRY_COMPARE(m_delivered, QList<int>({1, 4}));
        QCOMPARE(m_held->started(), 2);
    }

    void otherKeysRunBesideAStuckOne() {
        OneJobPerKey jobs(m_receiver.get());
        QVERIFY(jobs.run(m_pool, kShare, m_held->job(1), recordResult()));
        QVERIFY(jobs.run(
            m_pool, kOther, [] { return 2; }, recordResult()));
        QTRY_COMPARE(m_delivered, QList<int>({2}));
        QVERIFY(jobs.isUnderWay(kShare));
        QVERIFY(!jobs.isUnderWay(kOther));
    }

    void resultComesOnTheMainThread() {
        OneJobPerKey jobs(m_receiver.get());
        QThread* deliveredOn = nullptr;
        jobs.run(
            m_pool, kShare, [] { return 1; }, [&](int) { deliveredOn = QThread::currentThread(); });
        QTRY_VERIFY(deliveredOn != nullptr);
        QCOMPARE(deliveredOn, QCoreApplication::instance()->thread());
    }

    void nothingIsDeliveredOnceTheReceiverIsGone() {
        auto receiver = std::make_unique<QObject>();
        auto jobs = std::make_unique<OneJobPerKey>(receiver.get());
        jobs->run(m_pool, kShare, m_held->job(1), recordResult());
        QTRY_COMPARE(m_held->started(), 1);
        jobs.reset();
        receiver.reset();
        // A job whose receiver stays, run beside it, is delivered: the gone one's result
        // would have been by then.
        QList<int> stayed;
        OneJobPerKey staying(m_receiver.get());
        staying.run(
            m_pool, kOther, [] { return 2; }, [&stayed](int result) { stayed.append(result); });
        m_held->release();
        QVERIFY(m_pool.waitForDone(5000));
        QTRY_COMPARE(stayed, QList<int>({2}));
        QVERIFY(m_delivered.isEmpty());
    }

    void jobOfSeveralStepsHoldsItsKeyUntilFinished() {
        OneJobPerKey jobs(m_receiver.get());
        QVERIFY(jobs.start(kShare));
        QVERIFY(!jobs.start(kShare));
        QVERIFY(!jobs.run(
            m_pool, kShare, [] { return 1; }, recordResult()));
        jobs.finish(kShare);
        QVERIFY(!jobs.isUnderWay(kShare));
        QVERIFY(jobs.run(
            m_pool, kShare, [] { return 2; }, recordResult()));
        QTRY_COMPARE(m_delivered, QList<int>({2}));
    }
};

QTEST_GUILESS_MAIN(OneJobPerKeyTest)
#include "tst_onejobperkey.moc"
