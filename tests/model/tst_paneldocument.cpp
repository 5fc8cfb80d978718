// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/PanelDocument.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <cmath>
#include <cstring>
#include <limits>

using namespace corkwheel;

namespace {

Panel fixedPanel() {
    Panel panel = Panel::makeDefault(PanelType::Shell);
    panel.id = QUuid::fromString(QStringLiteral("6f1c2a3b-4d5e-4f60-8a7b-9c0d1e2f3a4b"));
    panel.name = QStringLiteral("Disk");
    panel.frame = {40, 370.5, 420, 60};
    panel.shellCommand = QStringLiteral("df -h /");
    panel.filePath = QStringLiteral("/home/ann/.corkwheel_note.txt");
    panel.style.textColor = {1, 0.5, 0.25, 1};
    panel.style.textAlignment = TextAlignmentOption::Center;
    return panel;
}

const char kFixedPanelDocument[] =
    R"([{"id":"6F1C2A3B-4D5E-4F60-8A7B-9C0D1E2F3A4B","name":"Disk","type":"shell",)"
    R"("isEnabled":true,"frame":{"x":40,"y":370.5,"width":420,"height":60},)"
    R"("style":{"fontName":"SFMono-Regular","fontSize":13,)"
    R"("textColor":{"red":1,"green":0.5,"blue":0.25,"alpha":1},)"
    R"("backgroundColor":{"red":0,"green":0,"blue":0,"alpha":0},"showShadow":true,)"
    R"("showGlassBackground":false,"cornerRadius":16,"opacity":1,"textAlignment":"center"},)"
    R"("refreshInterval":5,"shellCommand":"df -h \/","filePath":"\/home\/ann\/.corkwheel_note.txt",)"
    R"("textTemplate":"Hello, desktop.","clockFormat":"EEEE, MMMM d  )"
    "\xE2\x80\xA2"
    R"(  h:mm:ss a","imageSource":"","webpageURL":""}])";

QByteArray fixedDocument() {
    return QByteArray(kFixedPanelDocument);
}

// The fixed document with the first occurrence of `from` replaced by `to`.
QByteArray fixedDocumentWith(const QByteArray& from, const QByteArray& to) {
    QByteArray document = fixedDocument();
    const qsizetype at = document.indexOf(from);
    Q_ASSERT(at >= 0);
    return document.replace(at, from.size(), to);
}

// Every key of `object` and of the objects inside it, as dotted paths.
void collectKeys(const QJsonObject& object, const QString& prefix, QStringList& paths) {
    for (auto it = object.begin(); it != object.end(); ++it) {
        const QString path = prefix.isEmpty() ? it.key() : prefix + u'.' + it.key();
        paths.append(path);
        if (it.value().isObject())
            collectKeys(it.value().toObject(), path, paths);
    }
}

void addKeyRows(const QJsonObject& object, const QString& prefix) {
    QStringList paths;
    collectKeys(object, prefix, paths);
    for (const QString& path : paths)
        QTest::newRow(qPrintable(path)) << path.split(u'.');
}

// `object` without the key at `path`.
QJsonObject without(QJsonObject object, const QStringList& path) {
    if (path.size() == 1)
        object.remove(path.first());
    else
        object[path.first()] = without(object[path.first()].toObject(), path.mid(1));
    return object;
}

bool isJsonArray(const QByteArray& document) {
    return QJsonDocument::fromJson(document).isArray();
}

} // namespace

class PanelDocumentTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void writtenListReadsBackEqual() {
        QList<Panel> panels;
        for (PanelType type : allPanelTypes())
            panels.append(Panel::makeDefault(type));
        panels[0].name = QStringLiteral(u"a/b \"quoted\"\nline two \u2022 caf\u00e9 \U0001F600");
        panels[1].shellCommand = QStringLiteral("echo \"/tmp/x\" | tr '/' '\\\\'");
        panels[2].frame = {0.1, -17.25, 1e-9, 123456.789};
        panels[3].style.opacity = 0.3;
        panels[4].refreshInterval = 2.5;
        panels[5].isEnabled = false;

