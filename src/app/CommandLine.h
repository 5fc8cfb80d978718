// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "app/AppAction.h"

#include <QCoreApplication>
#include <QString>
#include <QStringList>

#include <optional>

namespace corkwheel {

// What Corkwheel's arguments ask for, decided before anything else starts: either to end at
// once with a text and an exit status (help, version, a mistake in the arguments), or to run,
// with an action for the running Corkwheel or, for a plain start, none.
struct CommandLine {
    // The help and the mistakes are in the language of the catalogues installed when parse()
    // runs, and in English before any is.
    Q_DECLARE_TR_FUNCTIONS(corkwheel::CommandLine)

public:
    bool endsAtOnce = false;
    int exitCode = 0;
    QString standardOutput;
    QString standardError;
    std::optional<AppAction> action;

    // `arguments` as main() gets them, the program first. Needs no application object, so
    // that help and version work without a display.
    static CommandLine parse(const QStringList& arguments);

    static constexpr int kUsageExitCode = 2;
};

} // namespace corkwheel
