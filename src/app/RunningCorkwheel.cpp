// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/RunningCorkwheel.h"

#include "app/ApplicationBus.h"
#include "app/SingleInstance.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

namespace corkwheel {

namespace {

constexpr int kTimeoutMs = 5000;

} // namespace

bool RunningCorkwheel::deliver(AppAction action) {
    return deliverOverBus(action) ||
           SingleInstance::deliver(SingleInstance::defaultSocketPath(), action, kTimeoutMs);
}

bool RunningCorkwheel::deliverOverBus(AppAction action) {
    if (!ApplicationBus::sessionBusIsThere())
        return false;
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected() || !bus.interface()->isServiceRegistered(ApplicationBus::kService))
        return false;
    QDBusMessage call = QDBusMessage::createMethodCall(
        ApplicationBus::kService, ApplicationBus::kObjectPath, ApplicationBus::kInterface,
        QStringLiteral("ActivateAction"));
    call << appActionName(action) << QVariantList() << QVariantMap();
    // There is no service file to start Corkwheel by; the socket is asked instead.
    call.setAutoStartService(false);
    return bus.call(call, QDBus::Block, kTimeoutMs).type() == QDBusMessage::ReplyMessage;
}

} // namespace corkwheel
