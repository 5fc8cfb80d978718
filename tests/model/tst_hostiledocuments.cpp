// SPDX-License-Identifier: GPL-3.0-or-later

#include "StoreTesting.h"
#include "model/PanelDocument.h"
#include "model/PanelStore.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSignalSpy>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

#include <memory>

using namespace corkwheel;
using corkwheel::test::areStarterPanels;
using corkwheel::test::readFile;
using corkwheel::test::writeFile;

namespace {

// One panel's document with `extra` (a key and its value) as the panel's first member.
QByteArray documentWithExtraMember(const Panel& panel, const QByteArray& extra) {
    QByteArray document = *PanelDocument::encode({panel});
    return document.insert(2, extra + ',');
}

// What the store in a process of its own printed, when it ended by itself in time.
struct ChildRun {
    bool ended = false;
    QByteArray output;
};

ChildRun runStoreChild(const QStringList& arguments) {
    QProcess child;
    child.start(QStringLiteral(CORKWHEEL_STORE_CHILD), arguments);
    if (!child.waitForStarted())
        return {};
    // Generous for a sanitizer build; a start that hangs ends here as a failure.
    const bool ended = child.waitForFinished(60000);
    if (!ended) {
        child.kill();
        child.waitForFinished();
    }
    return {ended && child.exitStatus() == QProcess::NormalExit && child.exitCode() == 0,
            child.readAllStandardOutput()};
}

} // namespace

class HostileDocumentsTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<test::PrivateDataHome> m_dataHome;

    QString documentPath() const { return PanelStore::defaultFileLocation(); }

    void putDocument(const QByteArray& bytes) {
        QVERIFY(QDir().mkpath(QFileInfo(documentPath()).absolutePath()));
        QVERIFY(writeFile(documentPath(), bytes));
    }

    // The start a user sees with this document: its panels, or the starter panels.
    static void verifyStartsWith(const QList<Panel>& expected) {
        PanelStore store;
        QCOMPARE(store.panels().size(), expected.size());
        QCOMPARE(store.panels(), expected);
    }

    static void verifyStartsWithStarterPanels() {
        PanelStore store;
        QVERIFY(areStarterPanels(store.panels()));
    }

    // Starting from a document that is not a plain file: the starter panels, and soon a
    // plain panels.json holding them in its place.
    void verifyReplacedByStarterPanels(const ChildRun& run) {
        QVERIFY2(run.ended, "the start did not end by itself");
        QCOMPARE(run.output, QByteArray("panels 3 starter 1\nwritten\n"));
        const QFileInfo document(documentPath());
        QVERIFY(!document.isSymLink());
        QVERIFY(document.isFile());
        QVERIFY(areStarterPanels(*PanelDocument::decode(readFile(documentPath()))));
    }

