// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/Utf8Text.h"

#include <QStringDecoder>

namespace corkwheel::Utf8Text {

namespace {

bool isContinuation(char byte) {
    return (static_cast<uchar>(byte) & 0xC0) == 0x80;
}

qsizetype sequenceLength(char leadByte) {
    const auto lead = static_cast<uchar>(leadByte);
    if (lead >= 0xF0 && lead < 0xF8)
        return 4;
    if (lead >= 0xE0)
        return lead < 0xF0 ? 3 : 1;
    return lead >= 0xC0 ? 2 : 1;
}

// How many bytes at the end of `bytes` are the start of a character that a cut left
// incomplete; 0 when the last character is whole (or not UTF-8 at all).
qsizetype incompleteTailLength(QByteArrayView bytes) {
    qsizetype lead = bytes.size() - 1;
    while (lead >= 0 && bytes.size() - lead < 4 && isContinuation(bytes[lead]))
        --lead;
    if (lead < 0)
        return 0;
    const qsizetype present = bytes.size() - lead;
    return present < sequenceLength(bytes[lead]) ? present : 0;
}

} // namespace

QByteArray prefix(const QByteArray& bytes, qsizetype maxBytes) {
    if (bytes.size() <= maxBytes)
        return bytes;
    const QByteArrayView kept(bytes.constData(), maxBytes);
    return kept.chopped(incompleteTailLength(kept)).toByteArray();
}

void chopSplitCharacter(QByteArray& cut) {
    cut.chop(incompleteTailLength(cut));
}

std::optional<QString> decodeStrict(const QByteArray& bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text.trimmed();
}

QString decodeTrimmed(const QByteArray& bytes) {
    return decodeStrict(bytes).value_or(QString());
}

} // namespace corkwheel::Utf8Text
