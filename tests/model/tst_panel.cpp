// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/Panel.h"

#include <QDir>
#include <QTest>

using namespace corkwheel;

class PanelTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void twoDefaultsOfOneTypeDifferOnlyInId() {
        for (PanelType type : allPanelTypes()) {
            Panel first = Panel::makeDefault(type);
            const Panel second = Panel::makeDefault(type);
            QVERIFY(first.id != second.id);
            QVERIFY(!first.id.isNull());
            QVERIFY(first != second);
            first.id = second.id;
            QCOMPARE(first, second);
        }
    }

    void defaultTextPanelHasTemplateAndFrame() {
        const Panel panel = Panel::makeDefault(PanelType::Text);
        QCOMPARE(panel.textTemplate, QStringLiteral("Today is {date:EEEE, MMMM d}"));
        QCOMPARE(panel.frame, (PanelFrame{60, 360, 320, 60}));
        QCOMPARE(panel.refreshInterval, 60.0);
        QCOMPARE(panel.name, QStringLiteral("Text"));
    }

    void defaultClockPanelHasFrameAndOneSecondInterval() {
        const Panel panel = Panel::makeDefault(PanelType::Clock);
        QCOMPARE(panel.frame, (PanelFrame{60, 60, 340, 70}));
        QCOMPARE(panel.refreshInterval, 1.0);
        QCOMPARE(panel.clockFormat, QStringLiteral(u"EEEE, MMMM d  \u2022  h:mm:ss a"));
        QCOMPARE(panel.textTemplate, QStringLiteral("Hello, desktop."));
    }

    void defaultsOfEveryType_data() {
        QTest::addColumn<PanelType>("type");
        QTest::addColumn<QString>("name");
        QTest::addColumn<PanelFrame>("frame");
        QTest::addColumn<double>("interval");
        QTest::newRow("shell") << PanelType::Shell << "Shell Command"
                               << PanelFrame{60, 60, 320, 100} << 5.0;
        QTest::newRow("file") << PanelType::File << "File Content" << PanelFrame{60, 180, 320, 160}
                              << 5.0;
        QTest::newRow("text") << PanelType::Text << "Text" << PanelFrame{60, 360, 320, 60} << 60.0;
        QTest::newRow("clock") << PanelType::Clock << "Clock" << PanelFrame{60, 60, 340, 70} << 1.0;
        QTest::newRow("image") << PanelType::Image << "Image" << PanelFrame{60, 60, 240, 240}
                               << 300.0;
        QTest::newRow("systemStats")
            << PanelType::SystemStats << "System Stats" << PanelFrame{60, 60, 280, 210} << 2.0;
        QTest::newRow("webpage") << PanelType::Webpage << "Webpage" << PanelFrame{60, 60, 420, 300}
                                 << 300.0;
    }

    void defaultsOfEveryType() {
        QFETCH(PanelType, type);
        QFETCH(QString, name);
        QFETCH(PanelFrame, frame);
        QFETCH(double, interval);
        const Panel panel = Panel::makeDefault(type);
        QCOMPARE(panel.type, type);
        QCOMPARE(panel.name, name);
        QCOMPARE(panel.frame, frame);
        QCOMPARE(panel.refreshInterval, interval);
        QVERIFY(panel.isEnabled);
        QCOMPARE(panel.style, PanelStyle{});
        QCOMPARE(panel.imageSource, QString());
        QCOMPARE(panel.webpageURL, QString());
    }

    void onlyTheMatchingTypeSetsItsString() {
        QCOMPARE(Panel::makeDefault(PanelType::Shell).shellCommand, QStringLiteral("date"));
        QCOMPARE(Panel::makeDefault(PanelType::File).filePath,
                 QDir::homePath() + QStringLiteral("/.corkwheel_note.txt"));
        const Panel clock = Panel::makeDefault(PanelType::Clock);
        QCOMPARE(clock.shellCommand, QString());
        QCOMPARE(clock.filePath, QString());
    }

    void defaultStyleIsWhiteMonospacedOnTransparentWithShadow() {
        const PanelStyle style;
        QCOMPARE(style.fontName, QStringLiteral("SFMono-Regular"));
        QCOMPARE(style.fontSize, 13.0);
        QCOMPARE(style.textColor, (CodableColor{1, 1, 1, 1}));
        QCOMPARE(style.backgroundColor, (CodableColor{0, 0, 0, 0}));
        QVERIFY(style.showShadow);
        QVERIFY(!style.showGlassBackground);
        QCOMPARE(style.cornerRadius, 16.0);
        QCOMPARE(style.opacity, 1.0);
        QCOMPARE(style.textAlignment, TextAlignmentOption::Leading);
    }

    void equalityLooksAtEveryStyleComponent() {
        const Panel panel = Panel::makeDefault(PanelType::Clock);
        Panel changed = panel;
        changed.style.backgroundColor.alpha = 0.5;
        QVERIFY(changed != panel);
        changed = panel;
        changed.frame.height += 1;
        QVERIFY(changed != panel);
    }
};

QTEST_GUILESS_MAIN(PanelTest)
#include "tst_panel.moc"
