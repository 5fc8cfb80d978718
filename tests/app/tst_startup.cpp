// SPDX-License-Identifier: GPL-3.0-or-later

// Runs the real corkwheel binary with empty XDG folders of its own.

#include "model/PanelDocument.h"
#include "model/PanelStore.h"

#include <QFile>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

using namespace corkwheel;

class StartupTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir* m_home = nullptr;

    QProcessEnvironment environment() const {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        // With a display, the offscreen platform sets up GLX for the shared OpenGL context,
        // and Mesa's driver leaks, which the sanitizer build turns into a failed exit.
        env.remove(QStringLiteral("DISPLAY"));
        // The running one is reached through its socket; no bus is asked.
        env.remove(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"));
        env.insert(QStringLiteral("XDG_DATA_HOME"), m_home->filePath(QStringLiteral("data")));
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), m_home->filePath(QStringLiteral("config")));
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_home->filePath(QStringLiteral("runtime")));
        return env;
    }

    QString documentPath() const {
        return m_home->filePath(QStringLiteral("data/Corkwheel/panels.json"));
    }

    void start(QProcess& process) {
        process.setProcessEnvironment(environment());
        process.setProgram(QStringLiteral(CORKWHEEL_BINARY));
        process.start();
        QVERIFY(process.waitForStarted());
    }

    // Connecting without a request is harmless and tells that the first start is ready.
    bool isListening() const {
        QLocalSocket probe;
        probe.connectToServer(m_home->filePath(QStringLiteral("runtime/corkwheel.socket")));
        return probe.waitForConnected(100);
    }

    struct Ended {
        int exitCode = -1;
        QString output;
        QString error;
    };

    static Ended runToTheEnd(const QStringList& arguments, const QProcessEnvironment& env) {
        QProcess process;
        process.setProcessEnvironment(env);
        process.start(QStringLiteral(CORKWHEEL_BINARY), arguments);
        Ended ended;
        if (!process.waitForFinished(10000)) {
            process.kill();
            process.waitForFinished();
            return ended;
        }
        if (process.exitStatus() == QProcess::NormalExit)
            ended.exitCode = process.exitCode();
        ended.output = QString::fromLocal8Bit(process.readAllStandardOutput());
        ended.error = QString::fromLocal8Bit(process.readAllStandardError());
        return ended;
    }

    // Neither a display nor a platform to show anything on.
    QProcessEnvironment withoutDisplay() const {
        QProcessEnvironment env = environment();
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            env.remove(QString::fromLatin1(name));
        return env;
    }

    static void stop(QProcess& process) {
        process.terminate();
        if (!process.waitForFinished(5000))
            process.kill();
    }

