#include "engine/ImageLoader.h"

#include <QBuffer>
#include <QFile>
#include <QImageWriter>
#include <QTest>

using namespace corkwheel;

namespace {

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

} // namespace

class ImageLoaderTest : public QObject {
    Q_OBJECT

private Q_SLOTS:
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
        const QImage image = ImageLoader::decode(bytes);
        QCOMPARE(image.size(), size);
        QVERIFY(isBlue(image.pixelColor(1, 1)));
    }

    void bytesThatAreNoImageDecodeToNothing() {
        QVERIFY(ImageLoader::decode("plain text, not a picture").isNull());
        QVERIFY(ImageLoader::decode(QByteArray()).isNull());
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
