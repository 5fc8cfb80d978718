// SPDX-License-Identifier: GPL-3.0-or-later

#include "StoreTesting.h"
#include "model/PanelDocument.h"
#include "model/PanelStore.h"
#include "support/MockClock.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <limits>

#include <memory>

using namespace corkwheel;
using corkwheel::test::readFile;
using corkwheel::test::withoutIds;
using corkwheel::test::writeFile;

class PanelStoreTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<test::PrivateDataHome> m_dataHome;
    // The save waits on this clock, which moves only when a test lets time pass.
    test::MockClock m_clock;

    QString documentPath() const {
        return m_dataHome->path() + QStringLiteral("/Corkwheel/panels.json");
    }

    void writeDocument(const QList<Panel>& panels) {
        QDir().mkpath(QFileInfo(documentPath()).absolutePath());
        writeFile(documentPath(), *PanelDocument::encode(panels));
    }

    std::optional<QList<Panel>> documentOnDisk() const {
        return PanelDocument::decode(readFile(documentPath()));
    }

    // The store on the document in the private data folder, saving on the test's clock.
    std::unique_ptr<PanelStore> openStore() {
        return std::make_unique<PanelStore>(documentPath(), m_clock);
    }

    // Lets more than the save delay pass.
    void waitPastSaveDelay() { m_clock.runFor(10); }

    // Lets 0.4 s pass: written when they are over, not a millisecond before.
    void verifyWrittenAfterSaveDelay(const QSignalSpy& written) {
        const qsizetype before = written.count();
        m_clock.runFor(0.399);
        QCOMPARE(written.count(), before);
        m_clock.runFor(0.001);
        QCOMPARE(written.count(), before + 1);
    }

