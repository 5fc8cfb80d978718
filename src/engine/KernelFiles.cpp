// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/KernelFiles.h"

#include <QFile>

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace corkwheel {

namespace {

// Pseudo-files report a size of 0, so read until end of file rather than by size.
std::optional<QByteArray> readWhole(int fd) {
    QByteArray contents;
    char buffer[4096];
    for (;;) {
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n == 0)
            return contents;
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0)
            return std::nullopt;
        contents.append(buffer, n);
    }
}

class RealKernelFiles final : public KernelFiles {
public:
    std::optional<QByteArray> readFile(const QString& path) const override {
        const int fd = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
        if (fd < 0)
            return std::nullopt;
        auto contents = readWhole(fd);
        ::close(fd);
        return contents;
    }

    bool exists(const QString& path) const override {
        struct stat info {};
        return ::stat(QFile::encodeName(path).constData(), &info) == 0;
    }

    QString canonicalPath(const QString& path) const override {
        char resolved[PATH_MAX];
        if (::realpath(QFile::encodeName(path).constData(), resolved) == nullptr)
            return {};
        return QFile::decodeName(resolved);
    }

    QStringList entryNames(const QString& directory) const override {
        const std::unique_ptr<DIR, int (*)(DIR*)> dir(
            ::opendir(QFile::encodeName(directory).constData()), &::closedir);
        if (!dir)
            return {};
        QStringList names;
        while (const dirent* entry = ::readdir(dir.get())) {
            const QString name = QFile::decodeName(entry->d_name);
            if (name != u"." && name != u"..")
                names.append(name);
        }
        names.sort();
        return names;
    }
};

} // namespace

const KernelFiles& KernelFiles::real() {
    static const RealKernelFiles files;
    return files;
}

} // namespace corkwheel
