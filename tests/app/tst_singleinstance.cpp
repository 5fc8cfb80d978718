// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/SingleInstance.h"

#include "support/OtherUser.h"

#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <cerrno>

#include <grp.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace corkwheel;
using corkwheel::test::OtherUser;

namespace {

// Claims from another thread, the way a second start would from another process, so the
// first instance's event loop stays free to answer.
SingleInstance::Role claimFromAnotherThread(const QString& socketPath, int timeoutMs = 3000) {
    SingleInstance::Role role = SingleInstance::Role::Failed;
    QThread* thread = QThread::create([&] {
        SingleInstance second(socketPath);
        role = second.claim(timeoutMs);
    });
    thread->start();
    while (!thread->wait(10))
        QCoreApplication::processEvents();
    delete thread;
    return role;
}

// Delivers from another thread, the way the command line would from another process.
bool deliverFromAnotherThread(const QString& socketPath, AppAction action) {
    bool delivered = false;
    QThread* thread =
        QThread::create([&] { delivered = SingleInstance::deliver(socketPath, action, 3000); });
    thread->start();
    while (!thread->wait(10))
        QCoreApplication::processEvents();
    delete thread;
    return delivered;
}

// Leaves a bound socket file behind with nobody listening, as a crash would.
bool makeStaleSocket(const QString& path) {
    const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(path);
    qstrncpy(address.sun_path, name.constData(), sizeof address.sun_path);
    const bool bound = ::bind(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    ::close(fd);
    return bound && QFile::exists(path);
}

// Connects to the socket at `path` from a child process running as `uid` and `gid`: 0 when
// the connection is made, else connect()'s error.
int connectAs(uid_t uid, gid_t gid, const QString& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, QFile::encodeName(path).constData(), sizeof address.sun_path);
    const pid_t child = ::fork();
    if (child == 0) {
        if (::setgroups(0, nullptr) != 0 || ::setgid(gid) != 0 || ::setuid(uid) != 0)
            ::_exit(255);
        const int fd = ::socket(AF_UNIX, SOCK_STREAM, 0);
        const bool connected =
            ::connect(fd, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
        ::_exit(connected ? 0 : errno);
    }
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return -1;
    return WEXITSTATUS(status);
}

constexpr QFileDevice::Permissions kOthers = QFileDevice::ReadGroup | QFileDevice::WriteGroup |
                                             QFileDevice::ExeGroup | QFileDevice::ReadOther |
                                             QFileDevice::WriteOther | QFileDevice::ExeOther;

} // namespace

class SingleInstanceTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir* m_runtimeDir = nullptr;
    QString socketPath() const { return m_runtimeDir->filePath(QStringLiteral("test.socket")); }

private Q_SLOTS:
    void init() { m_runtimeDir = new QTemporaryDir; }
    void cleanup() {
        delete m_runtimeDir;
        m_runtimeDir = nullptr;
    }

