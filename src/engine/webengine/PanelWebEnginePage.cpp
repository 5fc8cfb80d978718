// SPDX-License-Identifier: GPL-3.0-or-later

#include "engine/webengine/PanelWebEnginePage.h"

#include <QWebEngineFileSystemAccessRequest>
#include <QWebEngineFullScreenRequest>
#include <QWebEngineRegisterProtocolHandlerRequest>

#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
#include <QWebEnginePermission>
#endif

namespace corkwheel {

PanelWebEnginePage::PanelWebEnginePage(QWebEngineProfile* profile, QObject* parent)
    : QWebEnginePage(profile, parent) {
    refusePermissions();
    connect(this, &QWebEnginePage::fullScreenRequested, this,
            [](QWebEngineFullScreenRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::fileSystemAccessRequested, this,
            [](QWebEngineFileSystemAccessRequest request) { request.reject(); });
    connect(this, &QWebEnginePage::registerProtocolHandlerRequested, this,
            [](QWebEngineRegisterProtocolHandlerRequest request) { request.reject(); });
}

// Qt 6.8 asks through QWebEnginePermission and deprecates the request by feature; earlier
// versions have only the latter. Unanswered, a request would wait for ever.
void PanelWebEnginePage::refusePermissions() {
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
    connect(this, &QWebEnginePage::permissionRequested, this,
            [](QWebEnginePermission permission) { permission.deny(); });
#else
    connect(this, &QWebEnginePage::featurePermissionRequested, this,
            [this](const QUrl& origin, Feature feature) {
                setFeaturePermission(origin, feature, PermissionDeniedByUser);
            });
#endif
}

QStringList PanelWebEnginePage::chooseFiles(FileSelectionMode, const QStringList&,
                                            const QStringList&) {
    return {};
}

void PanelWebEnginePage::javaScriptAlert(const QUrl&, const QString&) {}

bool PanelWebEnginePage::javaScriptConfirm(const QUrl&, const QString&) {
    return false;
}

bool PanelWebEnginePage::javaScriptPrompt(const QUrl&, const QString&, const QString&, QString*) {
    return false;
}

void PanelWebEnginePage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString&,
                                                  int, const QString&) {}

} // namespace corkwheel
