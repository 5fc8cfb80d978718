// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/ContentViewFixture.h"
#include "support/ViewTesting.h"

#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

// How a panel content view shows the web body, in a web view of its own.

class PanelContentViewWebTest : public QObject, private ContentViewFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { resetView(); }

    void cleanup() { releaseView(); }

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
};

QTEST_MAIN(PanelContentViewWebTest)
#include "tst_panelcontentviewweb.moc"
