// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/OffThreadReading.h"
#include "support/MockClock.h"

#include <QTest>
#include <QThread>

#include <atomic>
#include <condition_variable>
#include <mutex>

using namespace corkwheel;
using corkwheel::test::MockClock;

namespace {

// A reading the test holds up until it lets it go, counting how often it was started.
class HeldReading {
public:
    ~HeldReading() { release(); }

    int read() {
        std::unique_lock lock(m_mutex);
        const int number = ++m_started;
        m_released.wait(lock, [this] { return !m_held; });
        return number * 10;
    }
    void hold() {
        const std::lock_guard lock(m_mutex);
        m_held = true;
    }
    void release() {
        {
            const std::lock_guard lock(m_mutex);
            m_held = false;
        }
        m_released.notify_all();
    }
    int started() {
        const std::lock_guard lock(m_mutex);
        return m_started;
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_released;
    bool m_held = false;
    int m_started = 0;
};

} // namespace

class OffThreadReadingTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void readingComesToTheMainThread() {
        MockClock clock;
        HeldReading held;
        OffThreadReading<int> reading([&held] { return held.read(); }, clock);
        QObject receiver;
        QList<int> answers;
        bool onMainThread = false;
        reading.sample(&receiver, [&](int value) {
            answers.append(value);
            onMainThread = QThread::currentThread() == thread();
        });
        // Never answered from inside the call: the reading is on another thread.
        QVERIFY(answers.isEmpty());
        QTRY_COMPARE(answers, QList<int>{10});
        QVERIFY(onMainThread);
    }

    void stuckReadingIsAnsweredWithTheLastAtTheTimeLimit() {
        MockClock clock;
        HeldReading held;
        OffThreadReading<int> reading([&held] { return held.read(); }, clock,
                                      std::chrono::milliseconds(1000));
        QObject receiver;
        QList<int> answers;
        const auto keep = [&answers](int value) { answers.append(value); };
        reading.sample(&receiver, keep);
        QTRY_COMPARE(answers, QList<int>{10});

        held.hold();
        clock.advance(2);
        reading.sample(&receiver, keep);
        QTRY_COMPARE(held.started(), 2);
        clock.runFor(0.9);
        QCOMPARE(answers.size(), 1);
        clock.runFor(0.2);
        QCOMPARE(answers, (QList<int>{10, 10}));

        // Asked again while the stuck reading still holds its thread: no second one starts,
        // and the answer again comes at the time limit.
        clock.advance(2);
        reading.sample(&receiver, keep);
        QTest::qWait(50);
        QCOMPARE(held.started(), 2);
        QVERIFY(reading.isReading());
        clock.runFor(1.1);
        QCOMPARE(answers, (QList<int>{10, 10, 10}));

        // When it returns at last, its reading is the next one.
        clock.advance(2);
        reading.sample(&receiver, keep);
        held.release();
        QTRY_COMPARE(answers, (QList<int>{10, 10, 10, 20}));
    }

    void readingsAskedForInOneWakeUpAreOne() {
        MockClock clock;
        HeldReading held;
        OffThreadReading<int> reading([&held] { return held.read(); }, clock);
        QObject receiver;
        QList<int> answers;
        const auto keep = [&answers](int value) { answers.append(value); };
        reading.sample(&receiver, keep);
        reading.sample(&receiver, keep);
        QTRY_COMPARE(answers, (QList<int>{10, 10}));
        clock.advance(0.01);
        reading.sample(&receiver, keep);
        QCOMPARE(answers, (QList<int>{10, 10, 10}));
        QCOMPARE(held.started(), 1);
    }

    void goneReceiverIsNotAnswered() {
        MockClock clock;
        HeldReading held;
        OffThreadReading<int> reading([&held] { return held.read(); }, clock);
        QObject staying;
        bool stayingAnswered = false;
        bool goneAnswered = false;
        {
            QObject gone;
            reading.sample(&gone, [&goneAnswered](int) { goneAnswered = true; });
        }
        reading.sample(&staying, [&stayingAnswered](int) { stayingAnswered = true; });
        QTRY_VERIFY(stayingAnswered);
        QVERIFY(!goneAnswered);
    }
};

QTEST_GUILESS_MAIN(OffThreadReadingTest)
#include "tst_offthreadreading.moc"
