// SPDX-License-Identifier: GPL-3.0-or-later

// The web engine plugin, loaded the way Corkwheel loads it, with a real QWebEnginePage.

#include "support/PageServer.h"
#include "support/WebEngineTestMain.h"

#include "engine/WebEngineBackend.h"
#include "engine/WebEngineLoader.h"
#include "engine/WebPage.h"

#include <QFile>
#include <QGuiApplication>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTemporaryDir>
#include <QTest>
#include <QWebEnginePage>
#include <QWebEngineProfile>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// Reads `address` from the page's side and puts what happened in the title.
QString readingScript(const QUrl& address) {
    return QStringLiteral("try {"
                          "  const r = new XMLHttpRequest();"
                          "  r.onload = () => { document.title = 'file: read'; };"
                          "  r.onerror = () => { document.title = 'file: refused'; };"
                          "  r.open('GET', '%1');"
                          "  r.send();"
                          "} catch (e) { document.title = 'file: refused'; }")
        .arg(address.toString());
}

} // namespace

class WebEnginePluginTest : public QObject {
    Q_OBJECT

private:
    WebEngineBackend* m_backend = nullptr;

    QWebEnginePage* engineOf(WebPage* page) { return page->findChild<QWebEnginePage*>(); }

    // A page of the plugin with `url` loaded.
    std::unique_ptr<WebPage> loadedPage(const QUrl& url) {
        std::unique_ptr<WebPage> page(m_backend->createPage(nullptr));
        QSignalSpy finished(engineOf(page.get()), &QWebEnginePage::loadFinished);
        page->load(url, std::chrono::seconds(60));
        if (!finished.wait(30000) || !finished.first().first().toBool())
            return nullptr;
        return page;
    }

private Q_SLOTS:
    void initTestCase() {
        // A camera and a microphone to ask for: without any, a page learns there are none
        // before it is asked whether it may use them.
        qputenv("QTWEBENGINE_CHROMIUM_FLAGS",
                qgetenv("QTWEBENGINE_CHROMIUM_FLAGS") + " --use-fake-device-for-media-stream");
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

    void pageAskingForTheUsersAttentionOrDevicesIsRefused_data() {
        QTest::addColumn<QString>("script");
        QTest::addColumn<QString>("title");
        QTest::newRow("notifications")
            << "Notification.requestPermission().then(p => { document.title = 'notifications: ' "
               "+ p; });"
            << "notifications: denied";
        QTest::newRow("camera") << "navigator.mediaDevices.getUserMedia({video: true}).then("
                                   "() => { document.title = 'camera: allowed'; },"
                                   "e => { document.title = 'camera: ' + e.name; });"
                                << "camera: NotAllowedError";
        QTest::newRow("microphone") << "navigator.mediaDevices.getUserMedia({audio: true}).then("
                                       "() => { document.title = 'microphone: allowed'; },"
                                       "e => { document.title = 'microphone: ' + e.name; });"
                                    << "microphone: NotAllowedError";
        QTest::newRow("location")
            << "navigator.geolocation.getCurrentPosition("
               "() => { document.title = 'location: allowed'; },"
               "e => { document.title = 'location: ' + (e.code === e.PERMISSION_DENIED ? "
               "'denied' : 'error ' + e.code); }, {timeout: 3000});"
            << "location: denied";
        QTest::newRow("full screen") << "document.title = 'full screen: ' + "
                                        "(document.fullscreenEnabled ? 'offered' : 'not offered');"
                                     << "full screen: not offered";
    }

    void pageAskingForTheUsersAttentionOrDevicesIsRefused() {
        QFETCH(QString, script);
        QFETCH(QString, title);
        PageServer server;
        const auto page = loadedPage(server.url());
        QVERIFY(page);
        // As in a panel's view: a hidden page is not asked for where it is.
        engineOf(page.get())->setVisible(true);
        engineOf(page.get())->runJavaScript(script);
        QTRY_COMPARE_WITH_TIMEOUT(engineOf(page.get())->title(), title, 15000);
    }

    void webPageCannotReadLocalFiles() {
        QTemporaryDir folder;
        QFile secret(folder.filePath(QStringLiteral("secret.txt")));
        QVERIFY(secret.open(QIODevice::WriteOnly));
        secret.write("secret");
        secret.close();
        PageServer server;
        const auto page = loadedPage(server.url());
        QVERIFY(page);
        engineOf(page.get())->runJavaScript(readingScript(QUrl::fromLocalFile(secret.fileName())));
        QTRY_COMPARE_WITH_TIMEOUT(engineOf(page.get())->title(), QStringLiteral("file: refused"),
                                  15000);
    }

    void localPageCannotReadOtherLocalFiles() {
        QTemporaryDir folder;
        QFile secret(folder.filePath(QStringLiteral("secret.txt")));
        QVERIFY(secret.open(QIODevice::WriteOnly));
        secret.write("secret");
        secret.close();
        QFile html(folder.filePath(QStringLiteral("page.html")));
        QVERIFY(html.open(QIODevice::WriteOnly));
        html.write("<html><head><title>ready</title></head><body>hi</body></html>");
        html.close();
        const auto page = loadedPage(QUrl::fromLocalFile(html.fileName()));
        QVERIFY(page);
        engineOf(page.get())->runJavaScript(readingScript(QUrl::fromLocalFile(secret.fileName())));
        QTRY_COMPARE_WITH_TIMEOUT(engineOf(page.get())->title(), QStringLiteral("file: refused"),
                                  15000);
    }

    void webDataIsKeptInTheXdgFoldersNotTheHomeFolder() {
        PageServer server;
        const auto page = loadedPage(server.url());
        QVERIFY(page);
        QWebEnginePage* engine = engineOf(page.get());
        engine->runJavaScript(
            QStringLiteral("localStorage.setItem('taste', 'sweet'); document.title = 'kept';"));
        QTRY_COMPARE(engine->title(), QStringLiteral("kept"));

        const QString data =
            QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u'/';
        const QString cache =
            QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + u'/';
        const QString storage = engine->profile()->persistentStoragePath();
        QVERIFY2(storage.startsWith(data), qPrintable(storage));
        QVERIFY2(engine->profile()->cachePath().startsWith(cache),
                 qPrintable(engine->profile()->cachePath()));
        QTRY_VERIFY(QFile::exists(storage + QStringLiteral("/Local Storage")));
        const QStringList inHome =
            QDir::home().entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        QCOMPARE(inHome, (QStringList{QStringLiteral(".cache"), QStringLiteral(".local")}));
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

CORKWHEEL_WEBENGINE_TEST_MAIN(WebEnginePluginTest, QGuiApplication)
#include "tst_webengineplugin.moc"
