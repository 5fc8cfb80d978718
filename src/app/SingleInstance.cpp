// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/SingleInstance.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QStandardPaths>

namespace corkwheel {

SingleInstance::SingleInstance(const QString& socketPath, QObject* parent)
    : QObject(parent), m_socketPath(socketPath) {}

SingleInstance::~SingleInstance() = default;

QString SingleInstance::defaultSocketPath() {
    return QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation) +
           QStringLiteral("/corkwheel.socket");
}

SingleInstance::Role SingleInstance::claim(int timeoutMs) {
    // Two starts at the same moment must not both become the running instance.
    QLockFile lock(m_socketPath + QStringLiteral(".lock"));
    if (!lock.tryLock(timeoutMs))
        return Role::Failed;
    QLocalSocket socket;
    socket.connectToServer(m_socketPath);
    if (socket.waitForConnected(timeoutMs))
        return sendRequest(socket, kOpenSettingsRequest, timeoutMs) ? Role::Secondary
                                                                    : Role::Failed;
    // Without a usable socket Corkwheel still runs; it only loses the second-start request.
    listen();
    return Role::Primary;
}

bool SingleInstance::deliver(const QString& socketPath, AppAction action, int timeoutMs) {
    QLocalSocket socket;
    socket.connectToServer(socketPath);
    return socket.waitForConnected(timeoutMs) && sendRequest(socket, requestFor(action), timeoutMs);
}

QByteArray SingleInstance::requestFor(AppAction action) {
    // A Corkwheel started before the other actions existed understands this one.
    if (action == AppAction::Settings)
        return kOpenSettingsRequest;
    return appActionName(action).toLatin1() + '\n';
}

std::optional<AppAction> SingleInstance::actionOf(const QByteArray& request) {
    if (request == kOpenSettingsRequest)
        return AppAction::Settings;
    if (!request.endsWith('\n'))
        return std::nullopt;
    return appActionNamed(QString::fromLatin1(request.chopped(1)));
}

bool SingleInstance::sendRequest(QLocalSocket& socket, const QByteArray& request, int timeoutMs) {
    socket.write(request);
    if (!socket.waitForBytesWritten(timeoutMs))
        return false;
    while (!socket.canReadLine()) {
        if (!socket.waitForReadyRead(timeoutMs))
            return false;
    }
    return socket.readLine() == kAcknowledgement;
}

void SingleInstance::listen() {
    // Nobody answered, so a socket file still there was left by a crash.
    QLocalServer::removeServer(m_socketPath);
    m_server = new QLocalServer(this);
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    if (m_server->listen(m_socketPath))
        connect(m_server, &QLocalServer::newConnection, this, &SingleInstance::acceptConnections);
}

void SingleInstance::acceptConnections() {
    while (QLocalSocket* socket = m_server->nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { serve(socket); });
        serve(socket);
    }
}

void SingleInstance::serve(QLocalSocket* socket) {
    // Only one short line is ever expected; anything longer is not a request of ours.
    constexpr qint64 kMaxRequestBytes = 64;
    while (socket->canReadLine()) {
        const std::optional<AppAction> action = actionOf(socket->readLine(kMaxRequestBytes));
        if (!action)
            continue;
        // Out before the action runs, so that a quit still answers the start that asked.
        socket->write(kAcknowledgement);
        socket->flush();
        Q_EMIT actionRequested(*action);
    }
    if (socket->bytesAvailable() > kMaxRequestBytes)
        socket->abort();
}

} // namespace corkwheel
