// SPDX-License-Identifier: GPL-3.0-or-later

// The web engine plugin's web view, as a webpage panel's content view shows it.

#include "support/PageServer.h"
#include "support/ViewTesting.h"
#include "support/WebEngineTestMain.h"

#include "engine/PanelRunner.h"
#include "engine/WebEngineBackend.h"
#include "engine/WebEngineLoader.h"
#include "engine/WebPage.h"
#include "render/PanelContentView.h"

#include <QApplication>
#include <QSignalSpy>
#include <QTest>
#include <QTimer>
#include <QWebEnginePage>
#include <QWebEngineView>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// A page of the backend, shown in its view in a window of its own, with `url` loaded.
struct ShownPage {
    std::unique_ptr<WebPage> page;
    QWidget window;
    QWidget* view = nullptr;

    QWebEnginePage* engine() const { return page->findChild<QWebEnginePage*>(); }

    bool load(WebEngineBackend& backend, const QUrl& url) {
        page.reset(backend.createPage(nullptr));
        view = backend.createView(page.get(), &window);
        window.resize(320, 200);
        view->resize(320, 200);
        window.show();
        QSignalSpy finished(engine(), &QWebEnginePage::loadFinished);
        page->load(url, std::chrono::seconds(60));
        return QTest::qWaitForWindowExposed(&window) && finished.wait(30000) &&
               finished.first().first().toBool();
    }
};

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

    void pageShowsNoDialogsOverTheDesktop() {
        PageServer server;
        ShownPage shown;
        QVERIFY(shown.load(*m_backend, server.url()));
        // Closes what dialog opens, so that a test that shows one still ends.
        int dialogs = 0;
        QTimer closer;
        connect(&closer, &QTimer::timeout, this, [&dialogs] {
            if (QWidget* dialog = QApplication::activeModalWidget()) {
                ++dialogs;
                dialog->close();
            }
        });
        closer.start(100);
        shown.engine()->runJavaScript(
            QStringLiteral("alert('Hello'); const name = prompt('Your name?', 'Ann');"
                           "document.title = 'confirm: ' + confirm('Delete everything?') + "
                           "', prompt: ' + name;"));
        QTRY_VERIFY(shown.engine()->title().startsWith(QStringLiteral("confirm: ")));
        QCOMPARE(dialogs, 0);
        QCOMPARE(shown.engine()->title(), QStringLiteral("confirm: false, prompt: null"));
    }

    void pageCannotGoFullScreenEvenWhenClicked() {
        PageServer server;
        server.html = "<html><head><title>ready</title></head><body style='margin: 0'>"
                      "<button style='width: 100%; height: 100vh' onclick=\""
                      "document.documentElement.requestFullscreen().then("
                      "() => { document.title = 'full screen: allowed'; },"
                      "() => { document.title = 'full screen: refused'; });\">Go</button>"
                      "</body></html>";
        ShownPage shown;
        QVERIFY(shown.load(*m_backend, server.url()));
        // The engine makes its input widget some time after the load, and a click that
        // comes before it is lost: click again until the page has answered one.
        const auto answered = [&shown] {
            return shown.engine()->title().startsWith(QStringLiteral("full screen: "));
        };
        for (int attempt = 0; attempt < 40 && !answered(); ++attempt) {
            QWidget* input = shown.view->focusProxy() ? shown.view->focusProxy() : shown.view;
            QTest::mouseClick(input, Qt::LeftButton, {}, QPoint(160, 100));
            QTest::qWait(250);
        }
        QVERIFY(answered());
        QCOMPARE(shown.engine()->title(), QStringLiteral("full screen: refused"));
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
