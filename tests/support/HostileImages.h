// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Image files made to hurt whoever decodes them, built byte by byte.

#include <QBuffer>
#include <QByteArray>
#include <QImage>
#include <QImageWriter>
#include <QtEndian>

namespace corkwheel::test {

inline QByteArray bigEndian32(quint32 value) {
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

inline QByteArray bigEndian16(quint16 value) {
    QByteArray bytes(2, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

// The CRC-32 that PNG chunks end with.
inline quint32 crc32Of(const QByteArray& bytes) {
    quint32 crc = 0xFFFFFFFFu;
    for (const char byte : bytes) {
        crc ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

inline QByteArray pngChunk(const char* type, const QByteArray& data) {
    const QByteArray typed = QByteArray(type, 4) + data;
    return bigEndian32(quint32(data.size())) + typed + bigEndian32(crc32Of(typed));
}

// A PNG whose header declares `width` x `height` RGBA pixels, followed by a few rows of
// data and the end.
inline QByteArray pngDeclaring(quint32 width, quint32 height) {
    const QByteArray header =
        bigEndian32(width) + bigEndian32(height) + QByteArray("\x08\x06\x00\x00\x00", 5);
    // qCompress gives a zlib stream, as PNG wants, after four bytes of length.
    const QByteArray rows = qCompress(QByteArray(4 * 64, '\0')).mid(4);
    return QByteArray("\x89PNG\r\n\x1a\n", 8) + pngChunk("IHDR", header) + pngChunk("IDAT", rows) +
           pngChunk("IEND", {});
}

// A baseline JPEG whose frame header (SOF0) declares `width` x `height` pixels, with a
// scan that ends after a few bytes.
inline QByteArray jpegDeclaring(quint16 width, quint16 height) {
    const QByteArray quantisation = QByteArray("\xFF\xDB\x00\x43\x00", 5) + QByteArray(64, 1);
    const QByteArray frame = QByteArray("\xFF\xC0\x00\x11\x08", 5) + bigEndian16(height) +
                             bigEndian16(width) +
                             QByteArray("\x03\x01\x11\x00\x02\x11\x00\x03\x11\x00", 10);
    const QByteArray scan =
        QByteArray("\xFF\xDA\x00\x0C\x03\x01\x00\x02\x11\x03\x11\x00\x3F\x00", 14) +
        QByteArray(64, '\0');
    return QByteArray("\xFF\xD8", 2) + quantisation + frame + scan + QByteArray("\xFF\xD9", 2);
}

// Ten levels of entities, each ten of the one below: a billion "lol"s once expanded.
inline QByteArray svgOfNestedEntities() {
    QByteArray svg = "<?xml version=\"1.0\"?>\n<!DOCTYPE svg [\n<!ENTITY lol0 \"lol\">\n";
    for (int level = 1; level <= 9; ++level) {
        svg += "<!ENTITY lol" + QByteArray::number(level) + " \"";
        for (int i = 0; i < 10; ++i)
            svg += "&lol" + QByteArray::number(level - 1) + ";";
        svg += "\">\n";
    }
    return svg + "]>\n<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"8\" height=\"6\">"
                 "<rect width=\"8\" height=\"6\" fill=\"blue\"/><text>&lol9;</text></svg>\n";
}

// An SVG without width or height whose view box is a billion units each way, all blue.
inline QByteArray svgOfHugeViewBox() {
    return "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 1000000000 1000000000\">"
           "<rect width=\"1000000000\" height=\"1000000000\" fill=\"blue\"/></svg>\n";
}

inline QByteArray encodedImage(const QColor& color, const QSize& size, const char* format) {
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter(&buffer, format).write(image);
    return bytes;
}

// A PNG cut off halfway through its pixel data.
inline QByteArray truncatedPng() {
    const QByteArray whole = encodedImage(Qt::blue, QSize(64, 64), "png");
    return whole.left(whole.size() / 2);
}

} // namespace corkwheel::test
