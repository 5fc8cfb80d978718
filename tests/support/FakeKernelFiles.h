// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

namespace corkwheel::test {

// An in-memory tree standing in for /proc, /sys and /dev. `Source` is the interface the
// code under test reads through; the fake implements its file part.
template <class Source> class FakeKernelFiles : public Source {
public:
    std::optional<QByteArray> readFile(const QString& path) const override {
        const auto it = m_files.constFind(path);
        if (it == m_files.cend())
            return std::nullopt;
        return *it;
    }

    bool exists(const QString& path) const override {
        return m_files.contains(path) || m_links.contains(path) || m_directories.contains(path);
    }

    QString canonicalPath(const QString& path) const override {
        if (m_links.contains(path))
            return m_links.value(path);
        return exists(path) ? path : QString();
    }

    QStringList entryNames(const QString& directory) const override {
        QString prefix = directory;
        if (!prefix.endsWith(u'/'))
            prefix.append(u'/');
        QStringList names;
        for (const QString& path : allPaths()) {
            if (path.startsWith(prefix) && !path.sliced(prefix.size()).contains(u'/'))
                names.append(path.sliced(prefix.size()));
        }
        names.sort();
        return names;
    }

    void setFile(const QString& path, const QByteArray& contents) {
        m_files.insert(path, contents);
    }
    void removeFile(const QString& path) { m_files.remove(path); }
    // A symbolic link at `path` whose fully resolved target is `target`.
    void setLink(const QString& path, const QString& target) { m_links.insert(path, target); }
    void removeLink(const QString& path) { m_links.remove(path); }
    void setDirectory(const QString& path) { m_directories.insert(path); }
    void removeDirectory(const QString& path) { m_directories.remove(path); }

private:
    QStringList allPaths() const {
        QStringList paths = m_files.keys() + m_links.keys();
        paths += QStringList(m_directories.cbegin(), m_directories.cend());
        return paths;
    }

    QHash<QString, QByteArray> m_files;
    QHash<QString, QString> m_links;
    QSet<QString> m_directories;
};

} // namespace corkwheel::test
