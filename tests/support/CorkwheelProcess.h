// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Shared by the end-to-end tests: tools run from a test, and the corkwheel binary started
// with a document and XDG folders of its own.

#include "support/OtherUser.h"

#include "model/Panel.h"
#include "model/PanelDocument.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>

namespace corkwheel::test {

inline constexpr int kWait = 5000;

// Why the tests cannot run: the first of `tools` that is not installed. Empty when all are.
inline QString missingTool(const QStringList& tools) {
    for (const QString& tool : tools) {
        if (QStandardPaths::findExecutable(tool).isEmpty())
            return tool + QStringLiteral(" is missing: scripts/test.sh installs it");
    }
    return {};
}

// Waits for a started process to end while this process keeps handling its own window
// events (the tool may be waiting on them); one still running after `ms` is killed. True
// when it ended by itself.
inline bool finishWithin(QProcess& process, int ms) {
    if (QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, ms))
        return true;
    process.kill();
    process.waitForFinished(kWait);
    return false;
}

// Runs a tool to the end while this process keeps handling its own window events.
inline QString run(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForStarted(kWait))
        return {};
    finishWithin(process, 20000);
    return QString::fromUtf8(process.readAllStandardOutput());
}

// The corkwheel binary with its own XDG folders and a document holding the panels it was
// started with.
class CorkwheelProcess {
public:
    // `qpaPlatform` is the Qt platform plugin it is told to use; none lets it choose itself.
    // `user`, when given, is who the binary runs as instead of the test's own user (which
    // must be root then): the folders and the document become that user's, as a session's
    // are, and the binary is started through setpriv. `environment` ("NAME=value") is set for
    // the binary on top of the test's own.
    explicit CorkwheelProcess(const QList<Panel>& panels,
                              const QString& qpaPlatform = QStringLiteral("xcb"),
                              const OtherUser* user = nullptr, const QStringList& environment = {})
        : m_qpaPlatform(qpaPlatform), m_user(user), m_environment(environment),
          m_loadsWebEngine(std::any_of(panels.begin(), panels.end(), [](const Panel& panel) {
              return panel.type == PanelType::Webpage;
          })) {
        const QDir home(m_home.path());
        home.mkpath(QStringLiteral("data/Corkwheel"));
        home.mkpath(QStringLiteral("runtime"));
        QFile::setPermissions(home.filePath(QStringLiteral("runtime")),
                              QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                  QFileDevice::ExeOwner);
        QFile document(documentPath());
        if (document.open(QIODevice::WriteOnly))
            document.write(PanelDocument::encode(panels).value_or(QByteArray()));
        document.close();
        if (m_user)
            QProcess::execute(QStringLiteral("chown"),
                              {QStringLiteral("-R"),
                               QStringLiteral("%1:%2").arg(m_user->uid()).arg(m_user->gid()),
                               m_home.path()});
        startIn(m_process, {});
    }

    // Ends the binary as a session's end does (SIGTERM) and fails the test that started it
    // if it did not end cleanly.
    ~CorkwheelProcess() {
        if (m_process.state() != QProcess::NotRunning) {
            m_process.terminate();
            if (!m_process.waitForFinished(kWait * 2)) {
                m_process.kill();
                m_process.waitForFinished(kWait);
            }
        }
        const QString problem = endingProblem();
        if (!problem.isEmpty())
            QTest::qFail(qPrintable(problem), __FILE__, __LINE__);
    }

    QProcess& process() { return m_process; }

    // What was wrong with how the binary ended: it crashed (or had to be killed), ended with
    // a status other than 0, or a sanitizer reported on its standard error. Empty while it
    // runs, when it never started (the test has failed then already) and when all was well.
    // Once asked, a problem is not reported again.
    QString endingProblem() {
        m_standardError += m_process.readAllStandardError();
        if (m_process.state() != QProcess::NotRunning ||
            m_process.error() == QProcess::FailedToStart || m_endingChecked)
            return {};
        m_endingChecked = true;
        QStringList problems;
        if (m_process.exitStatus() == QProcess::CrashExit)
            problems.append(QStringLiteral("corkwheel crashed or had to be killed"));
        else if (m_process.exitCode() != 0)
            problems.append(
                QStringLiteral("corkwheel ended with status %1").arg(m_process.exitCode()));
        for (const char* report :
             {"ERROR: AddressSanitizer", "ERROR: LeakSanitizer", "runtime error:"}) {
            if (m_standardError.contains(report))
                problems.append(QStringLiteral("a sanitizer reported: ") + QLatin1String(report));
        }
        if (problems.isEmpty())
            return {};
        return problems.join(QStringLiteral("; ")) + QStringLiteral("\n") +
               QString::fromUtf8(m_standardError.right(4000));
    }

