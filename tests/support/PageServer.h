// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QTcpServer>
#include <QTcpSocket>
#include <QUrl>

namespace corkwheel::test {

// Serves `html` for every address on loopback, with a cookie and leave to cache it.
class PageServer : public QTcpServer {
public:
    PageServer() { listen(QHostAddress::LocalHost); }
    QUrl url() const { return QUrl(QStringLiteral("http://127.0.0.1:%1/").arg(serverPort())); }
    QByteArray html = "<html><head><title>ready</title></head><body>hi</body></html>";

protected:
    void incomingConnection(qintptr descriptor) override {
        auto* socket = new QTcpSocket(this);
        socket->setSocketDescriptor(descriptor);
        connect(socket, &QTcpSocket::readyRead, socket, [this, socket] {
            socket->readAll();
            socket->write("HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n"
                          "Set-Cookie: taste=sweet; Max-Age=3600\r\n"
                          "Cache-Control: max-age=3600\r\nContent-Length: " +
                          QByteArray::number(html.size()) + "\r\nConnection: close\r\n\r\n" + html);
            socket->disconnectFromHost();
        });
        connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    }
};

} // namespace corkwheel::test
