// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QWebEnginePage>

namespace corkwheel {

// The page of a webpage panel. A panel sits on the desktop with no one there to answer a
// page, so everything a page may ask of the user is refused without asking: notifications,
// camera, microphone, location, screen capture, full screen, files, protocol handlers;
// and script dialogs never show.
class PanelWebEnginePage : public QWebEnginePage {
    Q_OBJECT

public:
    explicit PanelWebEnginePage(QWebEngineProfile* profile, QObject* parent = nullptr);

protected:
    QStringList chooseFiles(FileSelectionMode mode, const QStringList& oldFiles,
                            const QStringList& acceptedMimeTypes) override;
    void javaScriptAlert(const QUrl& securityOrigin, const QString& message) override;
    bool javaScriptConfirm(const QUrl& securityOrigin, const QString& message) override;
    bool javaScriptPrompt(const QUrl& securityOrigin, const QString& message,
                          const QString& defaultValue, QString* result) override;
    // Qt would log what a page writes to its console.
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString& message,
                                  int lineNumber, const QString& sourceId) override;

private:
    void refusePermissions();
};

} // namespace corkwheel
