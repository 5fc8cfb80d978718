// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

// Web servers on loopback that answer an image download the way an attacker's would.

#include <QFile>
#include <QPointer>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslSocket>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <memory>

namespace corkwheel::test {

// Answers by path:
//   /image        `image`, as a PNG should be;
//   /redirect/N   a redirect to /redirect/N+1, for ever;
//   /trickle      a promise of a megabyte, then a byte a second for ever;
//   /endless      a gibibyte, made as it is sent.
// Over TLS with a self-signed certificate when asked to.
class HostileHttpServer : public QTcpServer {
public:
    enum class Transport { Plain, SelfSignedTls };

    explicit HostileHttpServer(Transport transport = Transport::Plain) : m_transport(transport) {
        listen(QHostAddress::LocalHost);
    }

    QString url(const QString& path) const {
        const QLatin1String scheme(m_transport == Transport::Plain ? "http" : "https");
        return QStringLiteral("%1://127.0.0.1:%2%3").arg(scheme).arg(serverPort()).arg(path);
    }

    QByteArray image;
    int requests = 0;
    int openConnections = 0;
    qint64 bytesSent = 0;

    static constexpr qint64 kEndlessBytes = qint64(1) << 30;

protected:
    void incomingConnection(qintptr descriptor) override {
        QTcpSocket* socket =
            m_transport == Transport::Plain ? new QTcpSocket(this) : encryptedSocket(descriptor);
        if (m_transport == Transport::Plain)
            socket->setSocketDescriptor(descriptor);
        ++openConnections;
        connect(socket, &QTcpSocket::disconnected, this, [this, socket] {
            --openConnections;
            socket->deleteLater();
        });
        connect(socket, &QTcpSocket::readyRead, this, [this, socket] { answer(socket); });
    }

private:
    QSslSocket* encryptedSocket(qintptr descriptor) {
        auto* socket = new QSslSocket(this);
        socket->setSocketDescriptor(descriptor);
        socket->setLocalCertificate(QSslCertificate(fixture("self-signed-cert.pem")));
        socket->setPrivateKey(QSslKey(fixture("self-signed-key.pem"), QSsl::Rsa));
        socket->startServerEncryption();
        return socket;
    }

    static QByteArray fixture(const char* name) {
        QFile file(QStringLiteral(CORKWHEEL_TEST_DATA_DIR "/tls/") + QLatin1String(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void answer(QTcpSocket* socket) {
        const QByteArray request = socket->readAll();
        ++requests;
        // Such as a TLS handshake, which a plain web server does not understand.
        if (!request.startsWith("GET ")) {
            send(socket, "400 Bad Request", "Content-Type: text/plain", "bad request");
            return;
        }
        const QByteArray path = request.split(' ').value(1);
        if (path.startsWith("/redirect/")) {
            const int next = path.mid(10).toInt() + 1;
            send(socket, "302 Found", "Location: /redirect/" + QByteArray::number(next), {});
        } else if (path == "/trickle") {
            trickle(socket);
        } else if (path == "/endless") {
            endless(socket);
        } else {
            send(socket, "200 OK", "Content-Type: image/png", image);
        }
    }

    void send(QTcpSocket* socket, const QByteArray& status, const QByteArray& header,
              const QByteArray& body) {
        socket->write("HTTP/1.1 " + status + "\r\n" + header + "\r\nContent-Length: " +
                      QByteArray::number(body.size()) + "\r\nConnection: close\r\n\r\n" + body);
        socket->disconnectFromHost();
    }

    void trickle(QTcpSocket* socket) {
        socket->write("HTTP/1.1 200 OK\r\nContent-Type: image/png\r\n"
                      "Content-Length: 1048576\r\n\r\n");
        auto* clock = new QTimer(socket);
        connect(clock, &QTimer::timeout, socket, [this, socket] {
            socket->write("x", 1);
            ++bytesSent;
        });
        clock->start(1000);
    }

    // Writes a mebibyte whenever the last one has gone out, so at most one is held here.
    void endless(QTcpSocket* socket) {
        socket->write("HTTP/1.1 200 OK\r\nContent-Type: image/png\r\n"
                      "Content-Length: " +
                      QByteArray::number(kEndlessBytes) + "\r\n\r\n");
        auto sent = std::make_shared<qint64>(0);
        auto more = [this, socket, sent] {
            if (socket->bytesToWrite() > 0 || *sent >= kEndlessBytes)
                return;
            const QByteArray chunk(1024 * 1024, '\0');
            socket->write(chunk);
            *sent += chunk.size();
            bytesSent += chunk.size();
        };
        connect(socket, &QTcpSocket::bytesWritten, socket, more);
        more();
    }

    Transport m_transport;
};

} // namespace corkwheel::test
