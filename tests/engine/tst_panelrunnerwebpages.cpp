// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/RunnerFixture.h"

#include "engine/PanelRunner.h"
#include "engine/WebPage.h"

#include <QFile>
#include <QSignalSpy>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

// What the runners of web page panels load, and that only they make a web page.

class PanelRunnerWebPagesTest : public QObject, private RunnerFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { resetMachine(); }

    void addressWithoutSchemeLoadsOverHttps() {
        Panel panel = panelOf(PanelType::Webpage);
        panel.webpageURL = QStringLiteral("  example.com/news \n");
        PanelRunner runner(panel, services());
        runner.start();
        QCOMPARE(m_pages.size(), 1);
        QCOMPARE(runner.webPage(), m_pages.first());
        QCOMPARE(m_pages.first()->loads,
                 QList<QUrl>{QUrl(QStringLiteral("https://example.com/news"))});
        QCOMPARE(m_pages.first()->lastTimeout, std::chrono::seconds(60));
    }

    void addressWithSchemeIsKept() {
        Panel panel = panelOf(PanelType::Webpage);
        panel.webpageURL = QStringLiteral("http://localhost:8080/status");
        PanelRunner runner(panel, services());
        runner.start();
        QCOMPARE(m_pages.first()->loads.first(),
                 QUrl(QStringLiteral("http://localhost:8080/status")));
    }

    void blankAddressLoadsNothing() {
        Panel panel = panelOf(PanelType::Webpage);
        panel.webpageURL = QStringLiteral("   ");
        PanelRunner runner(panel, services());
        runner.start();
        QVERIFY(m_pages.isEmpty());
        QCOMPARE(runner.webPage(), nullptr);
    }

    void emptyAddressSaysNothing() {
        Panel panel = panelOf(PanelType::Webpage);
        panel.webpageURL = QString();
        PanelRunner runner(panel, services());
        runner.start();
        QVERIFY(m_pages.isEmpty());
        QCOMPARE(runner.textOutput(), QString());
    }

    void addressThatIsNoWebAddressSaysSo() {
        Panel panel = panelOf(PanelType::Webpage);
        panel.webpageURL = QStringLiteral("   ");
        PanelRunner runner(panel, services());
        runner.start();
        QCOMPARE(runner.textOutput(), QStringLiteral("error: not a web address"));
        panel.webpageURL = QStringLiteral("exa mple.org");
        runner.apply(panel);
        QCOMPARE(runner.textOutput(), QStringLiteral("error: not a web address: exa mple.org"));
        QVERIFY(m_pages.isEmpty());
    }

    void webEngineThatCannotBeLoadedSaysSo() {
        Panel panel = panelOf(PanelType::Webpage);
        panel.webpageURL = QStringLiteral("https://example.org");
        RunnerServices withoutEngine = services();
        withoutEngine.createWebPage = [](QObject*) -> WebPage* { return nullptr; };
        PanelRunner runner(panel, withoutEngine);
        runner.start();
        QCOMPARE(runner.textOutput(), QStringLiteral("error: the web engine could not be loaded"));
        QCOMPARE(runner.webPage(), nullptr);
    }

    void everyRefreshLoadsThePageAgain() {
        Panel panel = panelOf(PanelType::Webpage);
        panel.webpageURL = QStringLiteral("https://example.org");
        PanelRunner runner(panel, services());
        QSignalSpy created(&runner, &PanelRunner::webPageCreated);
        runner.start();
        runner.refreshNow();
        QCOMPARE(created.count(), 1);
        QCOMPARE(m_pages.size(), 1);
        QCOMPARE(m_pages.first()->loads.size(), 2);
    }

    void otherPanelTypesNeverMakeAWebPage() {
        for (PanelType type : allPanelTypes()) {
            if (type == PanelType::Webpage)
                continue;
            Panel panel = panelOf(type);
            panel.webpageURL = QStringLiteral("https://example.org");
            panel.shellCommand = QStringLiteral("true");
            PanelRunner runner(panel, services());
            runner.start();
            QCOMPARE(runner.webPage(), nullptr);
        }
        QVERIFY(m_pages.isEmpty());
    }

    void engineDoesNotBringTheWebEngineIntoTheProcess() {
        QFile maps(QStringLiteral("/proc/self/maps"));
        QVERIFY(maps.open(QIODevice::ReadOnly));
        QVERIFY(!maps.readAll().contains("WebEngine"));
    }
};

QTEST_MAIN(PanelRunnerWebPagesTest)
#include "tst_panelrunnerwebpages.moc"
