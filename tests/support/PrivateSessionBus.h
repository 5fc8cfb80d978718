// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QProcess>

namespace corkwheel::test {

// A session bus of the test's own: a dbus-daemon, as dbus-run-session starts one, that both
// the running Corkwheel and the command line are pointed at. Ends with the object.
class PrivateSessionBus {
public:
    // Returns once the bus takes connections; false when it did not start.
    bool start() {
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--session"), QStringLiteral("--nofork"),
                        QStringLiteral("--print-address=1")});
        if (!m_daemon.waitForReadyRead(10000))
            return false;
        m_address = m_daemon.readLine().trimmed();
        return !m_address.isEmpty();
    }

    ~PrivateSessionBus() {
        m_daemon.terminate();
        if (!m_daemon.waitForFinished())
            m_daemon.kill();
        m_daemon.waitForFinished();
    }

    // As DBUS_SESSION_BUS_ADDRESS names it.
    const QByteArray& address() const { return m_address; }

private:
    QProcess m_daemon;
    QByteArray m_address;
};

} // namespace corkwheel::test
