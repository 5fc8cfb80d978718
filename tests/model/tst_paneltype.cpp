// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/Panel.h"
#include "model/PanelType.h"
#include "model/TextAlignmentOption.h"

#include <QCoreApplication>
#include <QTest>
#include <QTranslator>

using namespace corkwheel;

namespace {

// A German translation of one label, installed for as long as it lives.
class ShellLabelInGerman : public QTranslator {
public:
    ShellLabelInGerman() { QCoreApplication::installTranslator(this); }

    bool isEmpty() const override { return false; }

    QString translate(const char* context, const char* sourceText, const char*,
                      int) const override {
        if (QByteArrayView(context) == "corkwheel::PanelType" &&
            QByteArrayView(sourceText) == "Shell Command")
            return QStringLiteral("Shell-Befehl");
        return {};
    }
};

} // namespace

class PanelTypeTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void casesComeInTheAddMenuOrder() {
        const QList<PanelType> expected = {
            PanelType::Shell, PanelType::File,        PanelType::Text,   PanelType::Clock,
            PanelType::Image, PanelType::SystemStats, PanelType::Webpage};
        QCOMPARE(allPanelTypes(), expected);
    }

    void rawValuesRoundTrip_data() {
        QTest::addColumn<PanelType>("type");
        QTest::addColumn<QString>("raw");
        QTest::addColumn<QString>("displayName");
        QTest::addColumn<QString>("symbolName");
        QTest::newRow("shell") << PanelType::Shell << "shell"
                               << "Shell Command"
                               << "terminal";
        QTest::newRow("file") << PanelType::File << "file"
                              << "File Content"
                              << "doc.text";
        QTest::newRow("text") << PanelType::Text << "text"
                              << "Text"
                              << "textformat";
        QTest::newRow("clock") << PanelType::Clock << "clock"
                               << "Clock"
                               << "clock";
        QTest::newRow("image") << PanelType::Image << "image"
                               << "Image"
                               << "photo";
        QTest::newRow("systemStats") << PanelType::SystemStats << "systemStats"
                                     << "System Stats"
                                     << "gauge.with.dots.needle.50percent";
        QTest::newRow("webpage") << PanelType::Webpage << "webpage"
                                 << "Webpage"
                                 << "safari";
    }

    void rawValuesRoundTrip() {
        QFETCH(PanelType, type);
        QFETCH(QString, raw);
        QFETCH(QString, displayName);
        QFETCH(QString, symbolName);
        QCOMPARE(rawValue(type), raw);
        QCOMPARE(panelTypeFromRaw(raw), type);
        QCOMPARE(corkwheel::displayName(type), displayName);
        QCOMPARE(corkwheel::symbolName(type), symbolName);
    }

    void unknownRawTypeGivesNoValue() {
        QVERIFY(!panelTypeFromRaw(u"Shell"));
        QVERIFY(!panelTypeFromRaw(u""));
        QVERIFY(!panelTypeFromRaw(u"systemstats"));
    }

    void alignmentRawValuesRoundTrip() {
        for (auto option : {TextAlignmentOption::Leading, TextAlignmentOption::Center,
                            TextAlignmentOption::Trailing})
            QCOMPARE(textAlignmentFromRaw(rawValue(option)), option);
        QCOMPARE(rawValue(TextAlignmentOption::Leading), QStringLiteral("leading"));
        QCOMPARE(rawValue(TextAlignmentOption::Center), QStringLiteral("center"));
        QCOMPARE(rawValue(TextAlignmentOption::Trailing), QStringLiteral("trailing"));
    }

    void labelsFollowTheInstalledTranslation() {
        const ShellLabelInGerman german;
        QCOMPARE(displayName(PanelType::Shell), QStringLiteral("Shell-Befehl"));
        QCOMPARE(displayName(PanelType::File), QStringLiteral("File Content"));
    }

    void newPanelIsNamedWithTheTranslatedLabel() {
        const ShellLabelInGerman german;
        QCOMPARE(Panel::makeDefault(PanelType::Shell).name, QStringLiteral("Shell-Befehl"));
    }

    void unknownAlignmentGivesNoValue() {
        QVERIFY(!textAlignmentFromRaw(u"left"));
        QVERIFY(!textAlignmentFromRaw(u"Center"));
    }
};

QTEST_GUILESS_MAIN(PanelTypeTest)
#include "tst_paneltype.moc"
