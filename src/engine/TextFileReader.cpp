#include "engine/TextFileReader.h"

#include "engine/BackgroundTask.h"
#include "engine/TildePath.h"
#include "engine/Utf8Text.h"

#include <QFile>

namespace corkwheel::TextFileReader {

QString read(const QString& path) {
    QFile file(TildePath::expand(path));
    if (!file.open(QIODevice::ReadOnly))
        return kNotFoundText;
    // One byte more than kept tells whether the cut may have split a character.
    const QByteArray bytes = file.read(kMaxBytes + 1);
    if (file.error() != QFileDevice::NoError)
        return kNotFoundText;
    return Utf8Text::decodeStrict(Utf8Text::prefix(bytes, kMaxBytes)).value_or(kNotFoundText);
}

void readLater(const QString& path, QObject* receiver,
               std::function<void(const QString& text)> done) {
    BackgroundTask::run(
        receiver, [path] { return read(path); },
        [done = std::move(done)](const QString& text) { done(text); });
}

} // namespace corkwheel::TextFileReader
