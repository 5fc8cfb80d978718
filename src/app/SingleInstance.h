// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QObject>
#include <QString>

class QLocalServer;
class QLocalSocket;

namespace corkwheel {

// One Corkwheel runs per user. The first one listens on a local socket in the user's
// runtime directory; a later start connects to it, asks it to open the settings window
// and then exits.
class SingleInstance : public QObject {
    Q_OBJECT

public:
    // `socketPath` is a full path; by default a socket in the user's runtime directory.
    explicit SingleInstance(const QString& socketPath = defaultSocketPath(),
                            QObject* parent = nullptr);
    ~SingleInstance() override;

    static QString defaultSocketPath();

    enum class Role { Primary, Secondary, Failed };

    // Becomes the running instance (Primary), or, when one runs already, hands it the
    // open-settings request and waits for its acknowledgement (Secondary). Failed when a
    // running instance does not answer or another start holds the lock too long.
    Role claim(int timeoutMs = 5000);

    static inline const QByteArray kOpenSettingsRequest = QByteArrayLiteral("open-settings\n");
    static inline const QByteArray kAcknowledgement = QByteArrayLiteral("ok\n");

Q_SIGNALS:
    void openSettingsRequested();

private:
    bool sendOpenSettingsRequest(QLocalSocket& socket, int timeoutMs);
    void listen();
    void acceptConnections();
    void serve(QLocalSocket* socket);

    QString m_socketPath;
    QLocalServer* m_server = nullptr;
};

} // namespace corkwheel