private Q_SLOTS:
    void init() {
        m_home = new QTemporaryDir;
        QVERIFY(m_home->isValid());
        QDir(m_home->path()).mkpath(QStringLiteral("runtime"));
        QFile::setPermissions(m_home->filePath(QStringLiteral("runtime")),
                              QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                  QFileDevice::ExeOwner);
    }

    void cleanup() {
        delete m_home;
        m_home = nullptr;
    }

    void firstStartWritesTheStarterDocument() {
        QProcess corkwheel;
        start(corkwheel);
        const auto onDisk = [this] {
            QFile file(documentPath());
            return file.open(QIODevice::ReadOnly) ? PanelDocument::decode(file.readAll())
                                                  : std::nullopt;
        };
        QTRY_VERIFY_WITH_TIMEOUT(onDisk(), 5000);
        const auto panels = onDisk();
        QCOMPARE(panels->size(), 3);
        QList<Panel> expected = PanelStore::starterPanels();
        for (qsizetype i = 0; i < expected.size(); ++i) {
            Panel onDisk = panels->at(i);
            onDisk.id = expected[i].id;
            QCOMPARE(onDisk, expected[i]);
        }
        QCOMPARE(QFile::permissions(documentPath()) &
                     ~(QFileDevice::ReadUser | QFileDevice::WriteUser),
                 QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        stop(corkwheel);
    }

    void secondStartHandsOverAndExits() {
        QProcess first;
        start(first);
        QTRY_VERIFY_WITH_TIMEOUT(isListening(), 5000);

        QProcess second;
        start(second);
        QVERIFY(second.waitForFinished(10000));
        QCOMPARE(second.exitStatus(), QProcess::NormalExit);
        // Exit status 0 comes only after the first instance acknowledged the request.
        QCOMPARE(second.exitCode(), 0);
        QCOMPARE(first.state(), QProcess::Running);
        stop(first);
    }

    void helpAndVersionPrintWithoutADisplay_data() {
        QTest::addColumn<QString>("option");
        QTest::addColumn<QString>("printed");
        QTest::newRow("help") << QStringLiteral("--help")
                              << QStringLiteral("Usage: corkwheel [options]\n");
        QTest::newRow("version") << QStringLiteral("--version") << QStringLiteral("corkwheel 0.");
    }

    void helpAndVersionPrintWithoutADisplay() {
        QFETCH(QString, option);
        QFETCH(QString, printed);
        const Ended ended = runToTheEnd({option}, withoutDisplay());
        QCOMPARE(ended.exitCode, 0);
        QVERIFY2(ended.output.startsWith(printed), qPrintable(ended.output));
        QVERIFY2(ended.error.isEmpty(), qPrintable(ended.error));
    }

    void unknownOptionPrintsTheUsageToStandardErrorAndEndsWith2() {
        const Ended ended = runToTheEnd({QStringLiteral("--frobnicate")}, withoutDisplay());
        QCOMPARE(ended.exitCode, 2);
        QVERIFY(ended.output.isEmpty());
        QVERIFY2(ended.error.contains(QStringLiteral("Usage: corkwheel [options]")),
                 qPrintable(ended.error));
        QVERIFY(!QFile::exists(documentPath()));
    }

    void actionWithNoneRunningSaysSoAndStartsNothing_data() {
        QTest::addColumn<QString>("option");
        QTest::newRow("edit-mode") << QStringLiteral("--edit-mode");
        QTest::newRow("hide-all") << QStringLiteral("--hide-all");
        QTest::newRow("quit") << QStringLiteral("--quit");
    }

    void actionWithNoneRunningSaysSoAndStartsNothing() {
        QFETCH(QString, option);
        const Ended ended = runToTheEnd({option}, environment());
        QCOMPARE(ended.exitCode, 1);
        QCOMPARE(ended.error, QStringLiteral("Corkwheel is not running\n"));
        QVERIFY(!isListening());
        QVERIFY(!QFile::exists(documentPath()));
    }

    void quitEndsTheRunningCorkwheel() {
        QProcess corkwheel;
        start(corkwheel);
        QTRY_VERIFY_WITH_TIMEOUT(isListening(), 5000);
        const Ended ended = runToTheEnd({QStringLiteral("--quit")}, withoutDisplay());
        QCOMPARE(ended.exitCode, 0);
        QVERIFY(corkwheel.waitForFinished(5000));
        QCOMPARE(corkwheel.exitStatus(), QProcess::NormalExit);
        QCOMPARE(corkwheel.exitCode(), 0);
    }

    void keptDocumentIsNotRewrittenAtStart() {
        const QList<Panel> panels = {Panel::makeDefault(PanelType::Text)};
        QDir().mkpath(QFileInfo(documentPath()).absolutePath());
        QFile file(documentPath());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(*PanelDocument::encode(panels));
        file.close();
        const QDateTime written = QFileInfo(documentPath()).lastModified();

        QProcess corkwheel;
        start(corkwheel);
        QTRY_VERIFY_WITH_TIMEOUT(isListening(), 5000);
        // Corkwheel writes a save still waiting as it ends, so any save the start made
        // would be on the disk once it has ended.
        QCOMPARE(runToTheEnd({QStringLiteral("--quit")}, withoutDisplay()).exitCode, 0);
        QVERIFY(corkwheel.waitForFinished(5000));
        QCOMPARE(corkwheel.exitCode(), 0);
        QCOMPARE(QFileInfo(documentPath()).lastModified(), written);
        QFile kept(documentPath());
        QVERIFY(kept.open(QIODevice::ReadOnly));
        QCOMPARE(kept.readAll(), *PanelDocument::encode(panels));
    }
};

QTEST_GUILESS_MAIN(StartupTest)
#include "tst_startup.moc"
