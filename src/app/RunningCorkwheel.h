// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "app/AppAction.h"

namespace corkwheel {

// The command line's way to the Corkwheel already running in this session: over the session
// bus when there is one and Corkwheel owns its id there, else through the local socket.
class RunningCorkwheel {
public:
    // Hands it `action`; false when no Corkwheel runs or it does not answer. Needs an
    // application object; starts nothing.
    static bool deliver(AppAction action);

    // The same over the session bus alone.
    static bool deliverOverBus(AppAction action);
};

} // namespace corkwheel
