// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/AppDelegate.h"
#include "app/DisplaySession.h"
#include "app/SingleInstance.h"
#include "app/TerminationSignals.h"
#include "settings/AppSettings.h"

#include <QApplication>
#include <QTimer>

using namespace corkwheel;

int main(int argc, char* argv[]) {
    DisplaySession::applyToEnvironment();
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Corkwheel"));
    QApplication::setApplicationName(QStringLiteral("Corkwheel"));
    // Lets the desktop match Corkwheel's windows to its installed entry and icon.
    QGuiApplication::setDesktopFileName(QStringLiteral("io.github.corkwheel.Corkwheel"));
    // Closing the editor leaves the panels on the desktop.
    QApplication::setQuitOnLastWindowClosed(false);

    SingleInstance instance;
    switch (instance.claim()) {
    case SingleInstance::Role::Secondary:
        return 0;
    case SingleInstance::Role::Failed:
        return 1;
    case SingleInstance::Role::Primary:
        break;
    }

    TerminationSignals termination;
    QObject::connect(&termination, &TerminationSignals::terminationRequested, &app,
                     &QCoreApplication::quit);

    AppSettings settings;
    AppDelegate delegate(settings);
    QObject::connect(&instance, &SingleInstance::openSettingsRequested, &delegate,
                     &AppDelegate::openSettingsWindow);
    QTimer::singleShot(0, &delegate, &AppDelegate::applicationDidFinishLaunching);
    return app.exec();
}
