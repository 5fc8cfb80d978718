// SPDX-License-Identifier: GPL-3.0-or-later

#include "support/BackgroundWork.h"
#include "support/HostileImages.h"
#include "support/RunnerFixture.h"
#include "support/SlowFile.h"
#include "support/TemporaryFiles.h"

#include "engine/PanelRunner.h"

#include <QBuffer>
#include <QImageWriter>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTest>

using namespace corkwheel;
using namespace corkwheel::test;

// What the runners of image panels show, from local files and from downloads.

namespace {

QByteArray pngBytes(const QColor& color) {
    QImage image(4, 3, QImage::Format_ARGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter(&buffer, "png").write(image);
    return bytes;
}

// A one-file web server on loopback: every request gets `body` with `status`.
class TinyHttpServer : public QObject {
public:
    TinyHttpServer() {
        QObject::connect(&m_server, &QTcpServer::newConnection, this, [this] { answer(); });
        m_server.listen(QHostAddress::LocalHost);
    }
    QString url(const QString& path) const {
        return QStringLiteral("http://127.0.0.1:%1%2").arg(m_server.serverPort()).arg(path);
    }
    QByteArray body;
    QByteArray status = "200 OK";
    int requests = 0;
    // Requests answered with `body` as it was then.
    int answered = 0;

private:
    void answer() {
        while (QTcpSocket* socket = m_server.nextPendingConnection()) {
            ++requests;
            connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
                socket->readAll();
                socket->write("HTTP/1.1 " + status +
                              "\r\nContent-Length: " + QByteArray::number(body.size()) +
                              "\r\nConnection: close\r\n\r\n" + body);
                ++answered;
                socket->disconnectFromHost();
            });
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
        }
    }
    QTcpServer m_server;
};

// Whether the runner's download ended; what it fetched is decoded and delivered by then.
bool downloadAndDecodeEnded(const PanelRunner& runner) {
    const bool ended =
        QTest::qWaitFor([&] { return runner.findChildren<QNetworkReply*>().isEmpty(); }, 10000);
    waitForBackgroundWork();
    return ended;
}

} // namespace

class PanelRunnerImagesTest : public QObject, private RunnerFixture {
    Q_OBJECT

private Q_SLOTS:
    void init() { resetMachine(); }

    void localImageLoads() {
        QTemporaryDir folder;
        const QString path = writeFile(folder, QStringLiteral("red.png"), pngBytes(Qt::red));
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource = path;
        PanelRunner runner(panel, services());
        runner.start();
        QTRY_COMPARE(runner.image().size(), QSize(4, 3));
        QCOMPARE(runner.image().pixelColor(0, 0), QColor(Qt::red));
    }

    void missingLocalImageShowsNone() {
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource = QStringLiteral("/nonexistent/picture.png");
        PanelRunner runner(panel, services());
        QSignalSpy image(&runner, &PanelRunner::imageChanged);
        runner.start();
        QVERIFY(image.wait());
        QVERIFY(runner.image().isNull());
    }

    void emptyImageSourceClearsTheImage() {
        QTemporaryDir folder;
        const QString path = writeFile(folder, QStringLiteral("red.png"), pngBytes(Qt::red));
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource = path;
        PanelRunner runner(panel, services());
        runner.start();
        QTRY_VERIFY(!runner.image().isNull());
        panel.imageSource.clear();
        runner.apply(panel);
        QVERIFY(runner.image().isNull());
    }

