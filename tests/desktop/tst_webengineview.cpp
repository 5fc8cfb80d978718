// The web engine plugin's web view, as a webpage panel's content view shows it.

#include "ViewTesting.h"
#include "WebEngineTestMain.h"

#include "desktop/PanelContentView.h"
#include "engine/PanelRunner.h"
#include "engine/WebEngineBackend.h"
#include "engine/WebEngineLoader.h"
#include "engine/WebPage.h"

#include <QApplication>
#include <QTest>
#include <QWebEnginePage>
#include <QWebEngineView>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

class ForeignPage final : public WebPage {
public:
    using WebPage::WebPage;
    void load(const QUrl&, std::chrono::seconds) override {}
};

} // namespace

class WebEngineViewTest : public QObject {
    Q_OBJECT

private:
    WebEngineBackend* m_backend = nullptr;

private Q_SLOTS:
    void initTestCase() {
        m_backend = WebEngineLoader::backendAt(QStringLiteral(CORKWHEEL_WEBENGINE_PLUGIN));
        QVERIFY(m_backend);
    }

    void viewShowsThePageOfTheBackend() {
        std::unique_ptr<WebPage> page(m_backend->createPage(nullptr));
        QWidget parent;
        QWidget* view = m_backend->createView(page.get(), &parent);
        auto* engineView = qobject_cast<QWebEngineView*>(view);
        QVERIFY(engineView);
        QCOMPARE(view->parentWidget(), &parent);
        QCOMPARE(engineView->page(), page->findChild<QWebEnginePage*>());
    }

    void pageOfAnotherKindGetsNoView() {
        ForeignPage page;
        QWidget parent;
        QVERIFY(!m_backend->createView(&page, &parent));
    }

    void webpagePanelShowsItsPageInTheEnginesView() {
        FakeMachine machine;
        Panel panel = Panel::makeDefault(PanelType::Webpage);
        panel.webpageURL = QStringLiteral("about:blank");
        panel.frame = PanelFrame{0, 0, 320, 200};
        PanelRunner runner(panel, machine.services([this](QObject* parent) {
            return m_backend->createPage(parent);
        }));
        PanelContentView view(runner);
        view.setWebViewFactory(
            [this](WebPage* page, QWidget* parent) { return m_backend->createView(page, parent); });
        view.resize(320, 200);
        view.setPanel(panel);
        runner.start();
        auto* engineView = qobject_cast<QWebEngineView*>(view.webView());
        QVERIFY(engineView);
        QCOMPARE(engineView->page(), runner.webPage()->findChild<QWebEnginePage*>());
        QCOMPARE(engineView->geometry(), QRect(0, 0, 320, 200));
        QVERIFY(!engineView->mask().contains(QPoint(0, 0)));
    }
};

CORKWHEEL_WEBENGINE_TEST_MAIN(WebEngineViewTest, QApplication)
#include "tst_webengineview.moc"
