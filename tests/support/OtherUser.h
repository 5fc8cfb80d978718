// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QCoreApplication>
#include <QProcess>
#include <QString>

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

namespace corkwheel::test {

// A user of the test's own, made with useradd and removed with userdel, which only root can.
// It has no home of its own and cannot log in.
class OtherUser {
public:
    OtherUser() : m_name(QStringLiteral("cw-other-%1").arg(QCoreApplication::applicationPid())) {
        if (::geteuid() != 0)
            return;
        m_added = QProcess::execute(QStringLiteral("useradd"),
                                    {QStringLiteral("--system"), QStringLiteral("--no-create-home"),
                                     QStringLiteral("--user-group"), QStringLiteral("--shell"),
                                     QStringLiteral("/usr/sbin/nologin"), m_name}) == 0;
        const passwd* entry = m_added ? ::getpwnam(m_name.toUtf8().constData()) : nullptr;
        if (entry) {
            m_uid = entry->pw_uid;
            m_gid = entry->pw_gid;
        }
    }
    ~OtherUser() {
        if (m_added)
            QProcess::execute(QStringLiteral("userdel"), {m_name});
    }
    OtherUser(const OtherUser&) = delete;
    OtherUser& operator=(const OtherUser&) = delete;

    bool exists() const { return m_uid != 0; }
    uid_t uid() const { return m_uid; }
    gid_t gid() const { return m_gid; }

    // Makes the calling process this user, with its group and no others. Async-signal-safe,
    // for a child between fork() and what it does as the user; false when the process could
    // not give up root.
    bool become() const {
        return ::setgroups(0, nullptr) == 0 && ::setgid(m_gid) == 0 && ::setuid(m_uid) == 0;
    }

private:
    QString m_name;
    bool m_added = false;
    uid_t m_uid = 0;
    gid_t m_gid = 0;
};

} // namespace corkwheel::test
