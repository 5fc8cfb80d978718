// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/ImageDecoder.h"
#include "engine/ImageLoader.h"

#include "support/HostileHttpServer.h"
#include "support/HostileImages.h"
#include "support/PeakMemory.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QImageReader>
#include <QImageWriter>
#include <QNetworkReply>
#include <QSignalSpy>
#include <QTest>
#include <QThreadPool>

using namespace corkwheel;
using namespace corkwheel::test;

namespace {

// Well under what decoding any of the hostile images unbounded would take, well over what
// the test itself needs.
constexpr long kMemoryBoundMiB = 512;

QByteArray encoded(const QByteArray& format) {
    QImage image(5, 4, QImage::Format_RGB32);
    image.fill(Qt::blue);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    // Below 100: at 100 WebP is lossless, which Qt 6.8.2's WebP plugin cannot read back.
    writer.setQuality(90);
    return writer.write(image) ? bytes : QByteArray();
}

QByteArray fixture(const QString& name) {
    QFile file(QStringLiteral(CORKWHEEL_TEST_DATA_DIR "/images/") + name);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool isBlue(const QColor& color) {
    return color.blue() > 200 && color.red() < 40 && color.green() < 40;
}

bool isRed(const QColor& color) {
    return color.red() > 200 && color.blue() < 40 && color.green() < 40;
}

QList<QNetworkReply*> downloadsOf(const ImageLoader& loader) {
    return loader.findChildren<QNetworkReply*>();
}

// Waits for what the thread pool decodes, and for the pictures to reach the main thread.
void waitForDecodes() {
    QThreadPool::globalInstance()->waitForDone(30000);
    QCoreApplication::sendPostedEvents();
}

// An address nothing listens on.
QString refusingAddress() {
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    const quint16 port = server.serverPort();
    server.close();
    return QStringLiteral("http://127.0.0.1:%1/image").arg(port);
}

// An image loader that shows `shown`, as a panel runner does, after a first download
// has put a blue picture there.
struct ShowingLoader {
    ImageLoader loader;
    QImage shown;
    HostileHttpServer good;

    ShowingLoader() {
        good.image = encoded("png");
        QObject::connect(&loader, &ImageLoader::imageLoaded,
                         [this](const QImage& image) { shown = image; });
        loader.load(good.url(QStringLiteral("/image")));
    }
};

} // namespace

class ImageLoaderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        // Where Qt's own allocation limit is lower, it would refuse the images first; newer
        // Qt versions and QT_IMAGEIO_MAXALLOC allow more, as here.
        QImageReader::setAllocationLimit(1024);
    }

    void commonFormatsDecode_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QSize>("size");
        QTest::newRow("png") << encoded("png") << QSize(5, 4);
        QTest::newRow("jpeg") << encoded("jpeg") << QSize(5, 4);
        QTest::newRow("webp") << encoded("webp") << QSize(5, 4);
        QTest::newRow("gif") << fixture(QStringLiteral("blue-2x2.gif")) << QSize(2, 2);
        QTest::newRow("svg") << fixture(QStringLiteral("blue-8x6.svg")) << QSize(8, 6);
    }

    void commonFormatsDecode() {
        QFETCH(QByteArray, bytes);
        QFETCH(QSize, size);
        QVERIFY(!bytes.isEmpty());
        const QImage image = ImageDecoder::decode(bytes);
        QCOMPARE(image.size(), size);
        QVERIFY(isBlue(image.pixelColor(1, 1)));
    }

    void bytesThatAreNoImageDecodeToNothing() {
        QVERIFY(ImageDecoder::decode("plain text, not a picture").isNull());
        QVERIFY(ImageDecoder::decode(QByteArray()).isNull());
    }

    void hostileImagesDecodeToNothingInBoundedMemory_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("png declaring 100000 x 100000") << pngDeclaring(100000, 100000);
        QTest::newRow("jpeg declaring 65000 x 65000") << jpegDeclaring(65000, 65000);
        // Sizes a machine could allocate, which a decoder without limits then fills.
        QTest::newRow("png declaring 15000 x 15000") << pngDeclaring(15000, 15000);
        QTest::newRow("jpeg declaring 15000 x 15000") << jpegDeclaring(15000, 15000);
        QTest::newRow("svg of nested entities") << svgOfNestedEntities();
        QTest::newRow("truncated png") << truncatedPng();
        QTest::newRow("not an image") << QByteArray(4096, 'x');
    }

    void hostileImagesDecodeToNothingInBoundedMemory() {
        QFETCH(QByteArray, bytes);
        QVERIFY(ImageDecoder::decode(bytes).isNull());
        QCOMPARE_LT(peakResidentMiB(), kMemoryBoundMiB);
    }

    void svgWithAHugeViewBoxIsDrawnAtABoundedSize() {
        const QImage image = ImageDecoder::decode(svgOfHugeViewBox());
        QCOMPARE(image.size(), QSize(ImageDecoder::kMaxVectorSide, ImageDecoder::kMaxVectorSide));
        QVERIFY(isBlue(image.pixelColor(100, 100)));
        QCOMPARE_LT(peakResidentMiB(), kMemoryBoundMiB);
    }

    void hostileDownloadsEndAndKeepThePicture_data() {
        QTest::addColumn<QString>("kind");
        QTest::newRow("endless redirects") << "/redirect/0";
        QTest::newRow("a byte a second for ever") << "/trickle";
        QTest::newRow("a gibibyte") << "/endless";
        QTest::newRow("https to a plain web server") << "https-to-plain";
        QTest::newRow("self-signed certificate") << "self-signed";
        QTest::newRow("refused connection") << "refused";
    }

    void hostileDownloadsEndAndKeepThePicture() {
        QFETCH(QString, kind);
        ShowingLoader panel;
        QTRY_VERIFY(!panel.shown.isNull());
        panel.loader.setTransferLimit(std::chrono::seconds(2));

        HostileHttpServer server(kind == QStringLiteral("self-signed")
                                     ? HostileHttpServer::Transport::SelfSignedTls
                                     : HostileHttpServer::Transport::Plain);
        server.image = encodedImage(Qt::red, QSize(5, 4), "png");
        QString address = server.url(kind.startsWith(u'/') ? kind : QStringLiteral("/image"));
        if (kind == QStringLiteral("https-to-plain"))
            address.replace(QStringLiteral("http:"), QStringLiteral("https:"));
        else if (kind == QStringLiteral("refused"))
            address = refusingAddress();
        panel.loader.load(address);
        QVERIFY(!downloadsOf(panel.loader).isEmpty());

        QTRY_VERIFY_WITH_TIMEOUT(downloadsOf(panel.loader).isEmpty(), 30000);
        QTRY_COMPARE(server.openConnections, 0);
        waitForDecodes();
        QVERIFY(isBlue(panel.shown.pixelColor(1, 1)));
        QCOMPARE_LE(server.requests, ImageLoader::kMaxRedirects + 1);
        QCOMPARE_LT(server.bytesSent, HostileHttpServer::kEndlessBytes / 8);
        QCOMPARE_LT(peakResidentMiB(), kMemoryBoundMiB);
    }

    void hostileImageDownloadKeepsThePicture_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("png declaring 100000 x 100000") << pngDeclaring(100000, 100000);
        QTest::newRow("jpeg declaring 15000 x 15000") << jpegDeclaring(15000, 15000);
        QTest::newRow("svg of nested entities") << svgOfNestedEntities();
        QTest::newRow("truncated png") << truncatedPng();
        QTest::newRow("not an image") << QByteArray("<html>Not found</html>");
    }

    void hostileImageDownloadKeepsThePicture() {
        QFETCH(QByteArray, bytes);
        ShowingLoader panel;
        QTRY_VERIFY(!panel.shown.isNull());
        HostileHttpServer server;
        server.image = bytes;
        QSignalSpy changes(&panel.loader, &ImageLoader::imageLoaded);
        panel.loader.load(server.url(QStringLiteral("/image")));
        QTRY_VERIFY(downloadsOf(panel.loader).isEmpty());
        waitForDecodes();
        QCOMPARE(changes.count(), 0);
        QVERIFY(isBlue(panel.shown.pixelColor(1, 1)));
        QCOMPARE_LT(peakResidentMiB(), kMemoryBoundMiB);
    }

    void addressStillDownloadingIsNotDownloadedAgain() {
        HostileHttpServer server;
        server.image = encodedImage(Qt::red, QSize(5, 4), "png");
        {
            ShowingLoader panel;
            const QString address = server.url(QStringLiteral("/trickle"));
            panel.loader.load(address);
            QTRY_COMPARE(server.requests, 1);
            panel.loader.load(address);
            panel.loader.load(address);
            // Asked for after them, another address is downloaded and shown: requests for
            // the two above would have reached the server before it.
            panel.loader.load(server.url(QStringLiteral("/image")));
            QTRY_VERIFY(isRed(panel.shown.pixelColor(1, 1)));
            QCOMPARE(server.requests, 2);
            QCOMPARE(downloadsOf(panel.loader).size(), 1);
        }
        // The panel gone, its download ends rather than outliving the test.
        QTRY_COMPARE(server.openConnections, 0);
    }

    void onlyExactCaseHttpSchemesAreDownloads_data() {
        QTest::addColumn<QString>("source");
        QTest::addColumn<bool>("download");
        QTest::newRow("http") << "http://example.com/a.png" << true;
        QTest::newRow("https") << "https://example.com/a.png" << true;
        QTest::newRow("HTTP") << "HTTP://example.com/a.png" << false;
        QTest::newRow("Https") << "Https://example.com/a.png" << false;
        QTest::newRow("file url") << "file:///tmp/a.png" << false;
        QTest::newRow("path") << "/home/ann/http:/a.png" << false;
        QTest::newRow("tilde") << "~/Pictures/a.png" << false;
    }

    void onlyExactCaseHttpSchemesAreDownloads() {
        QFETCH(QString, source);
        QFETCH(bool, download);
        QCOMPARE(ImageLoader::isDownload(source), download);
    }
};

QTEST_MAIN(ImageLoaderTest)
#include "tst_imageloader.moc"
