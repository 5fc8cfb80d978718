#include "support/RecordingWebPage.h"
#include "support/ViewTesting.h"

#include "engine/PanelRunner.h"
#include "engine/WebPage.h"
#include "render/PanelContentView.h"
#include "render/PanelFonts.h"
#include "render/TextBody.h"

#include <QBuffer>
#include <QFile>
#include <QImageWriter>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

const QColor kRed(255, 0, 0);
const QColor kBlue(0, 0, 255);
const QColor kGreen(0, 255, 0);

CodableColor codable(const QColor& color) {
    return CodableColor{color.redF(), color.greenF(), color.blueF(), color.alphaF()};
}

Panel textPanel(const QString& text, const QSize& size = QSize(200, 100)) {
    Panel panel = Panel::makeDefault(PanelType::Text);
    panel.textTemplate = text;
    panel.frame = PanelFrame{0, 0, double(size.width()), double(size.height())};
    panel.style.showShadow = false;
    return panel;
}

QString writeImage(const QTemporaryDir& folder, const QImage& image) {
    const QString path = folder.filePath(QStringLiteral("picture.png"));
    QImageWriter writer(path, "png");
    writer.write(image);
    return path;
}

bool isDarkTranslucent(QColor color) {
    return color.alpha() > 0 && color.alpha() < 200 && color.red() < 60 && color.green() < 60 &&
           color.blue() < 60;
}

} // namespace

class PanelContentViewTest : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<FakeMachine> m_machine;
    std::unique_ptr<PanelRunner> m_runner;
    std::unique_ptr<PanelContentView> m_view;
    QList<RecordingWebPage*> m_pages;
    int m_viewsMade = 0;

    // A started runner for `panel` and a view of it at the panel's size.
    PanelContentView& show(const Panel& panel, bool start = true) {
        m_runner =
            std::make_unique<PanelRunner>(panel, m_machine->services([this](QObject* parent) {
                auto* page = new RecordingWebPage(parent);
                m_pages.append(page);
                return page;
            }));
        if (start)
            startAndLoad(panel);
        m_view = std::make_unique<PanelContentView>(*m_runner);
        m_view->setWebViewFactory([this](WebPage*, QWidget* parent) {
            ++m_viewsMade;
            auto* view = new QWidget(parent);
            view->setAutoFillBackground(true);
            QPalette palette = view->palette();
            palette.setColor(QPalette::Window, kGreen);
            view->setPalette(palette);
            return view;
        });
        m_view->resize(int(panel.frame.width), int(panel.frame.height));
        m_view->setPanel(panel);
        return *m_view;
    }

    QImage renderView(double ratio) { return render(*m_view, ratio); }

    // An image panel's file is read in the background: this waits until it has been, so
    // that the view shows what was read.
    void startAndLoad(const Panel& panel) {
        QSignalSpy loaded(m_runner.get(), &PanelRunner::imageChanged);
        m_runner->start();
        if (panel.type == PanelType::Image && !panel.imageSource.isEmpty() && loaded.isEmpty())
            loaded.wait(10000);
    }

