// The web engine plugin, loaded the way Corkwheel loads it, with a real QWebEnginePage.

#include "engine/WebEngineBackend.h"
#include "engine/WebEngineLoader.h"
#include "engine/WebPage.h"

#include <QFile>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <QWebEnginePage>

using namespace corkwheel;

class WebEnginePluginTest : public QObject {
    Q_OBJECT

private:
    WebEngineBackend* m_backend = nullptr;

    QWebEnginePage* engineOf(WebPage* page) { return page->findChild<QWebEnginePage*>(); }

private Q_SLOTS:
    void initTestCase() {
        m_backend = WebEngineLoader::backendAt(QStringLiteral(CORKWHEEL_WEBENGINE_PLUGIN));
        QVERIFY(m_backend);
    }

    void missingPluginGivesNoBackend() {
        QVERIFY(!WebEngineLoader::backendAt(QStringLiteral("/nonexistent/corkwheel-webengine")));
    }

    void pageLoadsTheAddress() {
        QTemporaryDir folder;
        QFile html(folder.filePath(QStringLiteral("page.html")));
        QVERIFY(html.open(QIODevice::WriteOnly));
        html.write("<html><head><title>Corkwheel test page</title></head><body>hi</body></html>");
        html.close();

        std::unique_ptr<WebPage> page(m_backend->createPage(nullptr));
        QWebEnginePage* engine = engineOf(page.get());
        QVERIFY(engine);
        QSignalSpy finished(engine, &QWebEnginePage::loadFinished);
        page->load(QUrl::fromLocalFile(html.fileName()), std::chrono::seconds(60));
        QVERIFY(finished.wait(30000));
        QCOMPARE(finished.first().first().toBool(), true);
        QCOMPARE(engine->title(), QStringLiteral("Corkwheel test page"));
    }

    void loadStillGoingAtTheLimitIsStopped() {
        // Accepts the connection and never answers.
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost));
        std::unique_ptr<WebPage> page(m_backend->createPage(nullptr));
        QWebEnginePage* engine = engineOf(page.get());
        QSignalSpy finished(engine, &QWebEnginePage::loadFinished);
        page->load(QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(silent.serverPort())),
                   std::chrono::seconds(1));
        QVERIFY(finished.wait(15000));
        QCOMPARE(finished.first().first().toBool(), false);
    }
};

QTEST_MAIN(WebEnginePluginTest)
#include "tst_webengineplugin.moc"
