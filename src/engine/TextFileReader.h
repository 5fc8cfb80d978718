#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace corkwheel {

// Reads a file panel's file on a worker thread and hands the text back on the main thread,
// dropping it when its receiver is gone by then.
namespace TextFileReader {

// At most this much of a file is read, so one huge file cannot fill the memory.
constexpr qsizetype kMaxBytes = 4 * 1024 * 1024;

inline const QString kNotFoundText = QStringLiteral("(file not found)");

// The text a file panel shows for `path` (a leading "~/" means the home directory): the file's
// first kMaxBytes as UTF-8, trimmed, or "(file not found)" when it cannot be read or is not
// UTF-8. Blocking.
QString read(const QString& path);

// Runs read() on the global thread pool and calls `done` with its text on the main thread,
// unless `receiver` was destroyed meanwhile.
void readLater(const QString& path, QObject* receiver,
               std::function<void(const QString& text)> done);

} // namespace TextFileReader

} // namespace corkwheel
