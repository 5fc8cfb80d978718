// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/ApplicationBus.h"

#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QFileInfo>
#include <QStandardPaths>

namespace corkwheel {

ApplicationBus::ApplicationBus(QObject* parent)
    : QObject(parent), m_connection(QStringLiteral("unconnected")) {}

ApplicationBus::~ApplicationBus() {
    if (!m_published)
        return;
    m_connection.unregisterObject(kObjectPath);
    m_connection.unregisterService(kService);
}

bool ApplicationBus::sessionBusIsThere() {
    if (!qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS"))
        return true;
    // Where libdbus looks without an address: the bus of the user's session manager.
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    return !runtime.isEmpty() && QFileInfo(runtime + QStringLiteral("/bus")).exists();
}

bool ApplicationBus::publish() {
    if (m_published || !sessionBusIsThere())
        return m_published;
    m_connection = QDBusConnection::sessionBus();
    if (!m_connection.isConnected())
        return false;
    if (!m_connection.registerObject(kObjectPath, this, QDBusConnection::ExportAllSlots))
        return false;
    // Not queued behind an owner: a second Corkwheel on the bus is one the socket refused.
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        m_connection.interface()->registerService(kService,
                                                  QDBusConnectionInterface::DontQueueService,
                                                  QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid() || reply.value() != QDBusConnectionInterface::ServiceRegistered) {
        m_connection.unregisterObject(kObjectPath);
        return false;
    }
    m_published = true;
    return true;
}

void ApplicationBus::Activate(const QVariantMap&) {
    Q_EMIT actionRequested(AppAction::Settings);
}

void ApplicationBus::ActivateAction(const QString& actionName, const QVariantList&,
                                    const QVariantMap&) {
    const std::optional<AppAction> action = appActionNamed(actionName);
    if (!action) {
        sendErrorReply(QDBusError::InvalidArgs,
                       tr("Corkwheel has no action \"%1\"").arg(actionName));
        return;
    }
    Q_EMIT actionRequested(*action);
}

// Corkwheel opens no files; opening it shows its editor, as activating it does.
void ApplicationBus::Open(const QStringList&, const QVariantMap& platformData) {
    Activate(platformData);
}

} // namespace corkwheel
