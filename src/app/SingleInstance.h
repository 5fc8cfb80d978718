// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "app/AppAction.h"

#include <QObject>
#include <QString>

class QLocalServer;
class QLocalSocket;

namespace corkwheel {

// One Corkwheel runs per user. The first one listens on a local socket in the user's
// runtime directory; a later start connects to it, asks it to open the settings window
// and then exits. The command line's actions reach the running one the same way.
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

    // Hands `action` to the Corkwheel running on `socketPath` and waits for its
    // acknowledgement; false when none runs there or it does not answer. Starts nothing.
    static bool deliver(const QString& socketPath, AppAction action, int timeoutMs = 5000);

    // What a start sends for `action`, one line.
    static QByteArray requestFor(AppAction action);

    static inline const QByteArray kOpenSettingsRequest = QByteArrayLiteral("open-settings\n");
    static inline const QByteArray kAcknowledgement = QByteArrayLiteral("ok\n");

Q_SIGNALS:
    void actionRequested(corkwheel::AppAction action);

private:
    static bool sendRequest(QLocalSocket& socket, const QByteArray& request, int timeoutMs);
    static std::optional<AppAction> actionOf(const QByteArray& request);
    void listen();
    void acceptConnections();
    void serve(QLocalSocket* socket);

    QString m_socketPath;
    QLocalServer* m_server = nullptr;
};

} // namespace corkwheel