    void hostileLocalImageFilesShowNoImage_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("png declaring 100000 x 100000") << pngDeclaring(100000, 100000);
        QTest::newRow("jpeg declaring 65000 x 65000") << jpegDeclaring(65000, 65000);
        QTest::newRow("svg of nested entities") << svgOfNestedEntities();
        QTest::newRow("truncated png") << truncatedPng();
        QTest::newRow("not an image") << QByteArray("#!/bin/sh\necho hello\n");
    }

    void hostileLocalImageFilesShowNoImage() {
        QFETCH(QByteArray, bytes);
        QTemporaryDir folder;
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource = writeFile(folder, QStringLiteral("hostile.png"), pngBytes(Qt::red));
        PanelRunner runner(panel, services());
        runner.start();
        QTRY_VERIFY(!runner.image().isNull());
        panel.imageSource = writeFile(folder, QStringLiteral("hostile.img"), bytes);
        runner.apply(panel);
        QTRY_VERIFY(runner.image().isNull());
    }

    void localImageSlowToReadDoesNotHoldUpTheRunner() {
        QTemporaryDir folder;
        SlowFile slow(folder.filePath(QStringLiteral("slow.png")), pngBytes(Qt::red));
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource = slow.path();
        PanelRunner runner(panel, services());
        runner.start();
        slow.release();
        QTRY_VERIFY(!runner.image().isNull());
        QCOMPARE(runner.image().pixelColor(0, 0), QColor(Qt::red));
        slow.finish();
        QVERIFY(slow.wasHeldUntilReleased());
    }

    void slowEarlierLocalImageDoesNotReplaceALaterOne() {
        QTemporaryDir folder;
        SlowFile slow(folder.filePath(QStringLiteral("slow.png")), pngBytes(Qt::red));
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource = slow.path();
        PanelRunner runner(panel, services());
        runner.start();
        panel.imageSource = writeFile(folder, QStringLiteral("quick.png"), pngBytes(Qt::blue));
        runner.apply(panel);
        QTRY_VERIFY(!runner.image().isNull());
        QCOMPARE(runner.image().pixelColor(0, 0), QColor(Qt::blue));

        QSignalSpy changes(&runner, &PanelRunner::imageChanged);
        slow.release();
        slow.finish();
        waitForBackgroundWork();
        QCOMPARE(changes.count(), 0);
        QCOMPARE(runner.image().pixelColor(0, 0), QColor(Qt::blue));
    }

    void downloadedImageIsShown() {
        TinyHttpServer server;
        server.body = pngBytes(Qt::blue);
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource = server.url(QStringLiteral("/blue.png"));
        PanelRunner runner(panel, services());
        runner.start();
        QTRY_VERIFY(!runner.image().isNull());
        QCOMPARE(runner.image().pixelColor(1, 1), QColor(Qt::blue));
    }

    void failedDownloadKeepsThePreviousImage() {
        TinyHttpServer server;
        server.body = pngBytes(Qt::blue);
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource = server.url(QStringLiteral("/blue.png"));
        PanelRunner runner(panel, services());
        runner.start();
        QTRY_VERIFY(!runner.image().isNull());

        QSignalSpy changes(&runner, &PanelRunner::imageChanged);

        server.status = "404 Not Found";
        server.body = "gone";
        runner.refreshNow();
        QTRY_COMPARE(server.requests, 2);
        QVERIFY(downloadAndDecodeEnded(runner));
        QCOMPARE(runner.image().pixelColor(1, 1), QColor(Qt::blue));

        server.status = "200 OK";
        server.body = "not an image";
        runner.refreshNow();
        QTRY_COMPARE(server.requests, 3);
        QVERIFY(downloadAndDecodeEnded(runner));
        QCOMPARE(runner.image().pixelColor(1, 1), QColor(Qt::blue));
        QCOMPARE(changes.count(), 0);

        // A picture again is shown: the two above would have been too.
        server.body = pngBytes(Qt::red);
        runner.refreshNow();
        QTRY_COMPARE(runner.image().pixelColor(1, 1), QColor(Qt::red));
    }

    void capitalisedSchemeIsAFilePathNotADownload() {
        TinyHttpServer server;
        server.body = pngBytes(Qt::blue);
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource =
            server.url(QStringLiteral("/blue.png")).replace(0, 4, QStringLiteral("HTTP"));
        PanelRunner runner(panel, services());
        runner.start();
        waitForBackgroundWork();
        QCOMPARE(server.requests, 0);
        QVERIFY(runner.image().isNull());

        // Spelled as a download, the same address is downloaded.
        panel.imageSource.replace(0, 4, QStringLiteral("http"));
        runner.apply(panel);
        QTRY_COMPARE(server.requests, 1);
        QTRY_VERIFY(!runner.image().isNull());
    }

    // The panel never shows a picture from a download past the size limit: the download
    // after it, of a small picture, is the first and only one shown.
    void oversizedDownloadIsDropped() {
        TinyHttpServer server;
        server.body = pngBytes(Qt::red) + QByteArray(33 * 1024 * 1024, '\0');
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource = server.url(QStringLiteral("/picture.png"));
        PanelRunner runner(panel, services());
        QSignalSpy image(&runner, &PanelRunner::imageChanged);
        runner.start();
        QTRY_COMPARE(server.answered, 1);
        server.body = pngBytes(Qt::blue);
        // Refreshes while the first download is under way start nothing; the first one
        // after it has ended fetches the small picture.
        const auto refreshedAgain = [&] {
            runner.refreshNow();
            return server.answered == 2;
        };
        QTRY_VERIFY(refreshedAgain());
        QTRY_VERIFY(!runner.image().isNull());
        QCOMPARE(runner.image().pixelColor(0, 0), QColor(Qt::blue));
        QCOMPARE(image.count(), 1);
    }

    // A panel deleted while its picture downloads: nothing of it shows or breaks, and
    // another panel of the same picture shows it.
    void runnerDestroyedWhileDownloadingDropsTheImage() {
        TinyHttpServer server;
        server.body = pngBytes(Qt::blue);
        Panel panel = panelOf(PanelType::Image);
        panel.imageSource = server.url(QStringLiteral("/blue.png"));
        auto* gone = new PanelRunner(panel, services());
        gone->start();
        QTRY_COMPARE(server.requests, 1);
        delete gone;

        PanelRunner kept(panel, services());
        QSignalSpy image(&kept, &PanelRunner::imageChanged);
        kept.start();
        QTRY_VERIFY(!kept.image().isNull());
        QCOMPARE(kept.image().pixelColor(0, 0), QColor(Qt::blue));
        QCOMPARE(image.count(), 1);
    }
};

QTEST_MAIN(PanelRunnerImagesTest)
#include "tst_panelrunnerimages.moc"