private Q_SLOTS:
    void init() {
        m_dataHome = std::make_unique<test::PrivateDataHome>();
        QVERIFY(m_dataHome->isValid());
    }

    void cleanup() { m_dataHome.reset(); }

    void documentLivesInXdgDataHome() {
        QCOMPARE(PanelStore::defaultFileLocation(),
                 m_dataHome->path() + QStringLiteral("/Corkwheel/panels.json"));
    }

    // Where most sessions keep it: XDG_DATA_HOME is seldom set, and then it is ~/.local/share.
    void documentLivesInLocalShareWithoutXdgDataHome() {
        QTemporaryDir home;
        QVERIFY(home.isValid());
        const QByteArray previousHome = qgetenv("HOME");
        qunsetenv("XDG_DATA_HOME");
        qputenv("HOME", QFile::encodeName(home.path()));
        const QString location = PanelStore::defaultFileLocation();
        qputenv("HOME", previousHome);
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_dataHome->path()));
        QCOMPARE(location, home.path() + QStringLiteral("/.local/share/Corkwheel/panels.json"));
    }

    void starterPanelsAreClockSystemStatsUptime() {
        const QList<Panel> starters = PanelStore::starterPanels();
        QCOMPARE(starters.size(), 3);

        Panel clock = Panel::makeDefault(PanelType::Clock);
        clock.frame = {40, 40, 360, 80};
        clock.style.fontSize = 28;
        Panel stats = Panel::makeDefault(PanelType::SystemStats);
        stats.frame = {40, 140, 280, 210};
        stats.style.showGlassBackground = true;
        Panel uptime = Panel::makeDefault(PanelType::Shell);
        uptime.name = QStringLiteral("Uptime");
        uptime.frame = {40, 370, 420, 60};
        uptime.shellCommand = QStringLiteral("uptime");

        QCOMPARE(withoutIds(starters), withoutIds({clock, stats, uptime}));
        QCOMPARE(starters[0].name, QStringLiteral("Clock"));
        QCOMPARE(starters[1].name, QStringLiteral("System Stats"));
        QCOMPARE(starters[1].refreshInterval, 2.0);
        QCOMPARE(starters[2].refreshInterval, 5.0);
    }

    void firstLaunchSeedsStarterPanelsAndWritesThemLater() {
        const auto owned = openStore();
        PanelStore& store = *owned;
        QSignalSpy written(&store, &PanelStore::documentWritten);
        QCOMPARE(withoutIds(store.panels()), withoutIds(PanelStore::starterPanels()));
        QVERIFY(!QFile::exists(documentPath()));

        verifyWrittenAfterSaveDelay(written);
        QCOMPARE(written.count(), 1);
        QCOMPARE(documentOnDisk(), store.panels());
    }

    void documentMissingGlassKeyIsReplacedByStarterPanels() {
        QList<Panel> panels = {Panel::makeDefault(PanelType::Text),
                               Panel::makeDefault(PanelType::Image)};
        writeDocument(panels);
        QByteArray broken = readFile(documentPath());
        broken.replace(broken.lastIndexOf("\"showGlassBackground\":false,"), 28, "");
        writeFile(documentPath(), broken);

        const auto owned = openStore();
        PanelStore& store = *owned;
        QSignalSpy written(&store, &PanelStore::documentWritten);
        QCOMPARE(withoutIds(store.panels()), withoutIds(PanelStore::starterPanels()));
        QCOMPARE(readFile(documentPath()), broken);

        verifyWrittenAfterSaveDelay(written);
        QCOMPARE(documentOnDisk(), store.panels());
    }

    void readableDocumentLoadsWithoutWriting() {
        const QList<Panel> panels = {Panel::makeDefault(PanelType::Webpage)};
        writeDocument(panels);
        const auto owned = openStore();
        PanelStore& store = *owned;
        QSignalSpy written(&store, &PanelStore::documentWritten);
        QCOMPARE(store.panels(), panels);
        waitPastSaveDelay();
        QCOMPARE(written.count(), 0);
    }

    void sevenAddsCascadeAndStartAgainAtTheSixth() {
        writeDocument({});
        const auto owned = openStore();
        PanelStore& store = *owned;
        QVERIFY(store.panels().isEmpty());
        for (int i = 0; i < 7; ++i)
            store.addPanel(PanelType::Clock);
        const double expected[] = {60, 84, 108, 132, 156, 180, 60};
        QCOMPARE(store.panels().size(), 7);
        for (int i = 0; i < 7; ++i) {
            QCOMPARE(store.panels()[i].frame.x, expected[i]);
            QCOMPARE(store.panels()[i].frame.y, expected[i]);
        }
    }

    void cascadeIsAddedToEachTypesOwnOrigin() {
        writeDocument({Panel::makeDefault(PanelType::Shell)});
        const auto owned = openStore();
        PanelStore& store = *owned;
        store.addPanel(PanelType::Text);
        QCOMPARE(store.panels().last().frame, (PanelFrame{84, 384, 320, 60}));
        QCOMPARE(store.panels().last().type, PanelType::Text);
    }

    void addingSavesOnce() {
        writeDocument({});
        const auto owned = openStore();
        PanelStore& store = *owned;
        QSignalSpy changed(&store, &PanelStore::panelsChanged);
        QSignalSpy written(&store, &PanelStore::documentWritten);
        store.addPanel(PanelType::File);
        QCOMPARE(changed.count(), 1);
        verifyWrittenAfterSaveDelay(written);
        QCOMPARE(documentOnDisk(), store.panels());
    }

    void fiftyFrameUpdatesGiveOneWriteAfterTheLast() {
        const auto owned = openStore();
        PanelStore& store = *owned;
        QSignalSpy written(&store, &PanelStore::documentWritten);
        waitPastSaveDelay(); // the seeding write
        QCOMPARE(written.count(), 1);
        const QUuid id = store.panels().first().id;

        QSignalSpy changed(&store, &PanelStore::panelsChanged);
        for (int step = 0; step < 50; ++step) {
            m_clock.runFor(0.006); // 50 steps within 0.3 s
            store.updateFrame(id, {100.0 + step, 200, 300, 90});
        }
        QCOMPARE(changed.count(), 50);
        QCOMPARE(written.count(), 1);
        verifyWrittenAfterSaveDelay(written);
        waitPastSaveDelay();
        QCOMPARE(written.count(), 2);
        QCOMPARE(documentOnDisk()->first().frame, (PanelFrame{149, 200, 300, 90}));
    }

    // The store Corkwheel runs waits on the machine's own clock.
    void storeOfTheDefaultDocumentSavesOnTheMachinesClock() {
        writeDocument({});
        PanelStore store;
        QSignalSpy written(&store, &PanelStore::documentWritten);
        store.addPanel(PanelType::Clock);
        QVERIFY(written.wait(2000));
        QCOMPARE(documentOnDisk(), store.panels());
    }

    // A change just before Corkwheel ends (a drag let go, then the session logs out) is
    // written as the store ends, not lost to the save delay.
    void changeStillWaitingToBeSavedIsWrittenAsTheStoreEnds() {
        writeDocument({});
        {
            const auto store = openStore();
            store->addPanel(PanelType::Clock);
            m_clock.runFor(0.2);
            QCOMPARE(documentOnDisk(), QList<Panel>());
        }
        QCOMPARE(documentOnDisk()->size(), 1);
        QCOMPARE(documentOnDisk()->first().type, PanelType::Clock);
    }

    void storeEndingWithNothingToSaveLeavesTheFileAlone() {
        const QList<Panel> panels = {Panel::makeDefault(PanelType::Clock)};
        const QByteArray handWritten = *PanelDocument::encode(panels) + "\n";
        QDir().mkpath(QFileInfo(documentPath()).absolutePath());
        writeFile(documentPath(), handWritten);
        {
            const auto store = openStore();
            QCOMPARE(store->panels(), panels);
        }
        QCOMPARE(readFile(documentPath()), handWritten);
    }

    void updateFrameChangesOnlyTheFrame() {
        const auto owned = openStore();
        PanelStore& store = *owned;
        const Panel before = store.panels()[1];
        store.updateFrame(before.id, {1, 2, 3, 4});
        Panel expected = before;
        expected.frame = {1, 2, 3, 4};
        QCOMPARE(store.panels()[1], expected);
    }

    void removeDropsEveryPanelWithThatId() {
        Panel shared = Panel::makeDefault(PanelType::Shell);
        Panel twin = Panel::makeDefault(PanelType::Text);
        twin.id = shared.id;
        const Panel other = Panel::makeDefault(PanelType::Clock);
        writeDocument({shared, other, twin});
        const auto owned = openStore();
        PanelStore& store = *owned;
        QSignalSpy changed(&store, &PanelStore::panelsChanged);
        QSignalSpy written(&store, &PanelStore::documentWritten);
        store.removePanel(shared.id);
        QCOMPARE(store.panels(), QList<Panel>{other});
        QCOMPARE(changed.count(), 1);
        verifyWrittenAfterSaveDelay(written);
        QCOMPARE(documentOnDisk(), QList<Panel>{other});
    }

    void removeWithUnknownIdStillSaves() {
        const QList<Panel> panels = {Panel::makeDefault(PanelType::Shell)};
        writeDocument(panels);
        const auto owned = openStore();
        PanelStore& store = *owned;
        QSignalSpy written(&store, &PanelStore::documentWritten);
        store.removePanel(QUuid::createUuid());
        QCOMPARE(store.panels(), panels);
        verifyWrittenAfterSaveDelay(written);
        QCOMPARE(documentOnDisk(), panels);
    }

    void updateWithUnknownIdChangesNothingAndWritesNothing() {
        const QList<Panel> panels = {Panel::makeDefault(PanelType::Shell)};
        writeDocument(panels);
        const auto owned = openStore();
        PanelStore& store = *owned;
        QSignalSpy changed(&store, &PanelStore::panelsChanged);
        QSignalSpy written(&store, &PanelStore::documentWritten);
        store.update(Panel::makeDefault(PanelType::Shell));
        store.updateFrame(QUuid::createUuid(), {1, 2, 3, 4});
        QCOMPARE(store.panels(), panels);
        waitPastSaveDelay();
        QCOMPARE(changed.count(), 0);
        QCOMPARE(written.count(), 0);
    }

    void updateReplacesTheWholePanel() {
        const auto owned = openStore();
        PanelStore& store = *owned;
        Panel changed = store.panels()[2];
        changed.name = QStringLiteral("Load");
        changed.shellCommand = QStringLiteral("cat /proc/loadavg");
        changed.style.textAlignment = TextAlignmentOption::Trailing;
        QSignalSpy written(&store, &PanelStore::documentWritten);
        store.update(changed);
        QCOMPARE(store.panels()[2], changed);
        verifyWrittenAfterSaveDelay(written);
        QCOMPARE(documentOnDisk()->at(2), changed);
    }

    void flagsAreNeverWrittenNorRemembered() {
        const QList<Panel> panels = {Panel::makeDefault(PanelType::Clock)};
        writeDocument(panels);
        {
            const auto owned = openStore();
            PanelStore& store = *owned;
            QVERIFY(!store.isEditMode());
            QVERIFY(!store.panelsHidden());
            QSignalSpy edit(&store, &PanelStore::isEditModeChanged);
            QSignalSpy hidden(&store, &PanelStore::panelsHiddenChanged);
            QSignalSpy written(&store, &PanelStore::documentWritten);
            store.setEditMode(true);
            store.setPanelsHidden(true);
            QCOMPARE(edit.count(), 1);
            QCOMPARE(hidden.count(), 1);
            QVERIFY(store.isEditMode() && store.panelsHidden());
            waitPastSaveDelay();
            QCOMPARE(written.count(), 0);
        }
        QCOMPARE(readFile(documentPath()), *PanelDocument::encode(panels));
        const auto relaunched = openStore();
        QVERIFY(!relaunched->isEditMode());
        QVERIFY(!relaunched->panelsHidden());
    }

    void nonFiniteNumberSkipsThatSaveOnly() {
        const auto owned = openStore();
        PanelStore& store = *owned;
        QSignalSpy written(&store, &PanelStore::documentWritten);
        verifyWrittenAfterSaveDelay(written);
        const QByteArray before = readFile(documentPath());

        Panel broken = store.panels().first();
        broken.refreshInterval = std::numeric_limits<double>::infinity();
        store.update(broken);
        waitPastSaveDelay();
        QCOMPARE(written.count(), 1);
        QCOMPARE(readFile(documentPath()), before);

        broken.refreshInterval = 3;
        store.update(broken);
        verifyWrittenAfterSaveDelay(written);
        QCOMPARE(documentOnDisk()->first().refreshInterval, 3.0);
    }

    void documentAndFolderAreReadableByTheOwnerAlone() {
        const auto owned = openStore();
        PanelStore& store = *owned;
        QSignalSpy written(&store, &PanelStore::documentWritten);
        verifyWrittenAfterSaveDelay(written);
        const auto owner = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
        const auto fileBits =
            QFile::permissions(documentPath()) & ~(QFileDevice::ReadUser | QFileDevice::WriteUser);
        QCOMPARE(fileBits, owner);
        const QString folder = QFileInfo(documentPath()).absolutePath();
        const auto others = QFileDevice::ReadGroup | QFileDevice::WriteGroup |
                            QFileDevice::ExeGroup | QFileDevice::ReadOther |
                            QFileDevice::WriteOther | QFileDevice::ExeOther;
        QCOMPARE(QFile::permissions(folder) & others, QFileDevice::Permissions());
    }

    void startRemovesWhatAKilledSaveLeftButNotTheUsersFiles() {
        const QList<Panel> panels = {Panel::makeDefault(PanelType::Clock)};
        writeDocument(panels);
        const QString folder = QFileInfo(documentPath()).absolutePath();
        const QString leftover = folder + QStringLiteral("/.panels.json.saving-a1B2c3");
        const QString backup = folder + QStringLiteral("/panels.json.backup");
        writeFile(leftover, "[{\"id\":");
        writeFile(backup, *PanelDocument::encode({}));
        const auto owned = openStore();
        PanelStore& store = *owned;
        QCOMPARE(store.panels(), panels);
        QVERIFY(!QFile::exists(leftover));
        QCOMPARE(readFile(backup), *PanelDocument::encode({}));
    }

    void unwritableLocationKeepsPanelsInMemory() {
        // The data "folder" is a plain file, so neither the folder nor the document can be made.
        writeFile(m_dataHome->path() + QStringLiteral("/Corkwheel"), "not a folder");
        const auto owned = openStore();
        PanelStore& store = *owned;
        QSignalSpy written(&store, &PanelStore::documentWritten);
        QCOMPARE(store.panels().size(), 3);
        store.addPanel(PanelType::Text);
        waitPastSaveDelay();
        QCOMPARE(written.count(), 0);
        QCOMPARE(store.panels().size(), 4);
    }
};

QTEST_GUILESS_MAIN(PanelStoreTest)
#include "tst_panelstore.moc"
