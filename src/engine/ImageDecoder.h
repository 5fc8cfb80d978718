// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QImage>
#include <QString>

class QByteArray;

namespace corkwheel {

// Decodes the picture of an image panel, in any format Qt has an image plugin for (PNG,
// JPEG, GIF, WebP, SVG, ...), without ever holding more than kMaxPixels of it: a file's
// header may declare any size, and a picture is decoded into memory whole.
namespace ImageDecoder {

// 128 MiB at four bytes a pixel, as much as Qt 6.4 allows: a photo of 32 megapixels.
constexpr qint64 kMaxPixels = 32 * 1024 * 1024;
// A vector image larger than kMaxPixels is drawn to fit a square this wide instead, which
// is still larger than a panel on a 4K screen.
constexpr int kMaxVectorSide = 4096;

// Null when the bytes are no image, or a raster image larger than kMaxPixels. A vector
// image (SVG) larger than that is drawn scaled down to kMaxVectorSide.
QImage decode(const QByteArray& bytes);

// The same for the file at `path` (a leading "~/" means the home directory); blocking.
QImage readFile(const QString& path);

} // namespace ImageDecoder

} // namespace corkwheel
