// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/MountTableWatch.h"

#include <QFile>

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace corkwheel {

MountTableWatch::MountTableWatch(const QString& path)
    : m_fd(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC)) {}

MountTableWatch::~MountTableWatch() {
    if (m_fd >= 0)
        ::close(m_fd);
}

bool MountTableWatch::changed() const {
    if (m_fd < 0)
        return true;
    pollfd watched{m_fd, POLLPRI, 0};
    if (::poll(&watched, 1, 0) < 0)
        return true;
    return (watched.revents & (POLLPRI | POLLERR | POLLNVAL)) != 0;
}

} // namespace corkwheel
