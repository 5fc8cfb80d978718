// SPDX-License-Identifier: GPL-3.0-or-later

#include "StoreTesting.h"
#include "model/PanelDocument.h"
#include "model/PanelStore.h"

#include "SaveKiller.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <unistd.h>

using namespace corkwheel;
using corkwheel::test::readFile;
using corkwheel::test::writeFile;

namespace {

// Panels of every type in turn.
QList<Panel> somePanels(int count) {
    QList<Panel> panels;
    for (int i = 0; i < count; ++i) {
        Panel panel = Panel::makeDefault(allPanelTypes()[i % allPanelTypes().size()]);
        panel.name = QStringLiteral("Panel %1").arg(i);
        panels.append(panel);
    }
    return panels;
}

// Long enough for its writing to take a moment, which the normal build's runs need to catch
// a document written in place. A sanitizer build, which makes reading and writing it some
// twenty times as costly, runs the same kills on a shorter one.
#ifdef __SANITIZE_ADDRESS__
constexpr int kPanelsInKilledSaves = 100;
#else
constexpr int kPanelsInKilledSaves = 600;
#endif

// Everything in the folder of `document`.
QStringList filesIn(const QString& document) {
    return QFileInfo(document).dir().entryList(QDir::NoDotAndDotDot | QDir::AllEntries |
                                               QDir::Hidden | QDir::System);
}

// How often the document read back as the panels before the save, as those after it, or
// as anything else.
struct Outcomes {
    int before = 0;
    int after = 0;
    int other = 0;
};

// Runs sh with `script` in a mount namespace of its own, so that what it mounts goes away
// with it and is never seen outside. Root needs nothing more; anyone else first becomes
// root of a user namespace of their own. "$1" must be a folder: the mount that holds it is
// made private first, so mounts on it do not reach other namespaces. Only that one, as in a
// chroot (where the tests also run) "/" is no mount point to make private.
QStringList privateMountsCommand(const QString& script, const QStringList& arguments) {
    QStringList command = {QStringLiteral("--mount"), QStringLiteral("--propagation=unchanged")};
    if (::geteuid() != 0)
        command =
            QStringList{QStringLiteral("--user"), QStringLiteral("--map-root-user")} + command;
    const QString privateFirst =
        QStringLiteral("mount --make-private \"$(findmnt -no TARGET -T \"$1\")\"\n");
    return command +
           QStringList{QStringLiteral("sh"), QStringLiteral("-euc"), privateFirst + script,
                       QStringLiteral("sh")} +
           arguments;
}

bool runWithPrivateMounts(const QString& script, const QStringList& arguments) {
    QProcess shell;
    shell.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    shell.start(QStringLiteral("unshare"), privateMountsCommand(script, arguments));
    return shell.waitForFinished(60000) && shell.exitStatus() == QProcess::NormalExit &&
           shell.exitCode() == 0;
}

// Mounts what the test needs at "$1", the document's folder, holding the previous document
// "$2"; then runs "$3" (store_child change) on it and copies to "$4" what became of the
// folder.
const QString kChangeOnMount = QStringLiteral(R"(
"$3" change "$1/panels.json" "$4/memory.json" > "$4/result"
cp "$1/panels.json" "$4/disk.json"
ls -A "$1" > "$4/listing"
)");

} // namespace

class SaveSafetyTest : public QObject {
    Q_OBJECT

private:
    QTemporaryDir* m_work = nullptr;

    void skipUnlessPrivateMounts() {
        if (!runWithPrivateMounts(QStringLiteral("mount -t tmpfs probe \"$1\""), {m_work->path()}))
            QSKIP("unshare cannot make a mount namespace here (as non-root it needs user "
                  "namespaces, which a chroot or the kernel's settings may forbid)");
    }

