// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/ImageDecoder.h"

#include "engine/TildePath.h"

#include <QBuffer>
#include <QImageReader>

#include <algorithm>

namespace corkwheel::ImageDecoder {

namespace {

qint64 pixels(const QSize& size) {
    return qint64(size.width()) * qint64(size.height());
}

bool isVector(const QByteArray& format) {
    return format == "svg" || format == "svgz";
}

// The size of the same shape that fits a square kMaxVectorSide wide; at least a pixel each
// way, however thin the shape.
QSize fittingSize(const QSize& size) {
    const double scale = double(kMaxVectorSide) / double(std::max(size.width(), size.height()));
    return QSize(std::max(1, int(size.width() * scale)), std::max(1, int(size.height() * scale)));
}

// Qt refuses images above its allocation limit too, but that limit differs between Qt
// versions and QT_IMAGEIO_MAXALLOC can lift it, and beyond it Qt reports on the console.
QImage read(QImageReader& reader) {
    reader.setAutoTransform(true);
    const QSize declared = reader.size();
    if (declared.isValid() && pixels(declared) > kMaxPixels) {
        if (!isVector(reader.format()))
            return QImage();
        reader.setScaledSize(fittingSize(declared));
    }
    return reader.read();
}

} // namespace

QImage decode(const QByteArray& bytes) {
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    return read(reader);
}

QImage readFile(const QString& path) {
    QImageReader reader(TildePath::expand(path));
    return read(reader);
}

} // namespace corkwheel::ImageDecoder