        const auto document = PanelDocument::encode(panels);
        QVERIFY(document);
        const auto decoded = PanelDocument::decode(*document);
        QVERIFY(decoded);
        QCOMPARE(decoded->size(), panels.size());
        for (qsizetype i = 0; i < panels.size(); ++i)
            QCOMPARE(decoded->at(i), panels.at(i));
    }

    void fixedPanelIsWrittenByteForByte() {
        const auto document = PanelDocument::encode({fixedPanel()});
        QVERIFY(document);
        QCOMPARE(*document, fixedDocument());
    }

    void emptyListIsAnEmptyArray() {
        QCOMPARE(*PanelDocument::encode({}), QByteArray("[]"));
        QCOMPARE(PanelDocument::decode("[]")->size(), 0);
    }

    void doublesReadBackBitExactly() {
        Panel panel = fixedPanel();
        const double values[] = {0.1,
                                 1.0 / 3.0,
                                 -0.0,
                                 5e-324,
                                 1.7976931348623157e308,
                                 9007199254740993.0,
                                 123456789.123456789};
        for (double value : values) {
            panel.frame.x = value;
            const auto decoded = PanelDocument::decode(*PanelDocument::encode({panel}));
            QVERIFY(decoded);
            const double back = decoded->first().frame.x;
            QCOMPARE(std::memcmp(&back, &value, sizeof value), 0);
        }
    }

    void nonFiniteNumberMakesEncodingFail() {
        Panel panel = fixedPanel();
        panel.style.opacity = std::numeric_limits<double>::quiet_NaN();
        QVERIFY(!PanelDocument::encode({fixedPanel(), panel}));
        panel = fixedPanel();
        panel.frame.width = std::numeric_limits<double>::infinity();
        QVERIFY(!PanelDocument::encode({panel}));
    }

    void missingGlassKeyMakesWholeDocumentUnreadable() {
        const QByteArray incomplete =
            fixedDocumentWith(R"("showGlassBackground":false,)", QByteArray());
        QVERIFY(incomplete.size() < fixedDocument().size());
        const QByteArray complete = fixedDocument().chopped(1);
        const QByteArray document = complete + "," + incomplete.mid(1);
        QVERIFY(PanelDocument::decode(fixedDocument()));
        QVERIFY(!PanelDocument::decode(document));
    }

    void everyKeyIsRequired_data() {
        QTest::addColumn<QStringList>("path");
        const QJsonObject panel =
            QJsonDocument::fromJson(fixedDocument()).array().first().toObject();
        addKeyRows(panel, {});
    }

    void everyKeyIsRequired() {
        QFETCH(QStringList, path);
        QJsonArray panels = QJsonDocument::fromJson(fixedDocument()).array();
        // The document as Qt writes it again still reads; only the missing key counts.
        QVERIFY(PanelDocument::decode(QJsonDocument(panels).toJson(QJsonDocument::Compact)));
        panels[0] = without(panels[0].toObject(), path);
        QVERIFY(!PanelDocument::decode(QJsonDocument(panels).toJson(QJsonDocument::Compact)));
    }

    void everyKeyOfTheDocumentIsTried() {
        const QJsonObject panel =
            QJsonDocument::fromJson(fixedDocument()).array().first().toObject();
        QStringList rows;
        collectKeys(panel, {}, rows);
        for (const char* key :
             {"style", "frame.y", "frame.width", "style.textColor", "style.textColor.green",
              "style.backgroundColor.blue", "style.fontSize", "clockFormat"})
            QVERIFY2(rows.contains(QLatin1String(key)), key);
        // 13 keys of the panel, 4 of its frame, 9 of its style and 4 of each of its colours.
        QCOMPARE(rows.size(), 13 + 4 + 9 + 2 * 4);
    }

    void missingFrameOrStyleObjectIsRejected() {
        QVERIFY(!PanelDocument::decode(
            fixedDocumentWith(R"("frame":{"x":40,"y":370.5,"width":420,"height":60},)", {})));
        QVERIFY(!PanelDocument::decode(
            fixedDocumentWith(R"("backgroundColor":{"red":0,"green":0,"blue":0,"alpha":0},)", {})));
    }

    void wrongCaseTypeIsRejected() {
        QVERIFY(!PanelDocument::decode(fixedDocumentWith(R"("shell")", R"("Shell")")));
    }

    void unknownAlignmentIsRejected() {
        QVERIFY(!PanelDocument::decode(fixedDocumentWith(R"("center")", R"("left")")));
    }

    void wrongJsonTypesAreRejected_data() {
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<QByteArray>("to");
        QTest::newRow("number as string")
            << QByteArray(R"("refreshInterval":5)") << QByteArray(R"("refreshInterval":"5")");
        QTest::newRow("bool as number")
            << QByteArray(R"("isEnabled":true)") << QByteArray(R"("isEnabled":1)");
        QTest::newRow("string as null")
            << QByteArray(R"("name":"Disk")") << QByteArray(R"("name":null)");
        QTest::newRow("frame as array")
            << QByteArray(R"({"x":40,"y":370.5,"width":420,"height":60})")
            << QByteArray("[40,370.5,420,60]");
        QTest::newRow("colour component as bool")
            << QByteArray(R"("green":0.5)") << QByteArray(R"("green":false)");
    }

    void wrongJsonTypesAreRejected() {
        QFETCH(QByteArray, from);
        QFETCH(QByteArray, to);
        QVERIFY(isJsonArray(fixedDocumentWith(from, to)));
        QVERIFY(!PanelDocument::decode(fixedDocumentWith(from, to)));
    }

    void unparsableUuidIsRejected_data() {
        QTest::addColumn<QByteArray>("id");
        QTest::newRow("too short") << QByteArray("6F1C2A3B-4D5E-4F60-8A7B-9C0D1E2F3A4");
        QTest::newRow("not hex") << QByteArray("6F1C2A3B-4D5E-4F60-8A7B-9C0D1E2F3A4G");
        QTest::newRow("braces") << QByteArray("{6F1C2A3B-4D5E-4F60-8A7B-9C0D1E2F3A4B}");
        QTest::newRow("no hyphens") << QByteArray("6F1C2A3B4D5E4F608A7B9C0D1E2F3A4B");
        QTest::newRow("empty") << QByteArray();
    }

    void unparsableUuidIsRejected() {
        QFETCH(QByteArray, id);
        QVERIFY(
            !PanelDocument::decode(fixedDocumentWith("6F1C2A3B-4D5E-4F60-8A7B-9C0D1E2F3A4B", id)));
    }

    void lowerCaseUuidIsAccepted() {
        const auto decoded = PanelDocument::decode(fixedDocumentWith(
            "6F1C2A3B-4D5E-4F60-8A7B-9C0D1E2F3A4B", "6f1c2a3b-4d5e-4f60-8a7b-9c0d1e2f3a4b"));
        QVERIFY(decoded);
        QCOMPARE(decoded->first().id, fixedPanel().id);
    }

    void integerAndFractionalNumbersReadTheSame() {
        const auto asInteger = PanelDocument::decode(fixedDocument());
        const auto asFraction = PanelDocument::decode(
            fixedDocumentWith(R"("refreshInterval":5)", R"("refreshInterval":5.0)"));
        QVERIFY(asInteger && asFraction);
        QCOMPARE(asFraction->first().refreshInterval, 5.0);
        QCOMPARE(asFraction->first(), asInteger->first());
    }

    void unescapedSolidusIsAccepted() {
        QByteArray document = fixedDocument();
        document.replace("\\/", "/");
        const auto decoded = PanelDocument::decode(document);
        QVERIFY(decoded);
        QCOMPARE(decoded->first(), fixedPanel());
    }

    void extraKeysAreIgnoredAndOrderDoesNotMatter() {
        QByteArray document = fixedDocument();
        document.replace(R"({"id")", R"({"comment":[1,{"a":2}],"id")");
        document.replace(R"("name":"Disk","type":"shell",)", R"("type":"shell","name":"Disk",)");
        document.replace(R"("red":1,)", R"("red":1,"extra":"x",)");
        const auto decoded = PanelDocument::decode(document);
        QVERIFY(decoded);
        QCOMPARE(decoded->first(), fixedPanel());
    }

    void notAnArrayOrNotJsonIsRejected() {
        QVERIFY(!PanelDocument::decode(fixedDocument().mid(1).chopped(1)));
        QVERIFY(!PanelDocument::decode("[1]"));
        QVERIFY(!PanelDocument::decode(""));
        QVERIFY(!PanelDocument::decode(fixedDocument().chopped(1)));
    }
};

QTEST_GUILESS_MAIN(PanelDocumentTest)
#include "tst_paneldocument.moc"