    // With the previous document on a folder where saving fails: the store keeps the panels
    // it has, with the change, says nothing was written, and the previous document and
    // nothing else is there.
    void verifyFailedSaveKeepsEverything(const QString& mountScript,
                                         const QStringList& expectedListing) {
        const QList<Panel> previous = somePanels(3);
        const QString previousPath = m_work->filePath(QStringLiteral("previous.json"));
        QVERIFY(writeFile(previousPath, *PanelDocument::encode(previous)));
        const QString folder = m_work->filePath(QStringLiteral("Corkwheel"));
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(QFile::copy(previousPath, folder + QStringLiteral("/panels.json")));

        QVERIFY(runWithPrivateMounts(
            mountScript + kChangeOnMount,
            {folder, previousPath, QStringLiteral(CORKWHEEL_STORE_CHILD), m_work->path()}));
        QCOMPARE(readFile(m_work->filePath(QStringLiteral("result"))), QByteArray("not written\n"));
        const auto inMemory =
            PanelDocument::decode(readFile(m_work->filePath(QStringLiteral("memory.json"))));
        QVERIFY(inMemory);
        QCOMPARE(inMemory->size(), previous.size() + 1);
        QCOMPARE(inMemory->first(previous.size()), previous);
        QCOMPARE(inMemory->last().type, PanelType::Text);
        QCOMPARE(readFile(m_work->filePath(QStringLiteral("disk.json"))), readFile(previousPath));
        QCOMPARE(QString::fromUtf8(readFile(m_work->filePath(QStringLiteral("listing"))))
                     .split(u'\n', Qt::SkipEmptyParts),
                 expectedListing);
    }

private Q_SLOTS:
    void init() {
        m_work = new QTemporaryDir;
        QVERIFY(m_work->isValid());
    }

    void cleanup() {
        delete m_work;
        m_work = nullptr;
    }

    void killsDuringSaveLeaveTheOldOrTheNewPanels() {
        const QList<Panel> before = somePanels(kPanelsInKilledSaves);
        const QByteArray beforeBytes = *PanelDocument::encode(before);
        const QByteArray afterBytes = *PanelDocument::encode(before.mid(1));
        const int kills = qEnvironmentVariableIntValue("CORKWHEEL_SAVE_KILLS");
        const int killCount = kills > 0 ? kills : 200;

        QStringList documents;
        for (int i = 0; i < killCount + 8; ++i) {
            const QString folder = m_work->filePath(QString::number(i));
            QVERIFY(QDir().mkpath(folder));
            documents.append(folder + QStringLiteral("/panels.json"));
            QVERIFY(writeFile(documents.last(), beforeBytes));
        }
        // A little past the end of a typical save.
        const int latestKill = SaveKiller::typicalSaveMs(documents.mid(killCount)) + 2;
        documents.resize(killCount);
        SaveKiller killer(documents, latestKill);
        killer.run();

        Outcomes outcomes;
        for (const QString& path : std::as_const(documents)) {
            // Byte for byte what the store wrote, so they read back as those panels.
            const QByteArray bytes = readFile(path);
            outcomes.before += bytes == beforeBytes;
            outcomes.after += bytes == afterBytes;
            outcomes.other += bytes != beforeBytes && bytes != afterBytes;
            if (filesIn(path).size() > 1) {
                // Nothing that a killed save left beside the document outlasts the next start.
                const PanelStore next(path);
                QCOMPARE(filesIn(path), QStringList{QStringLiteral("panels.json")});
            }
        }
        qInfo("%d kills within %d ms of the save's start: %d old panels, %d new, %d other",
              killCount, latestKill, outcomes.before, outcomes.after, outcomes.other);
        QCOMPARE(outcomes.other, 0);
        // The kills fell both before and after the document was replaced.
        QVERIFY(outcomes.before > 0);
        QVERIFY(outcomes.after > 0);
    }

    void fullDiskKeepsPanelsAndPreviousDocument() {
        skipUnlessPrivateMounts();
        // A file system holding the previous document and, filling the rest, "filler".
        const QString fullDisk = QStringLiteral(R"(
mount -t tmpfs -o size=256k,mode=0700 full "$1"
cp "$2" "$1/panels.json"
cat /dev/zero > "$1/filler" 2>/dev/null || true
)");
        verifyFailedSaveKeepsEverything(fullDisk,
                                        {QStringLiteral("filler"), QStringLiteral("panels.json")});
    }

    void readOnlyFolderKeepsPanelsAndPreviousDocument() {
        skipUnlessPrivateMounts();
        // Root writes to any folder whatever its mode, but not to a read-only mount.
        const QString readOnly = QStringLiteral(R"(
mount --bind "$1" "$1"
mount -o remount,bind,ro "$1"
)");
        verifyFailedSaveKeepsEverything(readOnly, {QStringLiteral("panels.json")});
    }
};

QTEST_GUILESS_MAIN(SaveSafetyTest)
#include "tst_savesafety.moc"
