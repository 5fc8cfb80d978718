// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "engine/ShellCommand.h"
#include "engine/TextFileReader.h"

#include <QObject>

#include <chrono>
#include <functional>

namespace corkwheel {

class Clock;
class NetworkStatsSampler;
class SystemStatsSampler;
class WebPage;

// What a panel runner reads the world through. The real ones are process-wide; tests hand
// in their own.
struct RunnerServices {
    const Clock* clock = nullptr;
    SystemStatsSampler* systemStats = nullptr;
    NetworkStatsSampler* networkStats = nullptr;
    // Makes the web page of a webpage panel; called only when one is first needed.
    std::function<WebPage*(QObject* parent)> createWebPage;
    // How shell panels run their commands, and how long a file panel's read may take.
    ShellCommand::Setup shellCommands;
    std::chrono::milliseconds fileReadTimeLimit = TextFileReader::kTimeLimit;

    // The machine's clock and samplers, and the web engine when it is installed.
    static RunnerServices shared();
};

} // namespace corkwheel
