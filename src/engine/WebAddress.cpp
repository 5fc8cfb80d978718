// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/WebAddress.h"

namespace corkwheel::WebAddress {

namespace {

std::optional<QUrl> parseWithScheme(const QString& text) {
    const QUrl url(text, QUrl::StrictMode);
    if (!url.isValid() || url.scheme().isEmpty())
        return std::nullopt;
    return url;
}

} // namespace

std::optional<QUrl> normalizedURL(const QString& typed) {
    const QString trimmed = typed.trimmed();
    if (trimmed.isEmpty())
        return std::nullopt;
    if (auto url = parseWithScheme(trimmed))
        return url;
    return parseWithScheme(QStringLiteral("https://") + trimmed);
}

} // namespace corkwheel::WebAddress
