#include "app/SingleInstance.h"

#include <QFile>
#include <QLocalServer>
#include <QLocalSocket>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace corkwheel;

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
        QSignalSpy requested(&first, &SingleInstance::openSettingsRequested);

        QCOMPARE(claimFromAnotherThread(socketPath()), SingleInstance::Role::Secondary);
        QCOMPARE(requested.count(), 1);
        QCOMPARE(claimFromAnotherThread(socketPath()), SingleInstance::Role::Secondary);
        QCOMPARE(requested.count(), 2);
    }

    void staleSocketFromACrashDoesNotBlockTheNextStart() {
        QVERIFY(makeStaleSocket(socketPath()));
        SingleInstance next(socketPath());
        QCOMPARE(next.claim(), SingleInstance::Role::Primary);
        QSignalSpy requested(&next, &SingleInstance::openSettingsRequested);
        QCOMPARE(claimFromAnotherThread(socketPath()), SingleInstance::Role::Secondary);
        QCOMPARE(requested.count(), 1);
    }

    void socketIsReachableByItsOwnerAlone() {
        SingleInstance first(socketPath());
        QCOMPARE(first.claim(), SingleInstance::Role::Primary);
        const auto others = QFileDevice::ReadGroup | QFileDevice::WriteGroup |
                            QFileDevice::ExeGroup | QFileDevice::ReadOther |
                            QFileDevice::WriteOther | QFileDevice::ExeOther;
        QCOMPARE(QFile::permissions(socketPath()) & others, QFileDevice::Permissions());
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
        QSignalSpy requested(&first, &SingleInstance::openSettingsRequested);
        QLocalSocket stranger;
        stranger.connectToServer(socketPath());
        QVERIFY(stranger.waitForConnected(1000));
        stranger.write("quit\n" + QByteArray(200, 'x') + "\n");
        QVERIFY(stranger.waitForBytesWritten(1000));
        QTest::qWait(200);
        QCOMPARE(requested.count(), 0);
    }
};

QTEST_GUILESS_MAIN(SingleInstanceTest)
#include "tst_singleinstance.moc"