private Q_SLOTS:
    void init() {
        m_dataHome = std::make_unique<test::PrivateDataHome>();
        QVERIFY(m_dataHome->isValid());
    }

    void cleanup() { m_dataHome.reset(); }

    void tenMegabyteDocumentLoads() {
        const Panel panel = Panel::makeDefault(PanelType::Shell);
        const QByteArray notes = "\"notes\":\"" + QByteArray(10 * 1024 * 1024, 'n') + '"';
        putDocument(documentWithExtraMember(panel, notes));
        verifyStartsWith({panel});
    }

    void tenMegabytesOfUnendedTextGiveStarterPanels() {
        putDocument("[\"" + QByteArray(10 * 1024 * 1024, 'n'));
        verifyStartsWithStarterPanels();
    }

    void hundredThousandPanelsLoad() {
        constexpr int kCount = 100000;
        const Panel model = Panel::makeDefault(PanelType::SystemStats);
        const QByteArray modelText = PanelDocument::encode({model})->chopped(1).mid(1);
        const QByteArray modelId = model.id.toString(QUuid::WithoutBraces).toUpper().toLatin1();
        QList<Panel> panels;
        panels.reserve(kCount);
        QByteArray document = "[";
        document.reserve(kCount * (modelText.size() + 1) + 2);
        for (int i = 0; i < kCount; ++i) {
            Panel panel = model;
            panel.id = QUuid::createUuid();
            panels.append(panel);
            QByteArray text = modelText;
            text.replace(modelId, panel.id.toString(QUuid::WithoutBraces).toUpper().toLatin1());
            document += (i > 0 ? "," : "") + text;
        }
        document += ']';
        QVERIFY(document.size() < PanelStore::kMaxDocumentBytes);
        putDocument(document);
        verifyStartsWith(panels);
    }

    void millionLevelsOfNestingGiveStarterPanels() {
        putDocument(QByteArray(1000000, '['));
        verifyStartsWithStarterPanels();
    }

    void millionLevelsDeepUnknownValueIsSkipped() {
        const Panel panel = Panel::makeDefault(PanelType::Clock);
        const QByteArray deep = QByteArray(1000000, '[') + QByteArray(1000000, ']');
        putDocument(documentWithExtraMember(panel, "\"deep\":" + deep));
        verifyStartsWith({panel});
    }

    void numberBeyondTheRangeOfDoubles_data() {
        QTest::addColumn<QByteArray>("number");
        QTest::newRow("1e400") << QByteArray("1e400");
        QTest::newRow("-1e400") << QByteArray("-1e400");
        QTest::newRow("400 digits") << "1" + QByteArray(400, '0');
    }

    void numberBeyondTheRangeOfDoubles() {
        QFETCH(QByteArray, number);
        const Panel panel = Panel::makeDefault(PanelType::Clock);
        QByteArray document = *PanelDocument::encode({panel});
        document.replace("\"refreshInterval\":1,", "\"refreshInterval\":" + number + ',');
        QVERIFY(document.contains(number));
        putDocument(document);
        verifyStartsWithStarterPanels();
    }

    void utf16DocumentLoads_data() {
        QTest::addColumn<QStringConverter::Encoding>("encoding");
        QTest::addColumn<bool>("byteOrderMark");
        QTest::newRow("little-endian with mark") << QStringConverter::Utf16LE << true;
        QTest::newRow("little-endian") << QStringConverter::Utf16LE << false;
        QTest::newRow("big-endian with mark") << QStringConverter::Utf16BE << true;
        QTest::newRow("big-endian") << QStringConverter::Utf16BE << false;
    }

    void utf16DocumentLoads() {
        QFETCH(QStringConverter::Encoding, encoding);
        QFETCH(bool, byteOrderMark);
        Panel panel = Panel::makeDefault(PanelType::Text);
        panel.name = QStringLiteral("Grüße • 日本 😀");
        const QString text = QString::fromUtf8(*PanelDocument::encode({panel}));
        QStringEncoder encoder(encoding, byteOrderMark ? QStringEncoder::Flag::WriteBom
                                                       : QStringEncoder::Flag::Default);
        putDocument(encoder.encode(text));
        verifyStartsWith({panel});
    }

    void brokenUtf16GivesStarterPanels() {
        QStringEncoder encoder(QStringConverter::Utf16LE);
        QByteArray document = encoder.encode(
            QString::fromUtf8(*PanelDocument::encode({Panel::makeDefault(PanelType::Text)})));
        // A high surrogate with no low one after it, inside the name.
        const qsizetype name = document.indexOf(QByteArray("T\0e\0x\0t\0", 8));
        QVERIFY(name > 0);
        document.replace(name, 2, QByteArray("\x00\xD8", 2));
        putDocument(document);
        verifyStartsWithStarterPanels();
    }

    void deviceBehindTheDocumentIsNotReadWithoutEnd() {
        QVERIFY(QDir().mkpath(QFileInfo(documentPath()).absolutePath()));
        QVERIFY(QFile::link(QStringLiteral("/dev/zero"), documentPath()));
        verifyReplacedByStarterPanels(runStoreChild({QStringLiteral("load"), documentPath()}));
        struct stat device {};
        QCOMPARE(::stat("/dev/zero", &device), 0);
        QVERIFY(S_ISCHR(device.st_mode));
    }

    void oversizedFileBehindTheDocumentIsLeftAlone() {
        // Valid, but longer than a document may be.
        const QByteArray padding =
            "\"padding\":\"" + QByteArray(PanelStore::kMaxDocumentBytes, 'p') + '"';
        const QByteArray bytes =
            documentWithExtraMember(Panel::makeDefault(PanelType::Clock), padding);
        const QString target = m_dataHome->filePath(QStringLiteral("large.json"));
        QVERIFY(writeFile(target, bytes));
        QVERIFY(QDir().mkpath(QFileInfo(documentPath()).absolutePath()));
        QVERIFY(QFile::link(target, documentPath()));

        verifyReplacedByStarterPanels(runStoreChild({QStringLiteral("load"), documentPath()}));
        QVERIFY(readFile(target) == bytes);
    }

    void fifoWithoutWriterDoesNotHoldUpTheStart() {
        QVERIFY(QDir().mkpath(QFileInfo(documentPath()).absolutePath()));
        QCOMPARE(::mkfifo(QFile::encodeName(documentPath()).constData(), 0600), 0);
        verifyReplacedByStarterPanels(runStoreChild({QStringLiteral("load"), documentPath()}));
    }
};

QTEST_GUILESS_MAIN(HostileDocumentsTest)
#include "tst_hostiledocuments.moc"