private Q_SLOTS:
    void init() {
        m_machine = std::make_unique<FakeMachine>();
        m_pages.clear();
        m_viewsMade = 0;
    }

    void cleanup() {
        m_view.reset();
        m_runner.reset();
    }

    // Text body

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
        Panel panel = textPanel(QStringLiteral("Count 1"));
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
        Panel panel = textPanel(QStringLiteral("HELLO"));
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
        Panel panel = textPanel(QStringLiteral("HELLO"));
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
        Panel text = textPanel(QString());
        QCOMPARE(show(text).displayedText(), QStringLiteral(" "));
        QCOMPARE(countPixels(renderView(1), QRectF(0, 0, 200, 100), isVisible), 0);
        Panel clock = Panel::makeDefault(PanelType::Clock);
        clock.clockFormat = QString();
        QCOMPARE(show(clock).displayedText(), QStringLiteral(" "));
    }

    void textIsDrawnInTheStyleColourInsideThePadding_data() { addRatios(); }

    void textIsDrawnInTheStyleColourInsideThePadding() {
        QFETCH(double, ratio);
        Panel panel = textPanel(QStringLiteral("HELLO"));
        panel.style.textColor = codable(kRed);
        show(panel);
        const QImage image = renderView(ratio);
        const QRectF ink = inkBounds(image, isVisible);
        QVERIFY(countPixels(image, ink, near(kRed)) > 10);
        QVERIFY2(ink.left() >= 4 && ink.left() < 6, qPrintable(QString::number(ink.left())));
        QVERIFY2(ink.top() >= 4 && ink.top() < 10, qPrintable(QString::number(ink.top())));
    }

    void textIsDrawnAtTheStyleSize() {
        Panel panel = textPanel(QStringLiteral("H"));
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
        Panel panel = textPanel(QStringLiteral("HELLO"));
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
        Panel panel = textPanel(QStringLiteral("iiiiiiii"));
        show(panel);
        const QRectF narrow = inkBounds(renderView(1), isVisible);
        m_runner->apply(textPanel(QStringLiteral("WWWWWWWW")));
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

    // A size between two whole pixels is drawn at that size, not rounded to either.
    void fractionalFontSizeIsDrawnAtThatSize() {
        const QString line = QStringLiteral("MMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMMM");
        const auto widthAt = [&](double size) {
            Panel panel = textPanel(line);
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
        Panel panel = textPanel(QStringLiteral("Hi\nHello there"));
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
        show(textPanel(QStringLiteral("one two three four five six seven eight nine ten")));
        const QRectF ink = inkBounds(renderView(1), isVisible);
        QVERIFY(ink.right() <= 196);
        QVERIFY(ink.height() > 20);
    }

    void shadowIsDrawnUnderTheTextOnlyWhenEnabled_data() { addRatios(); }

    void shadowIsDrawnUnderTheTextOnlyWhenEnabled() {
        QFETCH(double, ratio);
        Panel panel = textPanel(QStringLiteral("HELLO"));
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

    // Image body

    void imageIsScaledToFitKeepingItsAspect_data() { addRatios(); }

    void imageIsScaledToFitKeepingItsAspect() {
        QFETCH(double, ratio);
        QTemporaryDir folder;
        QImage picture(400, 200, QImage::Format_ARGB32);
        picture.fill(kBlue);
        Panel panel = Panel::makeDefault(PanelType::Image);
        panel.imageSource = writeImage(folder, picture);
        panel.frame = PanelFrame{0, 0, 200, 200};
        show(panel);
        QVERIFY(!m_runner->image().isNull());
        const QImage image = renderView(ratio);
        QCOMPARE(inkBounds(image, isVisible), QRectF(0, 0, 200, 100));
        QCOMPARE(colorAt(image, QPointF(100, 50)), kBlue);
    }

    void imageIsPlacedAtTheTopByTheAlignment_data() {
        QTest::addColumn<int>("alignment");
        QTest::addColumn<double>("left");
        QTest::newRow("leading") << int(TextAlignmentOption::Leading) << 0.0;
        QTest::newRow("center") << int(TextAlignmentOption::Center) << 50.0;
        QTest::newRow("trailing") << int(TextAlignmentOption::Trailing) << 100.0;
    }

    void imageIsPlacedAtTheTopByTheAlignment() {
        QFETCH(int, alignment);
        QFETCH(double, left);
        QTemporaryDir folder;
        QImage picture(50, 100, QImage::Format_ARGB32);
        picture.fill(kBlue);
        Panel panel = Panel::makeDefault(PanelType::Image);
        panel.imageSource = writeImage(folder, picture);
        panel.frame = PanelFrame{0, 0, 200, 200};
        panel.style.textAlignment = TextAlignmentOption(alignment);
        show(panel);
        QCOMPARE(inkBounds(renderView(1), isVisible), QRectF(left, 0, 100, 200));
    }

    void imageKeepsItsDetailAtDevicePixelRatio2() {
        // One-pixel stripes, shown at half their size on a screen of twice the density:
        // every stripe still gets its own device pixel.
        QTemporaryDir folder;
        QImage picture(200, 200, QImage::Format_ARGB32);
        for (int x = 0; x < 200; ++x) {
            for (int y = 0; y < 200; ++y)
                picture.setPixelColor(x, y, x % 2 ? Qt::black : Qt::white);
        }
        Panel panel = Panel::makeDefault(PanelType::Image);
        panel.imageSource = writeImage(folder, picture);
        panel.frame = PanelFrame{0, 0, 100, 100};
        show(panel);
        const QImage image = renderView(2);
        QCOMPARE(image.size(), QSize(200, 200));
        QVERIFY(image.pixelColor(100, 100).lightness() > 200);
        QVERIFY(image.pixelColor(101, 100).lightness() < 55);
    }

    void missingImageShowsTheDimmedPhotoSymbolInTheMiddle_data() { addRatios(); }

    void missingImageShowsTheDimmedPhotoSymbolInTheMiddle() {
        QFETCH(double, ratio);
        Panel panel = Panel::makeDefault(PanelType::Image);
        panel.imageSource = QStringLiteral("/nonexistent/picture.png");
        panel.frame = PanelFrame{0, 0, 200, 120};
        show(panel);
        QVERIFY(m_runner->image().isNull());
        const QImage image = renderView(ratio);
        const QRectF ink = inkBounds(image, isVisible);
        QVERIFY(ink.width() > 20 && ink.width() <= 32);
        QVERIFY(std::abs(ink.center().x() - 100) <= 2 && std::abs(ink.center().y() - 60) <= 3);
        int maxAlpha = 0;
        countPixels(image, ink, [&](QColor c) {
            maxAlpha = std::max(maxAlpha, c.alpha());
            return false;
        });
        QVERIFY2(maxAlpha > 110 && maxAlpha < 140, qPrintable(QString::number(maxAlpha)));
        QVERIFY(countPixels(image, ink, near(Qt::white, 10, 100)) > 20);
    }

    void glassPadsTheImageBy14Points() {
        QTemporaryDir folder;
        QImage picture(100, 100, QImage::Format_ARGB32);
        picture.fill(kBlue);
        Panel panel = Panel::makeDefault(PanelType::Image);
        panel.imageSource = writeImage(folder, picture);
        panel.frame = PanelFrame{0, 0, 128, 128};
        panel.style.showGlassBackground = true;
        show(panel);
        QCOMPARE(inkBounds(renderView(1), near(kBlue)), QRectF(14, 14, 100, 100));
    }

    // Web body

    void emptyAddressShowsNoUrlSet_data() { addRatios(); }

    void emptyAddressShowsNoUrlSet() {
        QFETCH(double, ratio);
        Panel panel = Panel::makeDefault(PanelType::Webpage);
        panel.webpageURL = QString();
        panel.frame = PanelFrame{0, 0, 200, 120};
        show(panel);
        QVERIFY(!m_view->webView());
        QCOMPARE(m_viewsMade, 0);
        const QImage image = renderView(ratio);
        const QRectF ink = inkBounds(image, isVisible);
        // The symbol over the caption, the pair centred.
        QVERIFY(std::abs(ink.center().x() - 100) <= 2);
        QVERIFY(std::abs(ink.center().y() - 60) <= 3);
        QVERIFY(ink.height() >= 28 + 8 + 6);
        QVERIFY(ink.width() > 40);
        const QRectF symbol(86, ink.top(), 28, 28);
        QVERIFY(countPixels(image, symbol, near(Qt::white, 10, 100)) > 20);
        QVERIFY(countPixels(image, ink, [](QColor c) { return c.alpha() > 140; }) == 0);
    }

    void addressThatCannotBeLoadedShowsWhyInsteadOfThePlaceholder() {
        Panel panel = Panel::makeDefault(PanelType::Webpage);
        panel.webpageURL = QStringLiteral("exa mple.org");
        panel.frame = PanelFrame{0, 0, 200, 120};
        PanelContentView& view = show(panel, false);
        m_runner->start();
        QVERIFY(!view.webView());
        const QRectF ink = inkBounds(renderView(1), isVisible);
        // The error, as text from the top-left corner; not the placeholder, centred.
        QVERIFY2(ink.left() < 20 && ink.top() < 30,
                 qPrintable(QStringLiteral("%1, %2").arg(ink.left()).arg(ink.top())));
        QVERIFY(ink.width() > 100);
    }

    void pageIsShownInAWebViewFillingTheRoundedPanel() {
        Panel panel = Panel::makeDefault(PanelType::Webpage);
        panel.webpageURL = QStringLiteral("example.org");
        panel.frame = PanelFrame{0, 0, 200, 120};
        panel.style.cornerRadius = 16;
        PanelContentView& view = show(panel, false);
        view.show();
        QVERIFY(!view.webView());
        m_runner->start();
        QCOMPARE(m_pages.size(), 1);
        QCOMPARE(m_viewsMade, 1);
        QWidget* web = view.webView();
        QVERIFY(web);
        QCOMPARE(web->parentWidget(), &view);
        QCOMPARE(web->geometry(), QRect(0, 0, 200, 120));
        QVERIFY(web->isVisibleTo(&view));
        QVERIFY(web->mask().contains(QPoint(100, 60)));
        QVERIFY(!web->mask().contains(QPoint(1, 1)));
        QVERIFY(!web->mask().contains(QPoint(198, 118)));

        const QImage image = renderView(1);
        QCOMPARE(colorAt(image, QPointF(100, 60)), kGreen);
        QCOMPARE(colorAt(image, QPointF(1, 1)).alpha(), 0);

        view.resize(300, 150);
        QCOMPARE(web->geometry(), QRect(0, 0, 300, 150));
        QVERIFY(web->mask().contains(QPoint(290, 75)));
    }

    void pageMadeBeforeTheViewIsShownAtOnce() {
        Panel panel = Panel::makeDefault(PanelType::Webpage);
        panel.webpageURL = QStringLiteral("https://example.org");
        panel.frame = PanelFrame{0, 0, 200, 120};
        PanelContentView& view = show(panel);
        QVERIFY(view.webView());
        QCOMPARE(m_viewsMade, 1);
        m_runner->refreshNow();
        view.setPanel(panel);
        QCOMPARE(m_viewsMade, 1);
    }

    void clearingTheAddressShowsThePlaceholderAgain() {
        Panel panel = Panel::makeDefault(PanelType::Webpage);
        panel.webpageURL = QStringLiteral("https://example.org");
        panel.frame = PanelFrame{0, 0, 200, 120};
        PanelContentView& view = show(panel);
        QVERIFY(view.webView()->isVisibleTo(&view));
        panel.webpageURL.clear();
        view.setPanel(panel);
        QVERIFY(!view.webView()->isVisibleTo(&view));
        QVERIFY(countPixels(renderView(1), QRectF(0, 0, 200, 120), isVisible) > 20);
        QCOMPARE(countPixels(renderView(1), QRectF(0, 0, 200, 120), near(kGreen)), 0);
    }

    // The page is composed by the window system apart from the view's painting, so only
    // the window's opacity can fade it: the desktop window carries the panel's opacity.
    void webpagePanelFadesItsWholeWindowAtItsOpacity() {
        Panel panel = Panel::makeDefault(PanelType::Webpage);
        panel.webpageURL = QStringLiteral("https://example.org");
        panel.frame = PanelFrame{0, 0, 200, 120};
        panel.style.opacity = 0.5;
        PanelContentView& view = show(panel);
        QCOMPARE(view.windowOpacity(), 1.0);
        view.setFadesWindow(true);
        // Window systems keep opacity in 8 bits.
        QVERIFY(qAbs(view.windowOpacity() - 0.5) < 0.01);
        // Faded once, by the window, not once more by the painting.
        QCOMPARE(view.paintedOpacity(), 1.0);

        panel.style.opacity = 0.8;
        view.setPanel(panel);
        QVERIFY(qAbs(view.windowOpacity() - 0.8) < 0.01);

        // Without a page the panel paints its placeholder faded itself.
        panel.webpageURL.clear();
        view.setPanel(panel);
        QCOMPARE(view.windowOpacity(), 1.0);
        QCOMPARE(view.paintedOpacity(), 0.8);
    }

    // The editor's preview shares its window with the editor, which must never fade.
    void previewNeverFadesItsWindow() {
        Panel panel = Panel::makeDefault(PanelType::Webpage);
        panel.webpageURL = QStringLiteral("https://example.org");
        panel.frame = PanelFrame{0, 0, 200, 120};
        panel.style.opacity = 0.5;
        QWidget editor;
        PanelContentView& view = show(panel);
        view.setParent(&editor);
        view.setPanel(panel);
        QCOMPARE(editor.windowOpacity(), 1.0);
        QCOMPARE(view.paintedOpacity(), 0.5);
        view.setParent(nullptr);
    }

    void otherPanelTypesNeverTouchTheWebEngine() {
        for (PanelType type : allPanelTypes()) {
            if (type == PanelType::Webpage)
                continue;
            Panel panel = Panel::makeDefault(type);
            panel.webpageURL = QStringLiteral("https://example.org");
            panel.frame = PanelFrame{0, 0, 200, 120};
            show(panel);
            renderView(1);
            QVERIFY(!m_view->webView());
        }
        QCOMPARE(m_viewsMade, 0);
        QCOMPARE(m_pages.size(), 0);
    }

    // Background layers

    void transparentBackgroundWithoutGlassLeavesNoBackground_data() { addRatios(); }

    void transparentBackgroundWithoutGlassLeavesNoBackground() {
        QFETCH(double, ratio);
        Panel panel = textPanel(QStringLiteral("Hi"));
        panel.style.backgroundColor = CodableColor{0.2, 0.4, 0.6, 0};
        panel.style.showGlassBackground = false;
        show(panel);
        const QImage image = renderView(ratio);
        QCOMPARE(colorAt(image, QPointF(0, 0)).alpha(), 0);
        QCOMPARE(colorAt(image, QPointF(199, 99)).alpha(), 0);
        QCOMPARE(colorAt(image, QPointF(100, 80)).alpha(), 0);
        QVERIFY(countPixels(image, QRectF(0, 0, 200, 100), isVisible) > 0);
    }

    void backgroundColourFillsTheRoundedShape_data() {
        QTest::addColumn<double>("ratio");
        QTest::addColumn<double>("radius");
        QTest::newRow("ratio 1, rounded") << 1.0 << 16.0;
        QTest::newRow("ratio 2, rounded") << 2.0 << 16.0;
        QTest::newRow("ratio 1, square") << 1.0 << 0.0;
    }

    void backgroundColourFillsTheRoundedShape() {
        QFETCH(double, ratio);
        QFETCH(double, radius);
        Panel panel = textPanel(QString());
        panel.style.backgroundColor = codable(kRed);
        panel.style.cornerRadius = radius;
        show(panel);
        const QImage image = renderView(ratio);
        QCOMPARE(colorAt(image, QPointF(100, 50)), kRed);
        QCOMPARE(colorAt(image, QPointF(100, 0.5)), kRed);
        const QColor corner = colorAt(image, QPointF(0.5, 0.5));
        if (radius > 0)
            QCOMPARE(corner.alpha(), 0);
        else
            QCOMPARE(corner, kRed);
    }

    void glassIsATranslucentDarkFill_data() { addRatios(); }

    void glassIsATranslucentDarkFill() {
        QFETCH(double, ratio);
        Panel panel = textPanel(QString());
        panel.style.showGlassBackground = true;
        show(panel);
        const QImage image = renderView(ratio);
        const QColor middle = colorAt(image, QPointF(100, 50));
        QVERIFY2(middle.alphaF() > 0.3 && middle.alphaF() < 0.6,
                 qPrintable(middle.name(QColor::HexArgb)));
        QVERIFY(middle.lightness() < 60);
        QCOMPARE(colorAt(image, QPointF(0.5, 0.5)).alpha(), 0);
    }

    void glassLiesOverTheBackgroundColour() {
        Panel panel = textPanel(QString());
        panel.style.backgroundColor = codable(kRed);
        panel.style.showGlassBackground = true;
        show(panel);
        const QColor middle = colorAt(renderView(1), QPointF(100, 50));
        QCOMPARE(middle.alpha(), 255);
        QVERIFY(middle.red() > 100 && middle.red() < 200);
        QVERIFY(middle.green() < 40);
    }

    // Opacity

    void opacityZeroHidesTheContentEntirely_data() { addRatios(); }

    void opacityZeroHidesTheContentEntirely() {
        QFETCH(double, ratio);
        Panel panel = textPanel(QStringLiteral("HELLO"));
        panel.style.backgroundColor = codable(kRed);
        panel.style.showGlassBackground = true;
        panel.style.opacity = 0;
        PanelContentView& view = show(panel);
        view.show();
        QVERIFY(view.isVisible());
        QCOMPARE(countPixels(renderView(ratio), QRectF(0, 0, 200, 100), isVisible), 0);
    }

    void partialOpacityFadesThePanelAsOnePiece_data() { addRatios(); }

    void partialOpacityFadesThePanelAsOnePiece() {
        QFETCH(double, ratio);
        Panel panel = textPanel(QStringLiteral("HELLO"));
        panel.style.backgroundColor = codable(kRed);
        panel.style.opacity = 0.5;
        show(panel);
        const QImage image = renderView(ratio);
        int maxAlpha = 0;
        countPixels(image, QRectF(0, 0, 200, 100), [&](QColor c) {
            maxAlpha = std::max(maxAlpha, c.alpha());
            return false;
        });
        QVERIFY2(std::abs(maxAlpha - 128) <= 2, qPrintable(QString::number(maxAlpha)));
        // The text still shows, lighter than the background around it.
        const QRectF text = inkBounds(image, [](QColor c) { return c.green() > 128; });
        QVERIFY(!text.isEmpty());
    }
};

QTEST_MAIN(PanelContentViewTest)
#include "tst_panelcontentview.moc"
