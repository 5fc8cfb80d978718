// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace corkwheel {

// Read access to the kernel's pseudo-files (/proc, /sys, /dev). Every call is one plain
// system call with no interpretation, so everything that makes sense of the answers can be
// exercised against a fake tree instead of this machine's.
class KernelFiles {
public:
    virtual ~KernelFiles() = default;

    // The whole contents of a small file, or nothing when it can't be read.
    virtual std::optional<QByteArray> readFile(const QString& path) const = 0;
    // Whether anything (file, directory, link to something) is at the path.
    virtual bool exists(const QString& path) const = 0;
    // The absolute path with every symbolic link resolved; empty when it doesn't resolve.
    virtual QString canonicalPath(const QString& path) const = 0;
    // Names in a directory, without "." and "..", sorted; empty when it can't be listed.
    virtual QStringList entryNames(const QString& directory) const = 0;

    // This machine's files.
    static const KernelFiles& real();
};

// The file part of a source that extends KernelFiles, answered from this machine's files;
// the real sources add only what is not a file.
template <class Source> class MachineKernelFiles : public Source {
public:
    std::optional<QByteArray> readFile(const QString& path) const override {
        return KernelFiles::real().readFile(path);
    }
    bool exists(const QString& path) const override { return KernelFiles::real().exists(path); }
    QString canonicalPath(const QString& path) const override {
        return KernelFiles::real().canonicalPath(path);
    }
    QStringList entryNames(const QString& directory) const override {
        return KernelFiles::real().entryNames(directory);
    }
};

} // namespace corkwheel
