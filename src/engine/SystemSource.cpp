#include "engine/SystemSource.h"

#include <QFile>

#include <sys/statvfs.h>

namespace corkwheel {

namespace {

class RealSystemSource final : public SystemSource {
public:
    std::optional<QByteArray> readFile(const QString& path) const override {
        return files().readFile(path);
    }
    bool exists(const QString& path) const override { return files().exists(path); }
    QString canonicalPath(const QString& path) const override {
        return files().canonicalPath(path);
    }
    QStringList entryNames(const QString& directory) const override {
        return files().entryNames(directory);
    }

    std::optional<VolumeCapacity> capacity(const QString& mountPoint) const override {
        struct statvfs info {};
        if (::statvfs(QFile::encodeName(mountPoint).constData(), &info) != 0)
            return std::nullopt;
        return VolumeCapacity{quint64(info.f_blocks) * info.f_frsize,
                              quint64(info.f_bavail) * info.f_frsize};
    }

private:
    static const KernelFiles& files() { return KernelFiles::real(); }
};

} // namespace

const SystemSource& SystemSource::real() {
    static const RealSystemSource source;
    return source;
}

} // namespace corkwheel