    QString documentPath() const {
        return QDir(m_home.path()).filePath(QStringLiteral("data/Corkwheel/panels.json"));
    }

    QList<Panel> savedPanels() const {
        QFile file(documentPath());
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return PanelDocument::decode(file.readAll()).value_or(QList<Panel>());
    }

    // Starts corkwheel once more in the same session, as a user would, with `arguments`
    // ("--edit-mode", say), and returns its exit code once it has ended.
    int startAgain(const QStringList& arguments = {}) const {
        QProcess again;
        startIn(again, arguments);
        if (!again.waitForFinished(kWait * 2))
            return -1;
        return again.exitCode();
    }

private:
    void startIn(QProcess& process, const QStringList& arguments) const {
        process.setProcessEnvironment(environment());
        if (!m_user) {
            process.start(QStringLiteral(CORKWHEEL_BINARY), arguments);
            return;
        }
        // setpriv execs the binary, which keeps its process id for the test to signal.
        process.start(QStringLiteral("setpriv"),
                      QStringList{QStringLiteral("--reuid=%1").arg(m_user->uid()),
                                  QStringLiteral("--regid=%1").arg(m_user->gid()),
                                  QStringLiteral("--clear-groups"), QStringLiteral("--"),
                                  QStringLiteral(CORKWHEEL_BINARY)} +
                          arguments);
    }

    QProcessEnvironment environment() const {
        const QDir home(m_home.path());
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        if (m_qpaPlatform.isEmpty())
            env.remove(QStringLiteral("QT_QPA_PLATFORM"));
        else
            env.insert(QStringLiteral("QT_QPA_PLATFORM"), m_qpaPlatform);
        // The Wayland socket is found in the runtime folder, which is the binary's own here.
        const QString wayland = env.value(QStringLiteral("WAYLAND_DISPLAY"));
        if (!wayland.isEmpty() && !wayland.startsWith(u'/'))
            env.insert(QStringLiteral("WAYLAND_DISPLAY"),
                       QDir(env.value(QStringLiteral("XDG_RUNTIME_DIR"))).filePath(wayland));
        env.insert(QStringLiteral("XDG_DATA_HOME"), home.filePath(QStringLiteral("data")));
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), home.filePath(QStringLiteral("config")));
        env.insert(QStringLiteral("XDG_CACHE_HOME"), home.filePath(QStringLiteral("cache")));
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), home.filePath(QStringLiteral("runtime")));
        if (m_user) {
            // The user made for the test has no home, and the test's session bus refuses
            // every user but the test's own.
            env.insert(QStringLiteral("HOME"), home.path());
            env.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        }
        if (m_loadsWebEngine)
            addWebEngineEnvironment(env);
        for (const QString& setting : m_environment)
            env.insert(setting.section(u'=', 0, 0), setting.section(u'=', 1));
        return env;
    }

    // What the web engine needs here, as its own tests have it: no sandbox for root, no GPU
    // on a virtual display, and no sanitizer checks of Chromium's own code.
    static void addWebEngineEnvironment(QProcessEnvironment& env) {
        env.insert(QStringLiteral("QTWEBENGINE_DISABLE_SANDBOX"), QStringLiteral("1"));
        env.insert(QStringLiteral("QTWEBENGINE_CHROMIUM_FLAGS"), QStringLiteral("--disable-gpu"));
        env.insert(QStringLiteral("ASAN_OPTIONS"),
                   QStringLiteral("new_delete_type_mismatch=0:detect_leaks=0"));
    }

    QString m_qpaPlatform;
    const OtherUser* m_user;
    QStringList m_environment;
    bool m_loadsWebEngine;
    QTemporaryDir m_home;
    QProcess m_process;
    QByteArray m_standardError;
    bool m_endingChecked = false;
};

} // namespace corkwheel::test
