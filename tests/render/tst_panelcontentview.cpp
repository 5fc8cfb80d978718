// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/ContentViewFixture.h"
#include "support/ViewTesting.h"

#include "render/PanelFonts.h"
#include "render/TextBody.h"

#include <QFile>
#include <QFontDatabase>
#include <QFontInfo>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

// How a panel content view draws the text body.

namespace {

bool isDarkTranslucent(QColor color) {
    return color.alpha() > 0 && color.alpha() < 200 && color.red() < 60 && color.green() < 60 &&
           color.blue() < 60;
}

} // namespace

class PanelContentViewTest : public QObject, private ContentViewFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { resetView(); }

    void cleanup() { releaseView(); }

    void refreshWithTheSameTextDoesNotRedraw() {
        Panel panel = Panel::makeDefault(PanelType::Text);
        panel.textTemplate = QStringLiteral("steady");
        PanelContentView& view = show(panel);
        PaintCounter paints(view);
        view.show();
        QVERIFY(paints.settle());
        const int before = paints.count;

        m_runner->refreshNow();
        m_runner->refreshNow();
        QTest::qWait(100);
        QCOMPARE(paints.count, before);

        panel.textTemplate = QStringLiteral("changed");
        m_runner->apply(panel);
        QTRY_VERIFY(paints.count > before);
    }

    void changedTextRepaintsOnlyWhatChanged() {
        Panel panel = sizedTextPanel(QStringLiteral("Count 1"));
        panel.style.showShadow = true;
        PanelContentView& view = show(panel);
        PaintCounter paints(view);
        view.show();
        QVERIFY(paints.settle());
        const int before = paints.count;

        panel.textTemplate = QStringLiteral("Count 2");
        m_runner->apply(panel);
        QTRY_COMPARE(paints.count, before + 1);
        // The last character and its shadow, not the panel nor the line.
        const QRect repainted = paints.lastArea.boundingRect();
        QVERIFY2(repainted.left() > 30 && repainted.width() < 30 && repainted.height() < 40,
                 qPrintable(QStringLiteral("%1 %2 %3 %4")
                                .arg(repainted.x())
                                .arg(repainted.y())
                                .arg(repainted.width())
                                .arg(repainted.height())));
        QTest::qWait(50);
        QCOMPARE(paints.count, before + 1);

        // What shows is what a panel showing the new text from the start shows.
        const QImage updated = renderView(1);
        show(panel);
        QCOMPARE(updated, renderView(1));
    }

    void newTextColourIsDrawnInIt() {
        Panel panel = sizedTextPanel(QStringLiteral("HELLO"));
        panel.style.textColor = codable(kRed);
        panel.style.showShadow = true;
        show(panel);
        QVERIFY(countPixels(renderView(1), QRectF(0, 0, 200, 100), near(kRed)) > 10);
        panel.style.textColor = codable(kBlue);
        m_view->setPanel(panel);
        const QImage image = renderView(1);
        QVERIFY(countPixels(image, QRectF(0, 0, 200, 100), near(kBlue)) > 10);
        QCOMPARE(countPixels(image, QRectF(0, 0, 200, 100), near(kRed, 100, 1)), 0);
    }

    void movedPanelIsNotRepainted() {
        Panel panel = sizedTextPanel(QStringLiteral("HELLO"));
        PanelContentView& view = show(panel);
        PaintCounter paints(view);
        view.show();
        QVERIFY(paints.settle());
        const int before = paints.count;

        panel.frame.x += 30;
        panel.frame.y += 20;
        view.setPanel(panel);
        QTest::qWait(50);
        QCOMPARE(paints.count, before);

        panel.style.fontSize += 4;
        view.setPanel(panel);
        QTRY_VERIFY(paints.count > before);
    }

    void shellPanelShowsRunningUntilItsOutputArrives() {
        Panel panel = Panel::makeDefault(PanelType::Shell);
        panel.shellCommand = QStringLiteral("sleep 0.3; echo done");
        PanelContentView& view = show(panel);
        QVERIFY(m_runner->isRunning());
        QCOMPARE(view.displayedText(), QStringLiteral("Running…"));
        QTRY_COMPARE(view.displayedText(), QStringLiteral("done"));
    }

    void shellPanelWithoutOutputShowsNoOutput() {
        Panel panel = Panel::makeDefault(PanelType::Shell);
        panel.shellCommand = QStringLiteral("true");
        PanelContentView& view = show(panel);
        QTRY_VERIFY(!m_runner->isRunning());
        QCOMPARE(view.displayedText(), QStringLiteral("(no output)"));
    }

    void filePanelWithAnEmptyFileShowsEmptyFile() {
        QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("empty.txt")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.close();
        Panel panel = Panel::makeDefault(PanelType::File);
        panel.filePath = file.fileName();
        PanelContentView& view = show(panel, false);
        QSignalSpy read(m_runner.get(), &PanelRunner::textOutputChanged);
        m_runner->start();
        QVERIFY(read.wait());
        QCOMPARE(view.displayedText(), QStringLiteral("(empty file)"));
    }

    void textAndClockPanelsWithoutTextShowASpace() {
        Panel text = sizedTextPanel(QString());
        QCOMPARE(show(text).displayedText(), QStringLiteral(" "));
        QCOMPARE(countPixels(renderView(1), QRectF(0, 0, 200, 100), isVisible), 0);
        Panel clock = Panel::makeDefault(PanelType::Clock);
        clock.clockFormat = QString();
        QCOMPARE(show(clock).displayedText(), QStringLiteral(" "));
    }

    void textIsDrawnInTheStyleColourInsideThePadding_data() { addRatios(); }

    void textIsDrawnInTheStyleColourInsideThePadding() {
        QFETCH(double, ratio);
        Panel panel = sizedTextPanel(QStringLiteral("HELLO"));
        panel.style.textColor = codable(kRed);
        show(panel);
        const QImage image = renderView(ratio);
        const QRectF ink = inkBounds(image, isVisible);
        QVERIFY(countPixels(image, ink, near(kRed)) > 10);
        QVERIFY2(ink.left() >= 4 && ink.left() < 6, qPrintable(QString::number(ink.left())));
        QVERIFY2(ink.top() >= 4 && ink.top() < 10, qPrintable(QString::number(ink.top())));
    }

    void textIsDrawnAtTheStyleSize() {
        Panel panel = sizedTextPanel(QStringLiteral("H"));
        panel.style.fontSize = 40;
        show(panel);
        const QRectF big = inkBounds(renderView(1), isVisible);
        panel.style.fontSize = 20;
        m_view->setPanel(panel);
        const QRectF small = inkBounds(renderView(1), isVisible);
        QVERIFY2(std::abs(big.height() / small.height() - 2) < 0.25,
                 qPrintable(QStringLiteral("%1 %2").arg(big.height()).arg(small.height())));
    }

    void glassMovesTheTextToA14PointPadding() {
        Panel panel = sizedTextPanel(QStringLiteral("HELLO"));
        panel.style.textColor = codable(kRed);
        panel.style.showGlassBackground = true;
        show(panel);
        const QRectF ink = inkBounds(renderView(1), near(kRed, 60, 120));
        QVERIFY2(ink.left() >= 14 && ink.left() < 16, qPrintable(QString::number(ink.left())));
        QVERIFY2(ink.top() >= 14 && ink.top() < 20, qPrintable(QString::number(ink.top())));
    }

    void defaultFontStaysMonospaced() {
        // The default style names a font Linux doesn't have; its stand-in is fixed-width,
        // so narrow and wide letters take the same room.
        Panel panel = sizedTextPanel(QStringLiteral("iiiiiiii"));
        show(panel);
        const QRectF narrow = inkBounds(renderView(1), isVisible);
        m_runner->apply(sizedTextPanel(QStringLiteral("WWWWWWWW")));
        const QRectF wide = inkBounds(renderView(1), isVisible);
        QVERIFY2(std::abs(narrow.right() - wide.right()) < 4,
                 qPrintable(QStringLiteral("%1 %2").arg(narrow.right()).arg(wide.right())));
        QVERIFY(QFontInfo(PanelFonts::styleFont(panel.style.fontName, 13)).fixedPitch());
    }

    void installedFontIsUsedByName() {
        const QFont font = PanelFonts::styleFont(QStringLiteral("DejaVu Serif"), 13);
        QCOMPARE(QFontInfo(font).family(), QStringLiteral("DejaVu Serif"));
        QCOMPARE(PanelFonts::sizeOf(font), 13.0);
        QCOMPARE(QFontInfo(font).pixelSize(), 13);
    }

    // Panels store a face by its PostScript name, as the inspector's picker offers faces.
    void faceNamedByItsPostScriptNameIsThatFace() {
        const QFont bold = PanelFonts::styleFont(QStringLiteral("DejaVuSans-Bold"), 13);
        QCOMPARE(QFontInfo(bold).family(), QStringLiteral("DejaVu Sans"));
        QCOMPARE(QFontInfo(bold).styleName(), QStringLiteral("Bold"));
        const QFont serif = PanelFonts::styleFont(QStringLiteral("DejaVuSerif-Bold"), 13);
        QCOMPARE(QFontInfo(serif).family(), QStringLiteral("DejaVu Serif"));
        QCOMPARE(QFontInfo(serif).styleName(), QStringLiteral("Bold"));
    }

    void boldFaceIsDrawnWiderThanItsRegularFace() {
        const auto widthIn = [&](const char* face) {
            Panel panel = sizedTextPanel(QStringLiteral("MMMMMMMM"), QSize(400, 60));
            panel.style.fontName = QLatin1String(face);
            panel.style.fontSize = 24;
            show(panel);
            return inkBounds(renderView(1), isVisible).width();
        };
        const double regular = widthIn("DejaVuSans");
        const double bold = widthIn("DejaVuSans-Bold");
        QVERIFY2(regular > 0 && bold > regular + 8,
                 qPrintable(QStringLiteral("%1 %2").arg(regular).arg(bold)));
        // A family's name, as a document written by hand may hold, still draws that family.
        QCOMPARE(widthIn("DejaVu Sans"), regular);
    }

    void faceThatIsNotInstalledGivesTheFixedWidthFont() {
        const QFont font = PanelFonts::styleFont(QStringLiteral("DejaVuSans-NoSuchWeight"), 13);
        QVERIFY(QFontInfo(font).fixedPitch());
        QCOMPARE(QFontInfo(font).family(),
                 QFontInfo(QFontDatabase::systemFont(QFontDatabase::FixedFont)).family());
    }

    // A size between two whole pixels is drawn at that size, not rounded to either.
    void fractionalFontSizeIsDrawnAtThatSize() {
        const QString line = QStringLiteral("MMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMM");
        const auto widthAt = [&](double size) {
            Panel panel = sizedTextPanel(line);
            panel.style.fontName = QStringLiteral("DejaVu Sans");
            panel.style.fontSize = size;
            panel.frame = PanelFrame{0, 0, 1200, 100};
            show(panel);
            return inkBounds(renderView(1), isVisible).width();
        };
        const double at12 = widthAt(12);
        const double at12AndAHalf = widthAt(12.5);
        const double at13 = widthAt(13);
        QVERIFY2(at12 + 4 < at12AndAHalf && at12AndAHalf + 4 < at13,
                 qPrintable(QStringLiteral("%1 %2 %3").arg(at12).arg(at12AndAHalf).arg(at13)));
        const auto [font, scale] = PanelFonts::scaledStyleFont(QStringLiteral("DejaVu Sans"), 12.5);
        QCOMPARE(PanelFonts::sizeOf(font) * scale, 12.5);
    }

    void textIsAlignedByTheStyle_data() {
        QTest::addColumn<int>("alignment");
        QTest::addColumn<double>("expectedCentre");
        QTest::newRow("leading") << int(TextAlignmentOption::Leading) << -1.0;
        QTest::newRow("center") << int(TextAlignmentOption::Center) << 100.0;
        QTest::newRow("trailing") << int(TextAlignmentOption::Trailing) << -2.0;
    }

    void textIsAlignedByTheStyle() {
        QFETCH(int, alignment);
        QFETCH(double, expectedCentre);
        Panel panel = sizedTextPanel(QStringLiteral("Hi\nHello there"));
        panel.style.textAlignment = TextAlignmentOption(alignment);
        show(panel);
        const QImage image = renderView(1);
        const QRectF first = inkBounds(image.copy(0, 0, 200, 18), isVisible);
        const QRectF second = inkBounds(image.copy(0, 18, 200, 30), isVisible);
        QVERIFY(!first.isEmpty() && !second.isEmpty());
        if (expectedCentre == -1) {
            QVERIFY(first.left() < 8 && second.left() < 8);
        } else if (expectedCentre == -2) {
            QVERIFY(first.right() > 190 && second.right() > 190);
        } else {
            QVERIFY(std::abs(first.center().x() - expectedCentre) < 3);
            QVERIFY(std::abs(second.center().x() - expectedCentre) < 3);
        }
    }

    void longTextWrapsWithinThePanel() {
        show(sizedTextPanel(QStringLiteral("one two three four five six seven eight nine ten")));
        const QRectF ink = inkBounds(renderView(1), isVisible);
        QVERIFY(ink.right() <= 196);
        QVERIFY(ink.height() > 20);
    }

    void shadowIsDrawnUnderTheTextOnlyWhenEnabled_data() { addRatios(); }

    void shadowIsDrawnUnderTheTextOnlyWhenEnabled() {
        QFETCH(double, ratio);
        Panel panel = sizedTextPanel(QStringLiteral("HELLO"));
        show(panel);
        QCOMPARE(countPixels(renderView(ratio), QRectF(0, 0, 200, 100), isDarkTranslucent), 0);
        panel.style.showShadow = true;
        m_view->setPanel(panel);
        const QImage shadowed = renderView(ratio);
        const QRectF text = inkBounds(shadowed, near(Qt::white, 10, 250));
        const QRectF belowText(text.left(), text.bottom() + 0.5, text.width(), 3);
        QVERIFY(countPixels(shadowed, belowText, isDarkTranslucent) > 5 * ratio);
        QCOMPARE(countPixels(shadowed, QRectF(0, text.bottom() + 6, 200, 20), isVisible), 0);
    }

    void megabyteOfOutputLaysOutOnlyWhatFits() {
        QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("big.txt")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        const QByteArray line(1023, 'x');
        for (int i = 0; i < 1024; ++i)
            file.write(line + '\n');
        file.close();
        Panel panel = Panel::makeDefault(PanelType::File);
        panel.filePath = file.fileName();
        panel.frame = PanelFrame{0, 0, 300, 200};
        PanelContentView& view = show(panel, false);
        QSignalSpy read(m_runner.get(), &PanelRunner::textOutputChanged);
        m_runner->start();
        QVERIFY(read.wait());
        QVERIFY(m_runner->textOutput().size() > 1'000'000);

        const QFont font = PanelFonts::styleFont(panel.style.fontName, panel.style.fontSize);
        const QString part = TextBody::visiblePart(m_runner->textOutput(), font, QSizeF(292, 192));
        QVERIFY2(part.size() < 20'000, qPrintable(QString::number(part.size())));
        QVERIFY(m_runner->textOutput().startsWith(part.left(100)));
        // One line of a megabyte is cut just the same.
        const QString oneLine(1 << 20, u'y');
        QVERIFY(TextBody::visiblePart(oneLine, font, QSizeF(292, 192)).size() < 20'000);

        const QImage image = render(view, 1);
        QVERIFY(countPixels(image, QRectF(0, 0, 300, 200), isVisible) > 1000);
        QCOMPARE(countPixels(image, QRectF(0, 196, 300, 4), isVisible), 0);
    }
};

QTEST_MAIN(PanelContentViewTest)
#include "tst_panelcontentview.moc"
