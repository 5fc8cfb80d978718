// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/AppDelegate.h"
#include "app/AppTranslations.h"
#include "app/ApplicationBus.h"
#include "app/CommandLine.h"
#include "app/DisplaySession.h"
#include "app/RunningCorkwheel.h"
#include "app/SingleInstance.h"
#include "app/TerminationSignals.h"
#include "settings/AppSettings.h"

#include <QApplication>
#include <QTimer>

#include <cstdio>

using namespace corkwheel;

namespace {

QStringList argumentsOf(int argc, char* argv[]) {
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

int endWith(const CommandLine& commandLine) {
    std::fputs(commandLine.standardOutput.toLocal8Bit().constData(), stdout);
    std::fputs(commandLine.standardError.toLocal8Bit().constData(), stderr);
    return commandLine.exitCode;
}

// Help, the version and mistakes in the arguments need no display either. The first parse
// ran before any catalogue was installed; the texts it gives are made again in the user's
// language.
int endAtOnce(int argc, char* argv[]) {
    QCoreApplication app(argc, argv);
    const AppTranslations translations;
    return endWith(CommandLine::parse(argumentsOf(argc, argv)));
}

// Edit mode, hiding and quitting act on a running Corkwheel only, and need no display.
int actOnRunningCorkwheel(int argc, char* argv[], AppAction action) {
    QCoreApplication app(argc, argv);
    const AppTranslations translations;
    if (RunningCorkwheel::deliver(action))
        return 0;
    std::fputs(qPrintable(CommandLine::tr("Corkwheel is not running") + u'\n'), stderr);
    return 1;
}

} // namespace

int main(int argc, char* argv[]) {
    const CommandLine commandLine = CommandLine::parse(argumentsOf(argc, argv));
    if (commandLine.endsAtOnce)
        return endAtOnce(argc, argv);
    const bool opensSettings = commandLine.action == AppAction::Settings;
    if (commandLine.action && !opensSettings)
        return actOnRunningCorkwheel(argc, argv, *commandLine.action);

    DisplaySession::applyToEnvironment();
    QApplication app(argc, argv);
    const AppTranslations translations;
    QApplication::setOrganizationName(QStringLiteral(CORKWHEEL_APP_NAME));
    QApplication::setApplicationName(QStringLiteral(CORKWHEEL_APP_NAME));
    // Lets the desktop match Corkwheel's windows to its installed entry and icon.
    QGuiApplication::setDesktopFileName(QStringLiteral(CORKWHEEL_APP_ID));
    // Closing the editor leaves the panels on the desktop.
    QApplication::setQuitOnLastWindowClosed(false);

    if (opensSettings && RunningCorkwheel::deliverOverBus(AppAction::Settings))
        return 0;
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
    QObject::connect(&instance, &SingleInstance::actionRequested, &delegate, &AppDelegate::perform);
    // Without a session bus Corkwheel is still reached through the socket.
    ApplicationBus bus;
    QObject::connect(&bus, &ApplicationBus::actionRequested, &delegate, &AppDelegate::perform);
    bus.publish();
    QTimer::singleShot(0, &delegate, [&delegate, opensSettings] {
        delegate.applicationDidFinishLaunching();
        if (opensSettings)
            delegate.openSettingsWindow();
    });
    return app.exec();
}
