// SPDX-License-Identifier: GPL-3.0-or-later

#include "model/DocumentEncoding.h"

#include <QStringDecoder>

namespace corkwheel {

namespace {

std::optional<QStringConverter::Encoding> utf16Encoding(const QByteArray& document) {
    if (document.size() < 2)
        return std::nullopt;
    const auto first = static_cast<unsigned char>(document.at(0));
    const auto second = static_cast<unsigned char>(document.at(1));
    if ((first == 0xFF && second == 0xFE) || (first != 0 && second == 0))
        return QStringConverter::Utf16LE;
    if ((first == 0xFE && second == 0xFF) || (first == 0 && second != 0))
        return QStringConverter::Utf16BE;
    return std::nullopt;
}

} // namespace

std::optional<QByteArray> documentAsUtf8(const QByteArray& document) {
    const auto encoding = utf16Encoding(document);
    if (!encoding)
        return document;
    if (document.size() % 2 != 0)
        return std::nullopt;
    // Skips a leading byte order mark.
    QStringDecoder decoder(*encoding);
    const QString text = decoder.decode(document);
    // As in UTF-8 text, where the reader rejects it, a lone surrogate is an error.
    if (decoder.hasError() || !text.isValidUtf16())
        return std::nullopt;
    return text.toUtf8();
}

} // namespace corkwheel