    void socketLivesInTheRuntimeDirectory() {
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtimeDir->path()));
        QCOMPARE(SingleInstance::defaultSocketPath(),
                 m_runtimeDir->path() + QStringLiteral("/corkwheel.socket"));
    }

    void firstStartBecomesTheRunningInstance() {
        SingleInstance first(socketPath());
        QCOMPARE(first.claim(), SingleInstance::Role::Primary);
        QVERIFY(QFile::exists(socketPath()));
    }

    void secondStartAsksTheFirstToOpenSettings() {
        SingleInstance first(socketPath());
        QCOMPARE(first.claim(), SingleInstance::Role::Primary);
        QSignalSpy requested(&first, &SingleInstance::actionRequested);

        QCOMPARE(claimFromAnotherThread(socketPath()), SingleInstance::Role::Secondary);
        QCOMPARE(requested.count(), 1);
        QCOMPARE(requested.at(0).at(0).value<AppAction>(), AppAction::Settings);
        QCOMPARE(claimFromAnotherThread(socketPath()), SingleInstance::Role::Secondary);
        QCOMPARE(requested.count(), 2);
    }

    void eachActionReachesTheRunningInstance_data() {
        QTest::addColumn<AppAction>("action");
        QTest::newRow("settings") << AppAction::Settings;
        QTest::newRow("edit-mode") << AppAction::EditMode;
        QTest::newRow("hide-all") << AppAction::HideAll;
        QTest::newRow("quit") << AppAction::Quit;
    }

    void eachActionReachesTheRunningInstance() {
        QFETCH(AppAction, action);
        SingleInstance first(socketPath());
        QCOMPARE(first.claim(), SingleInstance::Role::Primary);
        QSignalSpy requested(&first, &SingleInstance::actionRequested);

        QVERIFY(deliverFromAnotherThread(socketPath(), action));
        QCOMPARE(requested.count(), 1);
        QCOMPARE(requested.at(0).at(0).value<AppAction>(), action);
    }

    void actionsNamedOnTheSocketAreUnderstood() {
        SingleInstance first(socketPath());
        QCOMPARE(first.claim(), SingleInstance::Role::Primary);
        QSignalSpy requested(&first, &SingleInstance::actionRequested);
        QLocalSocket client;
        client.connectToServer(socketPath());
        QVERIFY(client.waitForConnected(1000));
        client.write("settings\nedit-mode\nhide-all\nquit\n");
        QTRY_COMPARE(requested.count(), 4);
        QCOMPARE(requested.at(0).at(0).value<AppAction>(), AppAction::Settings);
        QCOMPARE(requested.at(1).at(0).value<AppAction>(), AppAction::EditMode);
        QCOMPARE(requested.at(2).at(0).value<AppAction>(), AppAction::HideAll);
        QCOMPARE(requested.at(3).at(0).value<AppAction>(), AppAction::Quit);
    }

    void deliveringWithNoneRunningFailsAndStartsNothing() {
        QVERIFY(!SingleInstance::deliver(socketPath(), AppAction::EditMode, 500));
        QVERIFY(!QFile::exists(socketPath()));
    }

    void staleSocketFromACrashDoesNotBlockTheNextStart() {
        QVERIFY(makeStaleSocket(socketPath()));
        SingleInstance next(socketPath());
        QCOMPARE(next.claim(), SingleInstance::Role::Primary);
        QSignalSpy requested(&next, &SingleInstance::actionRequested);
        QCOMPARE(claimFromAnotherThread(socketPath()), SingleInstance::Role::Secondary);
        QCOMPARE(requested.count(), 1);
    }

    void socketIsReachableByItsOwnerAlone() {
        SingleInstance first(socketPath());
        QCOMPARE(first.claim(), SingleInstance::Role::Primary);
        QCOMPARE(QFile::permissions(socketPath()) & kOthers, QFileDevice::Permissions());
    }

    void otherUserIsRefusedBySocketItCanReach() {
        if (::geteuid() != 0)
            QSKIP("making another user to connect as needs root");
        const OtherUser other;
        QVERIFY2(other.exists(), "useradd could not make a user");
        // Open to everyone on the way, so that the socket's own permissions must refuse.
        QVERIFY(QFile::setPermissions(m_runtimeDir->path(),
                                      QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                          QFileDevice::ExeOwner | QFileDevice::ExeGroup |
                                          QFileDevice::ExeOther));
        SingleInstance first(socketPath());
        QCOMPARE(first.claim(), SingleInstance::Role::Primary);
        QCOMPARE(connectAs(::getuid(), ::getgid(), socketPath()), 0);
        QCOMPARE(connectAs(other.uid(), other.gid(), socketPath()), EACCES);
    }

    void defaultSocketFolderIsClosedToOthers() {
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_runtimeDir->path()));
        const QString folder = QFileInfo(SingleInstance::defaultSocketPath()).absolutePath();
        QCOMPARE(QFile::permissions(folder) & kOthers, QFileDevice::Permissions());
        QCOMPARE(QFileInfo(folder).ownerId(), ::getuid());
    }

    void silentRunningInstanceMakesTheStartFail() {
        QLocalServer mute;
        QVERIFY(mute.listen(socketPath()));
        SingleInstance second(socketPath());
        QCOMPARE(second.claim(200), SingleInstance::Role::Failed);
    }

    void otherMessagesAreIgnored() {
        SingleInstance first(socketPath());
        QCOMPARE(first.claim(), SingleInstance::Role::Primary);
        QSignalSpy requested(&first, &SingleInstance::actionRequested);
        QLocalSocket stranger;
        stranger.connectToServer(socketPath());
        QVERIFY(stranger.waitForConnected(1000));
        stranger.write("shutdown\nquit now\n" + QByteArray(200, 'x') + "\n");
        // A request of ours after them is taken, so everything before it has been read.
        stranger.write(SingleInstance::requestFor(AppAction::HideAll));
        QVERIFY(stranger.waitForBytesWritten(1000));
        QTRY_COMPARE(requested.count(), 1);
        QCOMPARE(requested.first().first().value<AppAction>(), AppAction::HideAll);
    }
};

QTEST_GUILESS_MAIN(SingleInstanceTest)
#include "tst_singleinstance.moc"
