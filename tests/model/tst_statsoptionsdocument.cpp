// SPDX-License-Identifier: GPL-3.0-or-later

// The keys of a system-stats panel's optional rows and warnings in the document, against a
// document written before they existed (tests/data/documents/panels-72ed908.json, written by
// the encoder at 72ed908: the starter panels, a default panel of each type and a system-stats
// panel with a style of its own).

#include "support/FixtureFile.h"
#include "support/MemberCount.h"

#include "model/DocumentFields.h"
#include "model/PanelDocument.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>
#include <QTest>

#include <functional>

using namespace corkwheel;
using namespace corkwheel::test;
using corkwheel::test::fixtureFile;

namespace {

QByteArray olderDocument() {
    return fixtureFile(QStringLiteral("documents/panels-72ed908.json"));
}

// The last panel of the older document, "Machine", with every optional row and warning
// changed from its default.
SystemStatsOptions everythingOn() {
    SystemStatsOptions options;
    options.rows = StatsRows{true, true, true, true, true, true};
    StatsWarnings& warnings = options.warnings;
    warnings.cpu = {true, 80, {1, 0, 0, 1}};
    warnings.memory = {true, 75, {1, 0.5, 0, 1}};
    warnings.disks = {true, 95, {0.5, 0, 1, 1}};
    warnings.swap = {true, 25, {0, 1, 1, 1}};
    warnings.temperatures = {true, 70, {1, 0, 1, 0.5}};
    warnings.temperaturesAtSensorMax = false;
    warnings.battery = {true, 20, {1, 1, 0, 1}};
    return options;
}

// The document text of the "systemStats" key and its value, with the comma before it, as
// the encoder writes it into a panel.
QByteArray systemStatsKeyIn(const QByteArray& document) {
    const qsizetype start = document.indexOf(",\"systemStats\":{");
    if (start < 0)
        return {};
    // The value is the object that opens there; no string inside it holds a brace.
    qsizetype depth = 0;
    for (qsizetype i = document.indexOf('{', start); i < document.size(); ++i) {
        depth += document[i] == '{' ? 1 : document[i] == '}' ? -1 : 0;
        if (depth == 0)
            return document.sliced(start, i + 1 - start);
    }
    return {};
}

template <typename Object> void verifyEveryMemberIsSavedOnce() {
    Object object;
    QSet<const void*> members;
    QSet<QByteArray> keys;
    forEachDocumentEntry(object, [&](const auto& field, const auto& member) {
        members.insert(&member);
        keys.insert(QByteArray(field.key.data(), static_cast<qsizetype>(field.key.size())));
        // Every key of these objects came after the first form of the document.
        QVERIFY(field.presence != KeyPresence::Required);
    });
    QCOMPARE(members.size(), qsizetype(memberCount<Object>()));
    QCOMPARE(keys.size(), qsizetype(memberCount<Object>()));
}

} // namespace

class StatsOptionsDocumentTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void olderDocumentReadsWithTheDefaults() {
        const auto panels = PanelDocument::decode(olderDocument());
        QVERIFY(panels);
        QCOMPARE(panels->size(), 11);
        for (const Panel& panel : *panels)
            QCOMPARE(panel.systemStats, SystemStatsOptions{});
        QCOMPARE(panels->last().name, QStringLiteral("Machine"));
    }

    void olderDocumentIsWrittenAgainByteForByte() {
        const auto panels = PanelDocument::decode(olderDocument());
        QVERIFY(panels);
        QCOMPARE(PanelDocument::encode(*panels), std::optional(olderDocument()));
    }

    void optionsReadBackEqual() {
        auto panels = PanelDocument::decode(olderDocument());
        QVERIFY(panels);
        panels->last().systemStats = everythingOn();
        (*panels)[1].systemStats.rows.battery = true;
        const auto document = PanelDocument::encode(*panels);
        QVERIFY(document);
        QCOMPARE(PanelDocument::decode(*document), panels);
    }

    // What a Corkwheel from before these keys reads of a newer document: its reader skips a
    // key it does not know with everything inside it, so it sees the document without the
    // key, which is the older document byte for byte.
    void newerDocumentLessItsNewKeyIsTheOlderOne() {
        auto panels = PanelDocument::decode(olderDocument());
        QVERIFY(panels);
        panels->last().systemStats = everythingOn();
        QByteArray newer = *PanelDocument::encode(*panels);
        const QByteArray key = systemStatsKeyIn(newer);
        QVERIFY(!key.isEmpty());
        QCOMPARE(newer.count(key), 1);
        newer.replace(key, QByteArray());
        QCOMPARE(newer, olderDocument());
    }

    void keyUnknownToTheReaderIsSkippedWithWhatItHolds() {
        auto panels = PanelDocument::decode(olderDocument());
        QVERIFY(panels);
        panels->last().systemStats = everythingOn();
        QByteArray newer = *PanelDocument::encode(*panels);
        newer.replace("\"systemStats\":", "\"systemStatsOfALaterCorkwheel\":");
        QCOMPARE(PanelDocument::decode(newer), PanelDocument::decode(olderDocument()));
    }

    void onlyPanelsThatUseTheKeyHaveIt() {
        auto panels = PanelDocument::decode(olderDocument());
        QVERIFY(panels);
        (*panels)[8].systemStats.warnings.cpu.isOn = true;
        const QByteArray document = *PanelDocument::encode(*panels);
        QCOMPARE(document.count("\"systemStats\":{"), 1);
        const QJsonArray written = QJsonDocument::fromJson(document).array();
        QVERIFY(written[8].toObject().contains(QStringLiteral("systemStats")));
        // Written whole, so that a later change of a default leaves this panel as it is.
        const QJsonObject options = written[8].toObject()[QStringLiteral("systemStats")].toObject();
        QCOMPARE(options[QStringLiteral("rows")].toObject().size(), 6);
        QCOMPARE(options[QStringLiteral("warnings")].toObject().size(), 7);
        QCOMPARE(options[QStringLiteral("warnings")]
                     .toObject()[QStringLiteral("cpu")]
                     .toObject()[QStringLiteral("threshold")]
                     .toDouble(),
                 90.0);
    }

    void everyKeyInsideIsOptional_data() {
        QTest::addColumn<QStringList>("path");
        QTest::addColumn<int>("missing");
        const QStringList paths{
            QStringLiteral("rows"),
            QStringLiteral("rows.cores"),
            QStringLiteral("rows.battery"),
            QStringLiteral("warnings"),
            QStringLiteral("warnings.cpu"),
            QStringLiteral("warnings.cpu.threshold"),
            QStringLiteral("warnings.cpu.color"),
            QStringLiteral("warnings.battery.isOn"),
            QStringLiteral("warnings.temperaturesAtSensorMax"),
            QStringLiteral("warnings.temperatures.color"),
        };
        for (int i = 0; i < paths.size(); ++i)
            QTest::newRow(qPrintable(paths[i])) << paths[i].split(u'.') << i;
    }

    void everyKeyInsideIsOptional() {
        QFETCH(QStringList, path);
        QFETCH(int, missing);
        Panel panel = Panel::makeDefault(PanelType::SystemStats);
        panel.systemStats = everythingOn();
        QJsonArray document = QJsonDocument::fromJson(*PanelDocument::encode({panel})).array();
        QJsonObject written = document[0].toObject();
        const std::function<QJsonObject(QJsonObject, QStringList)> without =
            [&without](QJsonObject object, QStringList keys) {
                const QString first = keys.takeFirst();
                if (keys.isEmpty())
                    object.remove(first);
                else
                    object[first] = without(object[first].toObject(), keys);
                return object;
            };
        written[QStringLiteral("systemStats")] =
            without(written[QStringLiteral("systemStats")].toObject(), path);
        document[0] = written;
        const auto decoded =
            PanelDocument::decode(QJsonDocument(document).toJson(QJsonDocument::Compact));
        QVERIFY(decoded);
        QCOMPARE(decoded->size(), 1);

        // The missing key takes its default, and only it.
        SystemStatsOptions expected = everythingOn();
        const SystemStatsOptions defaults;
        switch (missing) {
        case 0:
            expected.rows = defaults.rows;
            break;
        case 1:
            expected.rows.cores = false;
            break;
        case 2:
            expected.rows.battery = false;
            break;
        case 3:
            expected.warnings = defaults.warnings;
            break;
        case 4:
            expected.warnings.cpu = defaults.warnings.cpu;
            break;
        case 5:
            expected.warnings.cpu.threshold = 90;
            break;
        case 6:
            expected.warnings.cpu.color = StatsWarning{}.color;
            break;
        case 7:
            expected.warnings.battery.isOn = false;
            break;
        case 8:
            expected.warnings.temperaturesAtSensorMax = true;
            break;
        case 9:
            expected.warnings.temperatures.color = StatsWarning{}.color;
            break;
        }
        QCOMPARE(decoded->first().systemStats, expected);
    }

    void wrongTypeInsideRejectsTheDocument() {
        Panel panel = Panel::makeDefault(PanelType::SystemStats);
        panel.systemStats.rows.fans = true;
        QByteArray document = *PanelDocument::encode({panel});
        QVERIFY(PanelDocument::decode(document));
        document.replace("\"fans\":true", "\"fans\":\"yes\"");
        QVERIFY(!PanelDocument::decode(document));
    }

    void everyMemberIsSavedUnderAKeyOfItsOwn() {
        verifyEveryMemberIsSavedOnce<SystemStatsOptions>();
        verifyEveryMemberIsSavedOnce<StatsRows>();
        verifyEveryMemberIsSavedOnce<StatsWarnings>();
        verifyEveryMemberIsSavedOnce<StatsWarning>();
    }
};

QTEST_GUILESS_MAIN(StatsOptionsDocumentTest)
#include "tst_statsoptionsdocument.moc"
