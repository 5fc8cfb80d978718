// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QProcess>
#include <QStringList>

#include <xcb/xcb.h>

#include <memory>

namespace corkwheel::test {

struct XcbDisconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

// A client connection of the test's own, closed with the object.
using XcbClient = std::unique_ptr<xcb_connection_t, XcbDisconnect>;

// An Xvfb of the test's own, with no window manager and no compositor, for tests that
// change what runs on the display. Ends with the object.
class PrivateXServer {
public:
    // Returns once the server accepts clients; false when it did not start.
    bool start() {
        // Xvfb writes the display number it found free to the descriptor given; without
        // -noreset it would start afresh, refusing clients, whenever the last one leaves.
        m_server.start(QStringLiteral("Xvfb"),
                       {QStringLiteral("-displayfd"), QStringLiteral("1"),
                        QStringLiteral("-screen"), QStringLiteral("0"),
                        QStringLiteral("800x600x24"), QStringLiteral("-nolisten"),
                        QStringLiteral("tcp"), QStringLiteral("-noreset")});
        if (!m_server.waitForReadyRead(10000))
            return false;
        m_display = ':' + m_server.readLine().trimmed();
        return m_display.size() > 1;
    }

    ~PrivateXServer() {
        m_server.terminate();
        m_server.waitForFinished();
    }

    // As DISPLAY names it.
    const QByteArray& display() const { return m_display; }

    // A new client of this server; none when it refused the connection.
    XcbClient connect() const {
        XcbClient client(xcb_connect(m_display.constData(), nullptr));
        if (xcb_connection_has_error(client.get()) != 0)
            client.reset();
        return client;
    }

private:
    QProcess m_server;
    QByteArray m_display;
};

} // namespace corkwheel::test
