// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace corkwheel {

// The panel document's file: read with a bound, replaced whole and atomically.
namespace DocumentFile {

// The whole file, or no value when it cannot be opened or read or holds more than `limit`
// bytes. Opened without blocking, so a FIFO with no writer reads as empty instead of holding
// up the start, and read no further than the limit, so an endless file (a device, say) does
// not fill memory.
std::optional<QByteArray> readAtMost(const QString& path, qint64 limit);

// Writes `bytes` to a new owner-only file beside `path`, flushes it to disk and renames it
// over `path`, so the name always holds either the old or the new document, also after a
// crash. A symbolic link at `path` is replaced, never written through. False, with nothing
// changed, on any failure.
bool replaceAtomically(const QString& path, const QByteArray& bytes);

// Removes what a replace cut short by a crash left beside `path`.
void removeLeftovers(const QString& path);

} // namespace DocumentFile

} // namespace corkwheel
