// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTemporaryDir>
#include <QTest>

#include <csignal>
#include <sys/types.h>
#include <unistd.h>

namespace corkwheel::test {

// A session bus of the test's own with the accessibility bus on it, as a desktop session
// starts them for a screen reader: a dbus-daemon, at-spi-bus-launcher with the
// accessibility bus's own dbus-daemon, and at-spi2-registryd once a client first asks for
// it. All of them are one process group, which ends with the object, to the last process.
// None of them sees the X display: the launcher would announce its bus on the display's
// root window, where every later program on the display would find it.
class AccessibilityBus {
public:
    AccessibilityBus() = default;
    AccessibilityBus(const AccessibilityBus&) = delete;
    AccessibilityBus& operator=(const AccessibilityBus&) = delete;
    ~AccessibilityBus() { stop(); }

    static constexpr const char* kLauncher = "/usr/libexec/at-spi-bus-launcher";

    // Returns once the accessibility bus answers on the session bus; false when it did not.
    bool start() {
        if (!m_runtime.isValid())
            return false;
        m_session.setProcessEnvironment(environment());
        m_session.setChildProcessModifier([] { ::setpgid(0, 0); });
        m_session.start(QStringLiteral("dbus-daemon"),
                        {QStringLiteral("--session"), QStringLiteral("--nofork"),
                         QStringLiteral("--print-address=1")});
        if (!m_session.waitForStarted(kWaitMs))
            return false;
        m_group = static_cast<pid_t>(m_session.processId());
        if (!m_session.waitForReadyRead(kWaitMs))
            return false;
        m_sessionAddress = QString::fromUtf8(m_session.readLine().trimmed());

        QProcessEnvironment launcherEnvironment = environment();
        launcherEnvironment.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), m_sessionAddress);
        m_launcher.setProcessEnvironment(launcherEnvironment);
        const pid_t group = m_group;
        m_launcher.setChildProcessModifier([group] { ::setpgid(0, group); });
        m_launcher.start(QString::fromLatin1(kLauncher), {QStringLiteral("--launch-immediately")});
        if (!m_launcher.waitForStarted(kWaitMs))
            return false;
        m_address = askForAddress();
        return !m_address.isEmpty();
    }

    // DBUS_SESSION_BUS_ADDRESS of the session bus, and AT_SPI_BUS_ADDRESS of the
    // accessibility bus, as a client of both is given them.
    const QString& sessionAddress() const { return m_sessionAddress; }
    const QString& address() const { return m_address; }

    // The programs of the group still running, by name.
    QStringList running() const {
        QStringList names;
        const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs);
        for (const QString& entry : entries) {
            bool number = false;
            entry.toInt(&number);
            if (!number)
                continue;
            QFile stat(QStringLiteral("/proc/%1/stat").arg(entry));
            if (!stat.open(QIODevice::ReadOnly))
                continue;
            // "pid (name) state ppid group ...": the name may hold spaces and parentheses.
            const QString line = QString::fromUtf8(stat.readAll());
            const qsizetype close = line.lastIndexOf(u')');
            const QStringList fields = line.mid(close + 2).split(u' ');
            const bool ended =
                fields.value(0) == QStringLiteral("Z") || fields.value(0) == QStringLiteral("X");
            if (!ended && m_group > 0 && fields.value(2).toInt() == m_group)
                names << line.mid(line.indexOf(u'(') + 1, close - line.indexOf(u'(') - 1);
        }
        return names;
    }

    // Ends every process of the group; true when none is left running.
    bool stop() {
        if (m_group <= 0)
            return true;
        for (const int signal : {SIGTERM, SIGKILL}) {
            ::kill(-m_group, signal);
            if (QTest::qWaitFor([this] { return running().isEmpty(); }, kWaitMs))
                break;
        }
        m_launcher.waitForFinished(kWaitMs);
        m_session.waitForFinished(kWaitMs);
        const bool clean = running().isEmpty();
        m_group = 0;
        return clean;
    }

private:
    static constexpr int kWaitMs = 10000;

    QProcessEnvironment environment() const {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const char* name :
             {"DISPLAY", "WAYLAND_DISPLAY", "AT_SPI_BUS_ADDRESS", "DBUS_SESSION_BUS_ADDRESS"})
            env.remove(QString::fromLatin1(name));
        // The launcher's bus lives in the runtime folder, which is the bus's own here.
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_runtime.path());
        // It reads whether accessibility is on from the settings, which are not the user's.
        env.insert(QStringLiteral("GSETTINGS_BACKEND"), QStringLiteral("memory"));
        return env;
    }

    // The launcher's answer to where the accessibility bus is, once it gives one.
    QString askForAddress() const {
        const QString name = QStringLiteral("corkwheel-test-accessibility");
        QString address;
        {
            QDBusConnection bus = QDBusConnection::connectToBus(m_sessionAddress, name);
            // The address, empty when none came in time, is the answer.
            static_cast<void>(QTest::qWaitFor(
                [&] {
                    if (!bus.isConnected())
                        return true;
                    const QDBusMessage reply =
                        bus.call(QDBusMessage::createMethodCall(QStringLiteral("org.a11y.Bus"),
                                                                QStringLiteral("/org/a11y/bus"),
                                                                QStringLiteral("org.a11y.Bus"),
                                                                QStringLiteral("GetAddress")),
                                 QDBus::Block, 1000);
                    if (reply.type() == QDBusMessage::ReplyMessage)
                        address = reply.arguments().value(0).toString();
                    return !address.isEmpty();
                },
                kWaitMs));
        }
        QDBusConnection::disconnectFromBus(name);
        return address;
    }

    QTemporaryDir m_runtime;
    QProcess m_session;
    QProcess m_launcher;
    pid_t m_group = 0;
    QString m_sessionAddress;
    QString m_address;
};

} // namespace corkwheel::test
