// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// The pointer a headless Wayland compositor lacks, for the tests that move and press it.

#include "support/CorkwheelProcess.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QPoint>
#include <QProcess>
#include <QSize>
#include <QString>
#include <QTest>

namespace corkwheel::test {

// A virtual device of the compositor's, made by the wayland-pointer-device program, that a
// test moves and presses. Its positions are the compositor's layout coordinates: the device
// is told the layout's size, over which sway spreads its absolute motions.
class WaylandPointer {
public:
    WaylandPointer() = default;
    WaylandPointer(const WaylandPointer&) = delete;
    WaylandPointer& operator=(const WaylandPointer&) = delete;

    // Starts `program` for a layout of `layout`; false when the compositor took no device.
    bool plugIn(const QString& program, QSize layout) {
        m_device.start(program,
                       {QString::number(layout.width()), QString::number(layout.height())});
        return answer() == "ready";
    }

    ~WaylandPointer() {
        m_device.closeWriteChannel();
        if (!m_device.waitForFinished(kWait))
            m_device.kill();
    }

    bool moveTo(QPoint at) { return command(QStringLiteral("move %1 %2").arg(at.x()).arg(at.y())); }

    void click(QPoint at) {
        moveTo(at);
        command(QStringLiteral("press"));
        command(QStringLiteral("release"));
    }

    // A press at `from`, the pointer moved in steps to `to`, and the release there.
    void drag(QPoint from, QPoint to) {
        moveTo(from);
        command(QStringLiteral("press"));
        constexpr int kSteps = 10;
        for (int step = 1; step <= kSteps; ++step) {
            moveTo(from + (to - from) * step / kSteps);
            QTest::qWait(20);
        }
        command(QStringLiteral("release"));
    }

private:
    bool command(const QString& line) {
        m_device.write(line.toUtf8() + '\n');
        return answer() == "ok";
    }

    // The device's next line, while this process goes on handling its own windows' events.
    QByteArray answer() {
        QElapsedTimer timer;
        timer.start();
        while (!m_device.canReadLine() && timer.elapsed() < kWait)
            QTest::qWait(5);
        return m_device.readLine().trimmed();
    }

    QProcess m_device;
};

} // namespace corkwheel::test
