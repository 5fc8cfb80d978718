// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "app/AppAction.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <QVariantList>
#include <QVariantMap>

namespace corkwheel {

// The running Corkwheel on the session bus: it owns its application id there and answers
// org.freedesktop.Application, as desktops call it to activate an application and its
// launcher actions.
class ApplicationBus : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    explicit ApplicationBus(QObject* parent = nullptr);
    ~ApplicationBus() override;

    static inline const QString kService = QStringLiteral(CORKWHEEL_APP_ID);
    // The application id as a path, "/io/github/...", as desktops look for it.
    static inline const QString kObjectPath =
        QLatin1Char('/') + QString(kService).replace(u'.', u'/');
    static inline const QString kInterface = QStringLiteral("org.freedesktop.Application");

    // Whether the session has a bus to connect to. Without one named, libdbus would start a
    // bus of its own through dbus-launch, which outlives Corkwheel.
    static bool sessionBusIsThere();

    // Takes the application id on the session bus and answers there; false when there is no
    // bus or another process owns the id.
    bool publish();

public Q_SLOTS:
    // The methods of org.freedesktop.Application, named as the bus calls them.
    void Activate(const QVariantMap& platformData);
    void ActivateAction(const QString& actionName, const QVariantList& parameter,
                        const QVariantMap& platformData);
    void Open(const QStringList& uris, const QVariantMap& platformData);

Q_SIGNALS:
    void actionRequested(corkwheel::AppAction action);

private:
    QDBusConnection m_connection;
    bool m_published = false;
};

} // namespace corkwheel
